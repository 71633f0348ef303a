#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// The live state of a stopwatch. All times are given by the caller.
struct StopwatchRun {
  std::optional<Date> startedAt;
  /// Seconds run before `startedAt`.
  double accumulated = 0;
  /// The elapsed seconds at each press, in the order of the presses.
  std::vector<double> laps;

  bool isRunning() const { return startedAt.has_value(); }
  bool hasStarted() const { return isRunning() || accumulated > 0; }
  double elapsed(Date now) const;
  /// 0 to 1 of the current minute.
  double progress(Date now) const;

  void start(Date now);
  void pause(Date now);
  void toggle(Date now);
  /// Only while running.
  void lap(Date now);
  void reset();

  /// "%02d:%02d", with a tenth behind it when asked for; from an hour on "%d:%02d:%02d".
  static std::string text(double seconds, bool showsTenths);

  static constexpr auto fields() {
    using R = StopwatchRun;
    return std::tuple{optional("startedAt", &R::startedAt),
                      required("accumulated", &R::accumulated), required("laps", &R::laps)};
  }
  bool operator==(const StopwatchRun&) const = default;
};

} // namespace tavrin
