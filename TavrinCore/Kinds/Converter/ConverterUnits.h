#pragma once

#include "TavrinCore/Kinds/Converter/ConverterSettings.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace tavrin {

/// numerator / denominator · 10^exponent · π^piPower, exactly.
struct UnitFactor {
  std::int64_t numerator = 1;
  std::int64_t denominator = 1;
  int exponent = 0;
  int piPower = 0;
};

/// Who says how much a unit is.
enum class UnitSource {
  /// The International System of Units, 9th edition, and its prefixes.
  si,
  /// The yard and pound agreement of 1959: 0.9144 m, 0.45359237 kg.
  yardAndPound,
  /// NIST Special Publication 811, edition 2008, appendix B.
  nist,
  /// Customary volumes of the United States: the gallon of 231 cubic inches.
  usCustomary,
  /// Weights and Measures Act 1985 of the United Kingdom: the gallon of 4.54609 l.
  imperial,
  /// IEC 80000-13: binary prefixes.
  iec,
  /// Resolutions B2 of 2012 and 2015 of the International Astronomical Union.
  iau,
  /// The Gregorian calendar's mean year of 365.2425 days.
  gregorian,
};

struct ConverterUnit {
  ConverterCategory category;
  /// Names the unit in settings, and beside numbers.
  std::string_view symbol;
  /// Of many: "miles".
  std::string_view name;
  /// How much of the category's base one is (m, kg, K, m³, m², m/s, s, byte, J, Pa, turn).
  UnitFactor factor;
  UnitSource source = UnitSource::si;
  /// In hundredths of the unit: what its scale reads is this much above the base's zero. For
  /// temperatures.
  std::int64_t hundredthsAboveZero = 0;

  /// The least value there is: absolute zero; no value where there is none.
  std::optional<double> least() const;
};

/// The units of one category, small to large within each system.
std::span<const ConverterUnit> converterUnits(ConverterCategory category);
/// All of them, category by category.
std::span<const ConverterUnit> converterUnits();

/// What the unit is called in the user's language: by CLDR where that names it.
std::string displayName(const ConverterUnit& unit);

/// Null where the category has no such unit.
const ConverterUnit* findUnit(ConverterCategory category, std::string_view symbol);

/// `value` of `from` in `to`, both of one category: exact but for the rounding to a double.
/// Infinite where it is too large for one.
double convert(double value, const ConverterUnit& from, const ConverterUnit& to);

/// The settings with units that exist: of a pair that does not belong to the category, the
/// category's usual one takes the place.
struct Conversion {
  const ConverterUnit* from = nullptr;
  const ConverterUnit* to = nullptr;
  double value = 0;

  explicit Conversion(const ConverterSettings& settings);
  double result() const { return convert(value, *from, *to); }
  /// Less than absolute zero.
  bool isImpossible() const;
};

/// Another category, with its usual pair of units; the value stays.
ConverterSettings withCategory(ConverterSettings settings, ConverterCategory category);
/// The units changed places and the result became the value.
ConverterSettings swapped(const ConverterSettings& settings);

} // namespace tavrin
