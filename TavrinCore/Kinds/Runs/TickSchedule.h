#pragma once

#include "TavrinCore/Base/Date.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tavrin {

/// When a view that shows time is drawn again.
class TickSchedule {
public:
  enum class Mode { normal, lowFrequency };
  static constexpr double shortestInterval = 1.0 / 60;

  /// `every` in seconds; raised to `shortestInterval`.
  explicit TickSchedule(double every, bool paused = false)
      : interval_(every > shortestInterval ? every : shortestInterval), isPaused_(paused) {}

  double interval() const { return interval_; }
  bool isPaused() const { return isPaused_; }

  /// The moment number `index`, counted from 0, of a schedule that begins at `start`. A schedule
  /// that is paused, or asked for in low frequency, has only the first.
  std::optional<Date> entry(std::size_t index, Date start, Mode mode = Mode::normal) const {
    if (index > 0 && (isPaused_ || mode == Mode::lowFrequency))
      return std::nullopt;
    return start + static_cast<double>(index) * interval_;
  }

  /// The first moment after `now`.
  std::optional<Date> next(Date start, Date now, Mode mode = Mode::normal) const {
    if (now < start)
      return start;
    if (isPaused_ || mode == Mode::lowFrequency)
      return std::nullopt;
    return start + (std::floor(now.since(start) / interval_) + 1) * interval_;
  }

  bool operator==(const TickSchedule&) const = default;

private:
  double interval_;
  bool isPaused_;
};

} // namespace tavrin
