#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"

namespace tavrin {

enum class WeatherCondition {
  clear,
  partlyCloudy,
  cloudy,
  fog,
  drizzle,
  rain,
  snow,
  thunderstorm,
};

template <> struct EnumNames<WeatherCondition> {
  static constexpr auto names = std::to_array<std::pair<WeatherCondition, std::string_view>>(
      {{WeatherCondition::clear, "clear"},
       {WeatherCondition::partlyCloudy, "partlyCloudy"},
       {WeatherCondition::cloudy, "cloudy"},
       {WeatherCondition::fog, "fog"},
       {WeatherCondition::drizzle, "drizzle"},
       {WeatherCondition::rain, "rain"},
       {WeatherCondition::snow, "snow"},
       {WeatherCondition::thunderstorm, "thunderstorm"}});
};

/// By the interpretation codes of the World Meteorological Organization (WMO table 4677, as the
/// forecast service uses it).
WeatherCondition weatherCondition(std::int64_t wmoCode);
std::string_view symbolName(WeatherCondition condition, bool isDay);

struct WeatherPlace {
  std::string name;
  /// "Bavaria, Germany".
  std::optional<std::string> region;
  double latitude = 0;
  double longitude = 0;

  std::string id() const;
  bool operator==(const WeatherPlace&) const = default;
};

struct WeatherDay {
  /// The day's beginning at the place.
  Date date;
  double high = 0;
  double low = 0;
  WeatherCondition condition = WeatherCondition::cloudy;
  /// Percent; no value where it was not asked for or is not known.
  std::optional<double> rainChance = {};

  static constexpr auto fields() {
    using D = WeatherDay;
    return std::tuple{required("date", &D::date), required("high", &D::high),
                      required("low", &D::low), required("condition", &D::condition),
                      optional("rainChance", &D::rainChance)};
  }
  bool operator==(const WeatherDay&) const = default;
};

/// Temperatures are in the unit that was asked for.
struct WeatherReading {
  double temperature = 0;
  std::optional<double> apparent;
  WeatherCondition condition = WeatherCondition::cloudy;
  bool isDay = true;
  std::vector<WeatherDay> days;
  Date readAt;
  /// The place's zone, in which its days are.
  std::optional<std::string> timeZoneID;

  static constexpr auto fields() {
    using R = WeatherReading;
    return std::tuple{required("temperature", &R::temperature),
                      optional("apparent", &R::apparent),
                      required("condition", &R::condition),
                      required("isDay", &R::isDay),
                      required("days", &R::days),
                      required("readAt", &R::readAt),
                      optional("timeZoneID", &R::timeZoneID)};
  }
  bool operator==(const WeatherReading&) const = default;
};

/// The requests to the forecast and the city search, and what their answers mean.
/// https://open-meteo.com/en/docs and https://open-meteo.com/en/docs/geocoding-api
namespace WeatherService {

inline constexpr int forecastDays = 5;
inline constexpr int searchCount = 8;
inline constexpr std::string_view forecastEndpoint = "https://api.open-meteo.com/v1/forecast";
inline constexpr std::string_view searchEndpoint = "https://geocoding-api.open-meteo.com/v1/search";

/// What a forecast is asked for beyond what it always has.
enum class ForecastDetail { usual, rainChance };

/// No value for coordinates that are not on the globe.
std::optional<std::string> forecastURL(double latitude, double longitude, WeatherUnit unit,
                                       std::string_view endpoint = forecastEndpoint,
                                       ForecastDetail detail = ForecastDetail::usual);
/// No value for a city of fewer than two characters.
std::optional<std::string> searchURL(std::string_view city, std::string_view language,
                                     std::string_view endpoint = searchEndpoint);
/// No value where a required part is missing or makes no sense. A day that does is left out.
std::optional<WeatherReading> reading(std::string_view data, Date now);
std::vector<WeatherPlace> places(std::string_view data);

} // namespace WeatherService

namespace WeatherWords {

std::string_view describe(WeatherCondition condition);
/// "Today", else the short weekday; `calendar` has the place's zone.
std::string dayName(Date date, bool isToday, const Calendar& calendar);
/// "21°C".
std::string degrees(double value, WeatherUnit unit);
/// "21°".
std::string shortDegrees(double value);
/// A day for those who hear it: "High 21°, low 12°, 40% chance of rain".
std::string daySummary(const WeatherDay& day);
/// How old a reading is: "Updated just now", "Updated 25 min ago", "Updated 3 days ago".
std::string age(Date readAt, Date now);

} // namespace WeatherWords

} // namespace tavrin
