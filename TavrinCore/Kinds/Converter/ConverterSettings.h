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

struct ConverterSettings {
  ConverterCategory category = ConverterCategory::length;
  /// A unit's symbol within the category.
  std::string from = "km";
  std::string to = "mi";
  double value = 1;

  static constexpr auto fields() {
    return std::tuple{optional("category", &ConverterSettings::category).titled("Category"),
                      optional("from", &ConverterSettings::from).titled("From"),
                      optional("to", &ConverterSettings::to).titled("To"),
                      optional("value", &ConverterSettings::value).titled("Value")};
  }
  bool operator==(const ConverterSettings&) const = default;
};

} // namespace tavrin
