#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// What amounts are shown in; they are kept in whole millilitres.
enum class WaterUnit { millilitres, ounces };

template <> struct EnumNames<WaterUnit> {
  static constexpr auto names = std::to_array<std::pair<WaterUnit, std::string_view>>(
      {{WaterUnit::millilitres, "millilitres"}, {WaterUnit::ounces, "ounces"}});
};

template <> struct EnumTitles<WaterUnit> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Millilitres"), marked("Ounces")});
};

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

template <> struct EnumTitles<WaterTileStyle> {
  static constexpr auto titles = std::to_array<std::string_view>({marked("Tank"), marked("Glass")});
};

/// Millilitres as the unit of a settings record shows them.
FieldDisplay waterDisplay(const JSONValue& settings);

struct WaterSettings {
  static constexpr std::string_view kindKey = "water";
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
    return std::tuple{
        optional("goal", &WaterSettings::goal)
            .titled("Daily goal")
            .helped("How much you want to drink in a day.")
            .shownBy(waterDisplay)
            .stepping(100)
            .in("ml")
            .ranging(goalRange.lower, goalRange.upper),
        optional("glass", &WaterSettings::glass)
            .titled("Glass")
            .helped("How much one pour is.")
            .shownBy(waterDisplay)
            .stepping(10)
            .in("ml")
            .ranging(glassRange.lower, glassRange.upper),
        optional("unit", &WaterSettings::unit).titled("Unit").helped("What amounts are shown in."),
        optional("showsCountOnTile", &WaterSettings::showsCountOnTile)
            .titled("Show the count on the tile")
            .helped("How much you drank today."),
        optional("style", &WaterSettings::style)
            .titled("Tile")
            .helped("What is filled as you drink."),
        optional("refillMinutes", &WaterSettings::refillMinutes)
            .titled("Refill after")
            .helped("How long until the next glass is due.")
            .stepping(5)
            .in("min")
            .ranging(refillRange.lower, refillRange.upper)};
  }
  bool operator==(const WaterSettings&) const = default;
};

} // namespace tavrin
