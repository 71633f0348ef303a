#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// What amounts are shown in; they are kept in whole millilitres.
enum class WaterUnit { millilitres, ounces };

template <> struct EnumNames<WaterUnit> {
  static constexpr auto names = std::to_array<std::pair<WaterUnit, std::string_view>>(
      {{WaterUnit::millilitres, "millilitres"}, {WaterUnit::ounces, "ounces"}});
};

constexpr std::string_view title(WaterUnit unit) {
  return unit == WaterUnit::ounces ? "Ounces" : "Millilitres";
}
constexpr std::string_view symbol(WaterUnit unit) {
  return unit == WaterUnit::ounces ? "oz" : "ml";
}

/// US fluid ounces.
inline constexpr double millilitresPerOunce = 29.5735;

enum class WaterTileStyle { tank, glass };

template <> struct EnumNames<WaterTileStyle> {
  static constexpr auto names = std::to_array<std::pair<WaterTileStyle, std::string_view>>(
      {{WaterTileStyle::tank, "tank"}, {WaterTileStyle::glass, "glass"}});
};

constexpr std::string_view title(WaterTileStyle style) {
  return style == WaterTileStyle::glass ? "Glass" : "Tank";
}

struct WaterSettings {
  static constexpr int defaultGoal = 2000;
  static constexpr int defaultGlass = 250;
  static constexpr int defaultRefillMinutes = 45;
  static constexpr FieldRange goalRange{500, 6000};
  static constexpr FieldRange glassRange{50, 1000};
  static constexpr FieldRange refillRange{15, 180};

  /// Millilitres a day.
  int goal = defaultGoal;
  /// Millilitres poured at once.
  int glass = defaultGlass;
  WaterUnit unit = WaterUnit::millilitres;
  bool showsCountOnTile = true;
  WaterTileStyle style = WaterTileStyle::tank;
  int refillMinutes = defaultRefillMinutes;

  /// Seconds until a poured glass is drained.
  constexpr double refillInterval() const { return 60.0 * (refillMinutes > 1 ? refillMinutes : 1); }
  /// 0 when the glass holds nothing.
  constexpr int glassesInGoal() const {
    if (glass < 1 || goal < 1)
      return 0;
    return goal / glass + (goal % glass > 0 ? 1 : 0);
  }

  static constexpr auto fields() {
    return std::tuple{optional("goal", &WaterSettings::goal)
                          .titled("Daily goal")
                          .in("ml")
                          .ranging(goalRange.lower, goalRange.upper),
                      optional("glass", &WaterSettings::glass)
                          .titled("Glass")
                          .in("ml")
                          .ranging(glassRange.lower, glassRange.upper),
                      optional("unit", &WaterSettings::unit).titled("Unit"),
                      optional("showsCountOnTile", &WaterSettings::showsCountOnTile)
                          .titled("Show the count on the tile"),
                      optional("style", &WaterSettings::style).titled("Tile"),
                      optional("refillMinutes", &WaterSettings::refillMinutes)
                          .titled("Refill after")
                          .in("min")
                          .ranging(refillRange.lower, refillRange.upper)};
  }
  bool operator==(const WaterSettings&) const = default;
};

} // namespace tavrin
