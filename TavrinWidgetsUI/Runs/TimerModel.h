#pragma once

#include "TavrinCore/Kinds/Runs/TimerRun.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"

#include <QColor>
#include <functional>

namespace tavrin {

/// A timer as its tile and its panel show it.
class TimerModel {
public:
  TimerModel(Clock& clock, DockWidget widget, const TimerRun& run);

  const DockWidget& widget() const { return widget_; }
  /// The run stays as it is. Does not call `onChange`.
  void setWidget(const DockWidget& widget) { widget_ = widget; }
  /// Seconds; the defaults when the widget is of another kind.
  std::vector<double> presets() const { return settings().presets; }
  QColor tint() const;

  const TimerRun& run() const { return run_; }
  /// The moment that views show.
  Date now() const { return now_; }
  /// Sets `now` to the clock's time. Does not call `onChange`.
  void tick() { now_ = clock_.now(); }
  bool isFinished() const { return run_.isFinished(now_); }

  /// Starts, pauses or goes on; a countdown that has run out begins anew.
  void toggle();
  void reset();
  void startCountdown(double seconds);
  /// Nothing but the mode changes: a stopwatch that has run for longer than the countdown is a
  /// countdown that is over, and switched back it still has all its time.
  void setMode(TimerRun::Mode mode);
  /// The countdown ran out at `now`.
  void finish(Date now);

  /// After each of the above.
  std::function<void()> onChange;

private:
  TimerSettings settings() const { return widget_.kind.settings<TimerSettings>(); }
  void changed() const;

  Clock& clock_;
  DockWidget widget_;
  TimerRun run_;
  Date now_;
};

} // namespace tavrin
