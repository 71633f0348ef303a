#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>

namespace tavrin {

class PanelText;
class SystemWidgetModel;
class ViewWidget;

/// The date counted to, and the time left or gone by inside the week's ring.
class CountdownPanelView final : public PanelView {
public:
  CountdownPanelView(const PanelAppearance& appearance, const SystemWidgetModel& model,
                     std::function<void()> onEdit);
  void refresh() override;

private:
  const SystemWidgetModel& model_;
  PanelText* caption_;
  ViewWidget* dial_;
};

} // namespace tavrin
