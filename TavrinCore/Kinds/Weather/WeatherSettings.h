#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class WeatherUnit { celsius, fahrenheit };

template <> struct EnumNames<WeatherUnit> {
  static constexpr auto names = std::to_array<std::pair<WeatherUnit, std::string_view>>(
      {{WeatherUnit::celsius, "celsius"}, {WeatherUnit::fahrenheit, "fahrenheit"}});
};

constexpr std::string_view suffix(WeatherUnit unit) {
  return unit == WeatherUnit::fahrenheit ? "°F" : "°C";
}

/// Fahrenheit where the user's region measures in US units.
WeatherUnit currentWeatherUnit();

enum class WeatherTileStyle { current, conditions, forecast };

template <> struct EnumNames<WeatherTileStyle> {
  static constexpr auto names = std::to_array<std::pair<WeatherTileStyle, std::string_view>>(
      {{WeatherTileStyle::current, "current"},
       {WeatherTileStyle::conditions, "conditions"},
       {WeatherTileStyle::forecast, "forecast"}});
};

struct WeatherSettings {
  std::optional<std::string> cityName;
  /// Degrees, north positive.
  std::optional<double> latitude;
  /// Degrees, east positive.
  std::optional<double> longitude;
  WeatherUnit unit = currentWeatherUnit();
  bool showsApparent = true;
  WeatherTileStyle style = WeatherTileStyle::current;

  static constexpr auto fields() {
    return std::tuple{optional("cityName", &WeatherSettings::cityName).titled("City"),
                      optional("latitude", &WeatherSettings::latitude)
                          .titled("Latitude")
                          .in("°")
                          .ranging(-90, 90),
                      optional("longitude", &WeatherSettings::longitude)
                          .titled("Longitude")
                          .in("°")
                          .ranging(-180, 180),
                      optional("unit", &WeatherSettings::unit).titled("Unit"),
                      optional("showsApparent", &WeatherSettings::showsApparent)
                          .titled("Show the felt temperature"),
                      optional("style", &WeatherSettings::style).titled("Tile")};
  }
  bool operator==(const WeatherSettings&) const = default;
};

} // namespace tavrin
