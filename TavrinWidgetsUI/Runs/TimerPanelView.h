#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Runs/TimerModel.h"

namespace tavrin {

class PanelButton;
class PanelField;
class PanelSegments;
class PanelStepper;
class ViewWidget;

class TimerPanelView final : public PanelView {
public:
  /// `model` must outlive the view.
  TimerPanelView(const PanelAppearance& appearance, TimerModel& model,
                 std::function<void()> onEdit);

  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  void makeLengths();
  void fillPresets();
  void refreshGauge();

  TimerModel& model_;
  PanelSegments* mode_;
  ViewWidget* gauge_;
  /// What stands for countdowns only.
  QWidget* lengths_;
  QWidget* presets_ = nullptr;
  std::vector<double> shownPresets_;
  PanelButton* startCustom_;
  PanelButton* primary_;
  PanelButton* reset_;
  int customMinutes_;
};

/// A preset's button: its whole minutes, such as "5m"; the seconds of one below a minute.
QString timerPresetTitle(double seconds);

} // namespace tavrin
