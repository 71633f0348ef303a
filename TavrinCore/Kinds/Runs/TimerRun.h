#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"

namespace tavrin {

enum class TimerMode { countdown, stopwatch };

template <> struct EnumNames<TimerMode> {
  static constexpr auto names = std::to_array<std::pair<TimerMode, std::string_view>>(
      {{TimerMode::countdown, "countdown"}, {TimerMode::stopwatch, "stopwatch"}});
};

/// The live state of a timer. All times are given by the caller.
struct TimerRun {
  using Mode = TimerMode;
  static constexpr double defaultDuration = 1500;

  Mode mode = Mode::countdown;
  /// Seconds; a stopwatch keeps it for later.
  double duration = defaultDuration;
  /// When the running stretch began; none while stopped.
  std::optional<Date> startedAt;
  /// Seconds run before `startedAt`.
  double accumulated = 0;

  bool isRunning() const { return startedAt.has_value(); }
  bool hasStarted() const { return isRunning() || accumulated > 0; }
  double elapsed(Date now) const;
  double remaining(Date now) const;
  /// A stopwatch never is.
  bool isFinished(Date now) const;
  /// When a running countdown runs out.
  std::optional<Date> endDate() const;
  /// 0 to 1: how much of a countdown has run, or of a stopwatch's current minute.
  double progress(Date now) const;
  /// A countdown's remaining seconds rounded up, a stopwatch's elapsed ones rounded down.
  std::int64_t displayedSeconds(Date now) const;

  /// A countdown that has run out begins anew.
  void start(Date now);
  void pause(Date now);
  void reset();
  void startCountdown(double seconds, Date now);

  /// This run as it stands at `now` when nobody watched since it was saved: a countdown that ran
  /// out has stopped at its end.
  TimerRun caughtUp(Date now) const;

  static std::string format(std::int64_t seconds);

  static constexpr auto fields() {
    using R = TimerRun;
    return std::tuple{required("mode", &R::mode), required("duration", &R::duration),
                      optional("startedAt", &R::startedAt),
                      required("accumulated", &R::accumulated)};
  }
  bool operator==(const TimerRun&) const = default;
};

} // namespace tavrin
