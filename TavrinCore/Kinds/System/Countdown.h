#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"

namespace tavrin {

/// What a countdown to a date shows.
struct Countdown {
  static constexpr double week = 604'800;

  /// Seconds to the target; negative past it.
  static double interval(const CountdownSettings& settings, Date now) {
    return settings.target.since(now);
  }
  /// The seconds to show: those left, rounded up; past the target those since it, rounded down,
  /// when `countsUpAfter` is set, else 0.
  static std::int64_t displayedSeconds(const CountdownSettings& settings, Date now);
  /// Whether the shown time is the time since the target.
  static bool showsTimeSince(const CountdownSettings& settings, Date now);
  /// How full the ring is, 0 to 1: it empties over the last week, down to a short stub that stays
  /// until the target.
  static double weekShare(const CountdownSettings& settings, Date now);
  /// "left until " or "since ", and the target.
  static std::string caption(const CountdownSettings& settings, Date now, const Calendar& calendar);
};

} // namespace tavrin
