#include "TavrinCore/Kinds/Converter/ConverterUnits.h"

#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tavrin {
namespace {

using enum ConverterCategory;
using enum UnitSource;

// clang-format off
constexpr auto units = std::to_array<ConverterUnit>({
    {length, "nm", "nanometres", {1, 1, -9}},
    {length, "µm", "micrometres", {1, 1, -6}},
    {length, "mm", "millimetres", {1, 1, -3}},
    {length, "cm", "centimetres", {1, 1, -2}},
    {length, "m", "metres", {1}},
    {length, "km", "kilometres", {1, 1, 3}},
    {length, "in", "inches", {254, 1, -4}, yardAndPound},
    {length, "ft", "feet", {3048, 1, -4}, yardAndPound},
    {length, "yd", "yards", {9144, 1, -4}, yardAndPound},
    {length, "mi", "miles", {1609344, 1, -3}, yardAndPound},
    {length, "nmi", "nautical miles", {1852}, nist},
    {length, "au", "astronomical units", {149597870700}, iau},
    {length, "ly", "light years", {9460730472580800}, iau},
    {length, "pc", "parsecs", {149597870700 * 648000, 1, 0, -1}, iau},

    {mass, "µg", "micrograms", {1, 1, -9}},
    {mass, "mg", "milligrams", {1, 1, -6}},
    {mass, "g", "grams", {1, 1, -3}},
    {mass, "kg", "kilograms", {1}},
    {mass, "t", "tonnes", {1, 1, 3}},
    {mass, "ct", "carats", {2, 1, -4}, nist},
    {mass, "oz", "ounces", {45359237, 16, -8}, yardAndPound},
    {mass, "lb", "pounds", {45359237, 1, -8}, yardAndPound},
    {mass, "st", "stones", {45359237 * 14, 1, -8}, yardAndPound},
    {mass, "US ton", marked("US tons"), {45359237LL * 2000, 1, -8}, yardAndPound},
    {mass, "imp ton", marked("imperial tons"), {45359237LL * 2240, 1, -8}, yardAndPound},
    {mass, "oz t", "troy ounces", {311034768, 1, -10}, nist},

    {temperature, "°C", "degrees Celsius", {1}, si, 27315},
    {temperature, "°F", "degrees Fahrenheit", {5, 9}, nist, 45967},
    {temperature, "K", "kelvins", {1}},
    {temperature, "°R", marked("degrees Rankine"), {5, 9}, nist},

    {volume, "ml", "millilitres", {1, 1, -6}},
    {volume, "cl", "centilitres", {1, 1, -5}},
    {volume, "dl", "decilitres", {1, 1, -4}},
    {volume, "l", "litres", {1, 1, -3}},
    {volume, "cm³", "cubic centimetres", {1, 1, -6}},
    {volume, "m³", "cubic metres", {1}},
    {volume, "in³", "cubic inches", {16387064, 1, -12}, yardAndPound},
    {volume, "ft³", "cubic feet", {28316846592, 1, -12}, yardAndPound},
    {volume, "tsp", marked("US teaspoons"), {3785411784, 768, -12}, usCustomary},
    {volume, "tbsp", marked("US tablespoons"), {3785411784, 256, -12}, usCustomary},
    {volume, "US fl oz", marked("US fluid ounces"), {3785411784, 128, -12}, usCustomary},
    {volume, "US cup", marked("US cups"), {3785411784, 16, -12}, usCustomary},
    {volume, "US pt", marked("US pints"), {3785411784, 8, -12}, usCustomary},
    {volume, "US qt", marked("US quarts"), {3785411784, 4, -12}, usCustomary},
    {volume, "US gal", marked("US gallons"), {3785411784, 1, -12}, usCustomary},
    {volume, "imp fl oz", marked("imperial fluid ounces"), {454609, 160, -8}, imperial},
    {volume, "imp pt", marked("imperial pints"), {454609, 8, -8}, imperial},
    {volume, "imp qt", marked("imperial quarts"), {454609, 4, -8}, imperial},
    {volume, "imp gal", marked("imperial gallons"), {454609, 1, -8}, imperial},
    {volume, "bbl", marked("oil barrels"), {3785411784 * 42, 1, -12}, usCustomary},

    {area, "mm²", "square millimetres", {1, 1, -6}},
    {area, "cm²", "square centimetres", {1, 1, -4}},
    {area, "m²", "square metres", {1}},
    {area, "a", marked("ares"), {1, 1, 2}},
    {area, "ha", "hectares", {1, 1, 4}},
    {area, "km²", "square kilometres", {1, 1, 6}},
    {area, "in²", "square inches", {64516, 1, -8}, yardAndPound},
    {area, "ft²", "square feet", {9290304, 1, -8}, yardAndPound},
    {area, "yd²", "square yards", {83612736, 1, -8}, yardAndPound},
    {area, "ac", "acres", {40468564224, 1, -7}, yardAndPound},
    {area, "mi²", "square miles", {2589988110336, 1, -6}, yardAndPound},

    {speed, "m/s", "metres a second", {1}},
    {speed, "km/h", "kilometres an hour", {5, 18}},
    {speed, "ft/s", marked("feet a second"), {3048, 1, -4}, yardAndPound},
    {speed, "mph", "miles an hour", {1609344, 3600, -3}, yardAndPound},
    {speed, "kn", "knots", {1852, 3600}, nist},
    {speed, "c", marked("times the speed of light"), {299792458}},

    {time, "ns", "nanoseconds", {1, 1, -9}},
    {time, "µs", "microseconds", {1, 1, -6}},
    {time, "ms", "milliseconds", {1, 1, -3}},
    {time, "s", "seconds", {1}},
    {time, "min", "minutes", {60}},
    {time, "h", "hours", {3600}},
    {time, "d", "days", {86400}},
    {time, "wk", "weeks", {604800}},
    {time, "mo", "months", {31556952, 12}, gregorian},
    {time, "yr", "years", {31556952}, gregorian},

    {data, "bit", "bits", {1, 8}, iec},
    {data, "kbit", "kilobits", {125}, iec},
    {data, "Mbit", "megabits", {125, 1, 3}, iec},
    {data, "Gbit", "gigabits", {125, 1, 6}, iec},
    {data, "B", "bytes", {1}, iec},
    {data, "kB", "kilobytes", {1, 1, 3}, iec},
    {data, "MB", "megabytes", {1, 1, 6}, iec},
    {data, "GB", "gigabytes", {1, 1, 9}, iec},
    {data, "TB", "terabytes", {1, 1, 12}, iec},
    {data, "PB", "petabytes", {1, 1, 15}, iec},
    {data, "KiB", marked("kibibytes"), {1LL << 10}, iec},
    {data, "MiB", marked("mebibytes"), {1LL << 20}, iec},
    {data, "GiB", marked("gibibytes"), {1LL << 30}, iec},
    {data, "TiB", marked("tebibytes"), {1LL << 40}, iec},
    {data, "PiB", marked("pebibytes"), {1LL << 50}, iec},

    {energy, "J", "joules", {1}},
    {energy, "kJ", "kilojoules", {1, 1, 3}},
    {energy, "MJ", marked("megajoules"), {1, 1, 6}},
    {energy, "Wh", marked("watt-hours"), {3600}},
    {energy, "kWh", "kilowatt-hours", {36, 1, 5}},
    {energy, "cal", "calories", {4184, 1, -3}, nist},
    {energy, "kcal", "kilocalories", {4184}, nist},
    {energy, "BTU", "British thermal units", {105505585262, 1, -8}, nist},
    {energy, "therm", marked("therms"), {105505585262, 1, -3}, nist},
    {energy, "ft⋅lb", marked("foot-pounds"), {13558179483314004, 1, -16}, nist},
    {energy, "eV", "electronvolts", {1602176634, 1, -28}},

    {pressure, "Pa", "pascals", {1}},
    {pressure, "hPa", "hectopascals", {1, 1, 2}},
    {pressure, "kPa", "kilopascals", {1, 1, 3}},
    {pressure, "MPa", "megapascals", {1, 1, 6}},
    {pressure, "mbar", "millibars", {1, 1, 2}},
    {pressure, "bar", "bars", {1, 1, 5}},
    {pressure, "atm", "atmospheres", {101325}, nist},
    {pressure, "Torr", marked("torrs"), {101325, 760}, nist},
    {pressure, "mmHg", "millimetres of mercury", {133322387415, 1, -9}, nist},
    {pressure, "inHg", "inches of mercury", {133322387415 * 254, 1, -10}, nist},
    {pressure, "psi", "pounds a square inch", {44482216152605, 64516, -5}, nist},

    {angle, "″", "seconds of arc", {1, 1296000}},
    {angle, "′", "minutes of arc", {1, 21600}},
    {angle, "°", "degrees", {1, 360}},
    {angle, "gon", marked("gradians"), {1, 400}, nist},
    {angle, "mrad", marked("milliradians"), {1, 2, -3, -1}},
    {angle, "rad", "radians", {1, 2, 0, -1}},
    {angle, "turn", "turns", {1}},
});
// clang-format on

struct CategoryRow {
  ConverterCategory category;
  /// The pair people ask for first.
  std::string_view from;
  std::string_view to;
};

constexpr auto categories = std::to_array<CategoryRow>({{length, "km", "mi"},
                                                        {mass, "kg", "lb"},
                                                        {temperature, "°C", "°F"},
                                                        {volume, "l", "US gal"},
                                                        {area, "m²", "ft²"},
                                                        {speed, "km/h", "mph"},
                                                        {time, "h", "min"},
                                                        {data, "GB", "GiB"},
                                                        {energy, "kWh", "MJ"},
                                                        {pressure, "bar", "psi"},
                                                        {angle, "°", "rad"}});

const CategoryRow& rowOf(ConverterCategory category) {
  return categories[static_cast<std::size_t>(category)];
}

/// A factor's quotient by another one. Extended precision holds each part exactly.
long double quotient(const UnitFactor& a, const UnitFactor& b) {
  const auto exact = [](std::int64_t value) { return static_cast<long double>(value); };
  const long double ratio =
      exact(a.numerator) * exact(b.denominator) / (exact(a.denominator) * exact(b.numerator));
  const int exponent = a.exponent - b.exponent;
  const long double scale = std::pow(10.0L, std::abs(exponent));
  return (exponent < 0 ? ratio / scale : ratio * scale) *
         std::pow(std::numbers::pi_v<long double>, a.piPower - b.piPower);
}

} // namespace

