#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"

namespace tavrin {

/// The live state of a Pomodoro. All times are given by the caller.
struct PomodoroRun {
  PomodoroPhase phase = PomodoroPhase::focus;
  /// When the running stretch began; none while paused or not started.
  std::optional<Date> startedAt;
  /// Seconds run in this phase before `startedAt`.
  double accumulated = 0;
  /// Focus phases completed in this round.
  int cycle = 0;
  /// Focus phases completed on `day`.
  int sessionsToday = 0;
  Date day;

  static PomodoroRun fresh(Date now);

  bool isRunning() const { return startedAt.has_value(); }
  bool hasStarted() const { return isRunning() || accumulated > 0; }
  double elapsed(Date now) const;
  double length(const PomodoroSettings& settings) const { return settings.length(phase); }
  double remaining(Date now, const PomodoroSettings& settings) const;
  bool isFinished(Date now, const PomodoroSettings& settings) const;
  /// When the phase runs out; none unless running.
  std::optional<Date> endDate(const PomodoroSettings& settings) const;
  /// 0 to 1.
  double progress(Date now, const PomodoroSettings& settings) const;
  /// The remaining seconds rounded up, so that 0 shows only when the phase has run out.
  std::int64_t displayedSeconds(Date now, const PomodoroSettings& settings) const;
  PomodoroPhase nextPhase(const PomodoroSettings& settings) const;
  /// The number of the focus phase in its round as shown, 1 to `settings.cycles()`.
  int displayedCycle(const PomodoroSettings& settings) const;

  void start(Date now, const Calendar& calendar);
  void pause(Date now);
  /// Back to the start of this phase.
  void reset();
  /// Back to the first focus phase of a day without sessions.
  void resetEverything(Date now);
  /// Forgets the sessions of an earlier day.
  void rollDay(Date now, const Calendar& calendar);
  /// Goes to the next phase. A break may start by itself, from `now`, which may lie in the past.
  /// `counting` is false for a focus phase that was skipped.
  void advance(Date now, const PomodoroSettings& settings, bool counting, const Calendar& calendar);

  /// This run as it stands at `now` when nobody watched since it was saved: a phase that ended
  /// counts and its break began then; a break that ended too waits, finished, for the user.
  PomodoroRun caughtUp(Date now, const PomodoroSettings& settings, const Calendar& calendar) const;

  static std::string format(std::int64_t seconds);

  static constexpr auto fields() {
    using R = PomodoroRun;
    return std::tuple{required("phase", &R::phase),
                      optional("startedAt", &R::startedAt),
                      required("accumulated", &R::accumulated),
                      required("cycle", &R::cycle),
                      required("sessionsToday", &R::sessionsToday),
                      required("day", &R::day)};
  }
  bool operator==(const PomodoroRun&) const = default;
};

} // namespace tavrin
