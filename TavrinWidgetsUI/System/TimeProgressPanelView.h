#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>

namespace tavrin {

class PanelText;
class SystemWidgetModel;
class ViewWidget;

/// The chosen period's ring, and all four periods as bars.
class TimeProgressPanelView final : public PanelView {
public:
  TimeProgressPanelView(const PanelAppearance& appearance, const SystemWidgetModel& model,
                        std::function<void()> onEdit);
  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  const SystemWidgetModel& model_;
  ViewWidget* ring_;
  PanelText* scope_;
  PanelText* left_;
  ViewWidget* bars_;
};

} // namespace tavrin
