#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>

namespace tavrin {

class PanelFigure;
class PanelText;
class SystemWidgetModel;
class ViewWidget;

/// The time large, or the face, and the date; the city and how far it is ahead.
class ClockPanelView final : public PanelView {
public:
  ClockPanelView(const PanelAppearance& appearance, const SystemWidgetModel& model,
                 std::function<void()> onEdit);
  void refresh() override;

private:
  const SystemWidgetModel& model_;
  ViewWidget* face_;
  PanelFigure* time_;
  PanelText* weekday_;
  PanelText* date_;
  PanelText* zone_;
};

} // namespace tavrin