std::optional<double> ConverterUnit::least() const {
  if (category != temperature)
    return std::nullopt;
  return -static_cast<double>(hundredthsAboveZero) / 100;
}

std::span<const ConverterUnit> converterUnits() {
  return units;
}

std::span<const ConverterUnit> converterUnits(ConverterCategory category) {
  const auto begin = std::ranges::lower_bound(units, category, {}, &ConverterUnit::category);
  const auto end = std::ranges::upper_bound(units, category, {}, &ConverterUnit::category);
  return {begin, end};
}

const ConverterUnit* findUnit(ConverterCategory category, std::string_view symbol) {
  const auto some = converterUnits(category);
  const auto found = std::ranges::find(some, symbol, &ConverterUnit::symbol);
  return found == some.end() ? nullptr : &*found;
}

std::vector<FieldChoice> converterUnitChoices(const JSONValue& settings) {
  const auto* name = settings.member("category");
  const auto category = name == nullptr || name->string() == nullptr
                            ? std::nullopt
                            : enumNamed<ConverterCategory>(*name->string());
  std::vector<FieldChoice> choices;
  for (const auto& unit : converterUnits(category.value_or(ConverterSettings{}.category)))
    choices.push_back(
        {std::string(unit.symbol), std::string(unit.symbol) + " (" + std::string(unit.name) + ")"});
  return choices;
}

