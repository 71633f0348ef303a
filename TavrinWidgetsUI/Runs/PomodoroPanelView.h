#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Runs/PomodoroModel.h"

namespace tavrin {

class PanelButton;
class PanelText;
class ViewWidget;

class PomodoroPanelView final : public PanelView {
public:
  /// `model` must outlive the view.
  PomodoroPanelView(const PanelAppearance& appearance, PomodoroModel& model,
                    std::function<void()> onEdit);

  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  PomodoroModel& model_;
  ViewWidget* gauge_;
  PanelText* sessions_;
  PanelButton* primary_;
  PanelButton* reset_;
  PanelButton* resetAll_;
};

} // namespace tavrin
