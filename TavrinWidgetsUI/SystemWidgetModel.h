#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/StopwatchRun.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/Workspace.h"
#include "TavrinWidgetsUI/ClockReading.h"

#include <functional>
#include <optional>
#include <vector>

namespace tavrin {

/// Keeps what the simple widgets show: the time widgets, and the readings of the computer. It wakes
/// when its kind's display changes next, and not at all where nothing will change by itself.
class SystemWidgetModel {
public:
  SystemWidgetModel(Clock& clock, RunLoop& runLoop, Workspace& workspace, DockWidget widget,
                    StopwatchRun stopwatch = {});
  SystemWidgetModel(const SystemWidgetModel&) = delete;
  SystemWidgetModel& operator=(const SystemWidgetModel&) = delete;

  void start();
  void stop();

  const DockWidget& widget() const { return widget_; }
  /// Other settings, or another kind of the group. Does not call `onChange`.
  void setWidget(const DockWidget& widget);

  /// The time of the last sample.
  Date now() const { return now_; }
  /// The system's zone and the user's locale.
  const Calendar& calendar() const { return calendar_; }
  /// What a clock shows now. For the clock kind only.
  ClockReading clock() const;

  const StopwatchRun& stopwatch() const { return stopwatch_; }
  /// Another widget's run. Does not call `onStopwatchChange`.
  void setStopwatch(const StopwatchRun& run);
  void toggleStopwatch();
  void lapStopwatch();
  void resetStopwatch();

  /// Seconds between two samples; for countdowns the shortest there is.
  double interval() const;
  /// Nothing is sampled more often than every 3 seconds. Follows the desktop's power saving.
  bool savesEnergy() const { return savesEnergy_; }
  void setSavesEnergy(bool savesEnergy);

  /// The panel opened or closed: an open one shows more than the tile has room for.
  void panelChanged();
  std::function<bool()> isPanelShown;

  /// What is shown differs now.
  std::function<void()> onChange;
  /// The run changed and is to be kept.
  std::function<void()> onStopwatchChange;

private:
  struct Sampling;
  static const Sampling* sampling(const DockWidget::Kind& kind);
  static std::optional<Date> nextCountdownChange(const SystemWidgetModel& model);

  /// Takes a sample. Whether it differs from the one before.
  bool sample(Date now);
  void updateTicker();
  void tick();
  void stopwatchChanged(Date now);
  /// The clock, the zone or the locale may be another one.
  void timeJumped();
  bool showsPanel() const { return isPanelShown && isPanelShown(); }
  double paced(double interval) const;

  Clock& clock_;
  RunLoop& runLoop_;
  Workspace& workspace_;
  DockWidget widget_;
  Date now_;
  Calendar calendar_;
  mutable std::optional<ClockReader> clockReader_;
  StopwatchRun stopwatch_;
  bool isStarted_ = false;
  bool savesEnergy_ = false;
  Date due_;
  TokenPtr timer_;
  std::vector<TokenPtr> observations_;
};

} // namespace tavrin
