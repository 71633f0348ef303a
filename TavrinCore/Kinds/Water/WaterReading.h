#pragma once

#include "TavrinCore/Kinds/Water/WaterLog.h"
#include "TavrinCore/Kinds/Water/WaterSettings.h"

namespace tavrin {

/// "250 ml" or "8.5 oz".
std::string format(WaterUnit unit, int millilitres);

/// What the water views show at one moment.
struct WaterReading {
  /// Drunk today.
  int millilitres = 0;
  WaterSettings settings;
  /// The tank's level, 0 to 1.
  double level = 0;
  std::optional<Date> next;
  Date now;
  /// The last seven days, today last.
  std::array<WaterDay, 7> week;

  static WaterReading of(const WaterLog& log, const WaterSettings& settings, Date now,
                         const Calendar& calendar);

  /// The share of the goal that was drunk, 0 to 1.
  double fill() const;
  bool isDone() const { return fill() >= 1; }
  /// Whole glasses drunk.
  int glasses() const;
  /// "3/8": glasses drunk and glasses in the goal.
  std::string count() const;
  /// "5 min", "1 h 5 min": until the next glass, rounded up.
  std::optional<std::string> timeLeft() const;

  bool operator==(const WaterReading&) const = default;
};

} // namespace tavrin
