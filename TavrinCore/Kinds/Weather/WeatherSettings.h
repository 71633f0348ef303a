#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class WeatherUnit { celsius, fahrenheit };

template <> struct EnumNames<WeatherUnit> {
  static constexpr auto names = std::to_array<std::pair<WeatherUnit, std::string_view>>(
      {{WeatherUnit::celsius, "celsius"}, {WeatherUnit::fahrenheit, "fahrenheit"}});
};

template <> struct EnumTitles<WeatherUnit> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Celsius"), marked("Fahrenheit")});
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

template <> struct EnumTitles<WeatherTileStyle> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Temperature"), marked("Conditions"), marked("Forecast")});
};

struct WeatherSettings {
  static constexpr std::string_view kindKey = "weather";

  std::optional<std::string> cityName;
  /// Degrees, north positive.
  std::optional<double> latitude;
  /// Degrees, east positive.
  std::optional<double> longitude;
  WeatherUnit unit = currentWeatherUnit();
  bool showsApparent = true;
  WeatherTileStyle style = WeatherTileStyle::current;
  /// Asks for each day's chance of rain too, one value more of the forecast.
  bool showsRainChance = false;

  static constexpr auto fields() {
    return std::tuple{optional("cityName", &WeatherSettings::cityName)
                          .titled("City")
                          .helped("The place whose weather is shown.")
                          .as(FieldRole::city)
                          .absentAs("Not chosen"),
                      optional("latitude", &WeatherSettings::latitude)
                          .titled("Latitude")
                          .helped("Where the place is, north positive.")
                          .as(FieldRole::latitude)
                          .in("°")
                          .ranging(-90, 90),
                      optional("longitude", &WeatherSettings::longitude)
                          .titled("Longitude")
                          .helped("Where the place is, east positive.")
                          .as(FieldRole::longitude)
                          .in("°")
                          .ranging(-180, 180),
                      optional("unit", &WeatherSettings::unit)
                          .titled("Unit")
                          .helped("What temperatures are shown in."),
                      optional("showsApparent", &WeatherSettings::showsApparent)
                          .titled("Show the felt temperature")
                          .helped("What it feels like, beside what it is."),
                      optional("style", &WeatherSettings::style)
                          .titled("Tile")
                          .helped("What stands on the tile."),
                      optional("showsRainChance", &WeatherSettings::showsRainChance)
                          .titled("Show the chance of rain")
                          .helped("Beside each day in the panel.")};
  }
  bool operator==(const WeatherSettings&) const = default;
};

} // namespace tavrin
