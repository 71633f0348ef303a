#pragma once

#include <compare>

namespace tavrin {

/// A point in time: seconds since 2001-01-01 00:00:00 UTC.
/// A plain double, so that a JSON number read and written again keeps every bit.
struct Date {
  double secondsSinceReferenceDate = 0;

  /// Seconds from the Unix epoch to the reference date.
  static constexpr double unixEpochOffset = 978'307'200;

  static constexpr Date fromUnixSeconds(double seconds) { return {seconds - unixEpochOffset}; }
  constexpr double unixSeconds() const { return secondsSinceReferenceDate + unixEpochOffset; }

  /// Seconds from `earlier` to this date; negative when `earlier` is the later one.
  constexpr double since(Date earlier) const {
    return secondsSinceReferenceDate - earlier.secondsSinceReferenceDate;
  }

  friend constexpr Date operator+(Date date, double seconds) {
    return {date.secondsSinceReferenceDate + seconds};
  }
  friend constexpr Date operator-(Date date, double seconds) {
    return {date.secondsSinceReferenceDate - seconds};
  }
  constexpr auto operator<=>(const Date&) const = default;
};

} // namespace tavrin
