#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class ConverterCategory {
  length,
  mass,
  temperature,
  volume,
  area,
  speed,
  time,
  data,
  energy,
  pressure,
  angle
};

template <> struct EnumNames<ConverterCategory> {
  static constexpr auto names = std::to_array<std::pair<ConverterCategory, std::string_view>>(
      {{ConverterCategory::length, "length"},
       {ConverterCategory::mass, "mass"},
       {ConverterCategory::temperature, "temperature"},
       {ConverterCategory::volume, "volume"},
       {ConverterCategory::area, "area"},
       {ConverterCategory::speed, "speed"},
       {ConverterCategory::time, "time"},
       {ConverterCategory::data, "data"},
       {ConverterCategory::energy, "energy"},
       {ConverterCategory::pressure, "pressure"},
       {ConverterCategory::angle, "angle"}});
};

template <> struct EnumTitles<ConverterCategory> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Length"), marked("Mass"), marked("Temperature"), marked("Volume"), marked("Area"),
       marked("Speed"), marked("Time"), marked("Data"), marked("Energy"), marked("Pressure"),
       marked("Angle")});
};

/// The units of a settings record's category.
std::vector<FieldChoice> converterUnitChoices(const JSONValue& settings);

struct ConverterSettings {
  static constexpr std::string_view kindKey = "converter";

  ConverterCategory category = ConverterCategory::length;
  /// A unit's symbol within the category.
  std::string from = "km";
  std::string to = "mi";
  double value = 1;

  static constexpr auto fields() {
    return std::tuple{optional("category", &ConverterSettings::category)
                          .titled("Category")
                          .helped("What is measured; another one brings its usual units."),
                      optional("from", &ConverterSettings::from)
                          .titled("From")
                          .helped("The unit of the value.")
                          .choosing(converterUnitChoices),
                      optional("to", &ConverterSettings::to)
                          .titled("To")
                          .helped("The unit it is converted to.")
                          .choosing(converterUnitChoices),
                      optional("value", &ConverterSettings::value)
                          .titled("Value")
                          .helped("The number that is converted.")};
  }
  bool operator==(const ConverterSettings&) const = default;
};

} // namespace tavrin
