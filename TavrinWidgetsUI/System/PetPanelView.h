#pragma once

#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>

namespace tavrin {

class PanelButton;
class PanelSegments;
class PanelSwitch;
class PanelText;
class SystemWidgetModel;
class ViewWidget;

/// The pet in a larger meadow, which animal it is, and what it goes by.
class PetPanelView final : public PanelView {
public:
  struct Source {
    const SystemWidgetModel& model;
    std::function<void()> stroke;
    std::function<void(const PetSettings&)> change;
    std::function<void()> edit;
  };

  PetPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;

private:
  PetSettings settings() const;

  Source source_;
  ViewWidget* meadow_;
  PanelText* words_;
  PanelSegments* species_;
  PanelSwitch* load_;
  PanelSwitch* night_;
};

} // namespace tavrin
