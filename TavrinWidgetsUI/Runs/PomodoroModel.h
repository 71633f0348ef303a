#pragma once

#include "TavrinCore/Kinds/Runs/PomodoroRun.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"

#include <functional>

namespace tavrin {

/// A Pomodoro as its tile and its panel show it.
class PomodoroModel {
public:
  PomodoroModel(Clock& clock, DockWidget widget, const PomodoroRun& run);

  const DockWidget& widget() const { return widget_; }
  /// The run goes on as it is, by the new settings. Does not call `onChange`.
  void setWidget(const DockWidget& widget) { widget_ = widget; }
  /// Those of the widget; the defaults when it is of another kind.
  PomodoroSettings settings() const { return widget_.kind.settings<PomodoroSettings>(); }

  const PomodoroRun& run() const { return run_; }
  /// The moment that views show.
  Date now() const { return now_; }
  /// Sets `now` to the clock's time. Does not call `onChange`.
  void tick() { now_ = clock_.now(); }
  bool isFinished() const { return run_.isFinished(now_, settings()); }

  /// Starts, pauses or goes on.
  void toggle();
  /// On to the next phase; a focus phase does not count.
  void skip();
  /// Back to the start of this phase, stopped.
  void reset();
  /// Back to the first focus phase, with no sessions today.
  void resetEverything();
  /// The phase ended at `now` and counts.
  void finish(Date now);
  /// Forgets the sessions of an earlier day. Calls `onChange` only when there is another day.
  void rollDay();

  /// After each of the above.
  std::function<void()> onChange;

private:
  void changed() const;

  Clock& clock_;
  DockWidget widget_;
  PomodoroRun run_;
  Date now_;
};

} // namespace tavrin