double convert(double value, const ConverterUnit& from, const ConverterUnit& to) {
  if (&from == &to)
    return value;
  const auto hundredths = [](const ConverterUnit& unit) {
    return static_cast<long double>(unit.hundredthsAboveZero);
  };
  // In hundredths, so that what is a whole number of them stays one.
  const long double base = static_cast<long double>(value) * 100 + hundredths(from);
  return static_cast<double>((base * quotient(from.factor, to.factor) - hundredths(to)) / 100);
}

Conversion::Conversion(const ConverterSettings& settings)
    : from(findUnit(settings.category, settings.from)),
      to(findUnit(settings.category, settings.to)),
      value(std::isfinite(settings.value) ? settings.value : 0) {
  if (from != nullptr && to != nullptr)
    return;
  const auto& row = rowOf(settings.category);
  if (from == nullptr)
    from = findUnit(settings.category, row.from);
  if (to == nullptr)
    to = findUnit(settings.category, row.to);
  if (from == to)
    to = findUnit(settings.category, row.from == from->symbol ? row.to : row.from);
}

bool Conversion::isImpossible() const {
  const auto least = from->least();
  return least && value < *least;
}

ConverterSettings withCategory(ConverterSettings settings, ConverterCategory category) {
  const auto& row = rowOf(category);
  settings.category = category;
  settings.from = row.from;
  settings.to = row.to;
  return settings;
}

ConverterSettings swapped(const ConverterSettings& settings) {
  const Conversion now(settings);
  ConverterSettings other = settings;
  other.from = now.to->symbol;
  other.to = now.from->symbol;
  if (const double result = now.result(); std::isfinite(result))
    other.value = result;
  return other;
}

} // namespace tavrin
