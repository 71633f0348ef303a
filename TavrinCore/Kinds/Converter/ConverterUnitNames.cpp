#include "TavrinCore/Kinds/Converter/ConverterUnits.h"
#include "TavrinCore/Text/Texts.h"

#include <array>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>

namespace tavrin {
namespace {

struct UnitIdentifier {
  std::string_view symbol;
  const char* cldr;
};

/// Of the units that CLDR names; the others' names are in the catalogues.
constexpr auto identifiers = std::to_array<UnitIdentifier>({
    {"nm", "nanometer"},
    {"µm", "micrometer"},
    {"mm", "millimeter"},
    {"cm", "centimeter"},
    {"m", "meter"},
    {"km", "kilometer"},
    {"in", "inch"},
    {"ft", "foot"},
    {"yd", "yard"},
    {"mi", "mile"},
    {"nmi", "nautical-mile"},
    {"au", "astronomical-unit"},
    {"ly", "light-year"},
    {"pc", "parsec"},
    {"µg", "microgram"},
    {"mg", "milligram"},
    {"g", "gram"},
    {"kg", "kilogram"},
    {"t", "metric-ton"},
    {"ct", "carat"},
    {"oz", "ounce"},
    {"lb", "pound"},
    {"st", "stone"},
    {"oz t", "ounce-troy"},
    {"°C", "celsius"},
    {"°F", "fahrenheit"},
    {"K", "kelvin"},
    {"ml", "milliliter"},
    {"cl", "centiliter"},
    {"dl", "deciliter"},
    {"l", "liter"},
    {"cm³", "cubic-centimeter"},
    {"m³", "cubic-meter"},
    {"in³", "cubic-inch"},
    {"ft³", "cubic-foot"},
    {"mm²", "square-millimeter"},
    {"cm²", "square-centimeter"},
    {"m²", "square-meter"},
    {"ha", "hectare"},
    {"km²", "square-kilometer"},
    {"in²", "square-inch"},
    {"ft²", "square-foot"},
    {"yd²", "square-yard"},
    {"ac", "acre"},
    {"mi²", "square-mile"},
    {"m/s", "meter-per-second"},
    {"km/h", "kilometer-per-hour"},
    {"mph", "mile-per-hour"},
    {"kn", "knot"},
    {"ns", "nanosecond"},
    {"µs", "microsecond"},
    {"ms", "millisecond"},
    {"s", "second"},
    {"min", "minute"},
    {"h", "hour"},
    {"d", "day"},
    {"wk", "week"},
    {"mo", "month"},
    {"yr", "year"},
    {"bit", "bit"},
    {"kbit", "kilobit"},
    {"Mbit", "megabit"},
    {"Gbit", "gigabit"},
    {"B", "byte"},
    {"kB", "kilobyte"},
    {"MB", "megabyte"},
    {"GB", "gigabyte"},
    {"TB", "terabyte"},
    {"PB", "petabyte"},
    {"J", "joule"},
    {"kJ", "kilojoule"},
    {"kWh", "kilowatt-hour"},
    {"cal", "calorie"},
    {"kcal", "kilocalorie"},
    {"BTU", "british-thermal-unit"},
    {"eV", "electronvolt"},
    {"Pa", "pascal"},
    {"hPa", "hectopascal"},
    {"kPa", "kilopascal"},
    {"MPa", "megapascal"},
    {"mbar", "millibar"},
    {"bar", "bar"},
    {"atm", "atmosphere"},
    {"mmHg", "millimeter-ofhg"},
    {"inHg", "inch-ofhg"},
    {"psi", "pound-force-per-square-inch"},
    {"″", "arc-second"},
    {"′", "arc-minute"},
    {"°", "degree"},
    {"rad", "radian"},
    {"turn", "revolution"},
});

/// By CLDR; empty where it has none.
std::string localName(std::string_view symbol) {
  const auto found = std::ranges::find(identifiers, symbol, &UnitIdentifier::symbol);
  if (found == identifiers.end())
    return {};
  UErrorCode status = U_ZERO_ERROR;
  const auto unit = icu::MeasureUnit::forIdentifier(found->cldr, status);
  const icu::MeasureFormat format(icu::Locale::createCanonical(textLanguage().c_str()),
                                  UMEASFMT_WIDTH_WIDE, status);
  if (U_FAILURE(status))
    return {};
  std::string name;
  const auto local = format.getUnitDisplayName(unit, status);
  return U_FAILURE(status) || local.isBogus() ? std::string() : local.toUTF8String(name);
}

} // namespace

std::string displayName(const ConverterUnit& unit) {
  if (textLanguage() == "en")
    return std::string(unit.name);
  const auto local = localName(unit.symbol);
  return local.empty() ? std::string(translation(unit.name)) : local;
}

} // namespace tavrin
