#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

/// No weather on this planet is beyond it, in either unit.
constexpr double extremeTemperature = 500;
constexpr std::size_t longestText = 200;

bool isLatitude(double degrees) {
  return std::abs(degrees) <= 90;
}
bool isLongitude(double degrees) {
  return std::abs(degrees) <= 180;
}

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

/// RFC 3986: all but the unreserved characters as their bytes.
std::string percentEncoded(std::string_view text) {
  std::string encoded;
  for (const char c : text) {
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_' || c == '~';
    encoded += isPlain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
  }
  return encoded;
}

std::optional<JSONValue> parsed(std::string_view data) {
  try {
    return JSONValue::parse(data);
  } catch (const JSONError&) {
    return std::nullopt;
  }
}

std::optional<double> number(const JSONValue* value, double limit) {
  const auto found = value != nullptr ? value->doubleValue() : std::nullopt;
  return found && std::abs(*found) <= limit ? found : std::nullopt;
}

std::optional<std::int64_t> integer(const JSONValue* value) {
  return value != nullptr ? value->integerValue() : std::nullopt;
}

/// A text that is not empty, cut where nobody would read on.
std::optional<std::string> label(const JSONValue* value) {
  const auto* text = value != nullptr ? value->string() : nullptr;
  if (text == nullptr || trimmed(*text).empty())
    return std::nullopt;
  return std::string(beginning(trimmed(*text), longestText));
}

/// The beginning of a day such as "2026-03-09".
std::optional<Date> dayStart(const JSONValue& value, const Calendar& calendar) {
  const auto* text = value.string();
  if (text == nullptr || text->size() != 10 || (*text)[4] != '-' || (*text)[7] != '-')
    return std::nullopt;
  DateComponents parts;
  const auto read = [&](std::size_t from, std::size_t count, int& part) {
    const char* end = text->data() + from + count;
    const auto result = std::from_chars(text->data() + from, end, part);
    return result.ec == std::errc() && result.ptr == end && part > 0;
  };
  if (!read(0, 4, parts.year) || !read(5, 2, parts.month) || !read(8, 2, parts.day) ||
      parts.month > 12 || parts.day > 31)
    return std::nullopt;
  // Noon exists on every day.
  parts.hour = 12;
  return calendar.startOfDay(calendar.date(parts));
}

std::vector<WeatherDay> days(const JSONValue& daily, const Calendar& calendar) {
  const auto list = [&](const char* key) {
    const auto* value = daily.member(key);
    return value != nullptr ? value->array() : nullptr;
  };
  const auto* times = list("time");
  const auto* codes = list("weather_code");
  const auto* highs = list("temperature_2m_max");
  const auto* lows = list("temperature_2m_min");
  const auto* chances = list("precipitation_probability_max");
  std::vector<WeatherDay> days;
  if (times == nullptr || codes == nullptr || highs == nullptr || lows == nullptr)
    return days;
  constexpr std::size_t most = 16;
  const auto count = std::min({times->size(), codes->size(), highs->size(), lows->size(), most});
  for (std::size_t i = 0; i < count; ++i) {
    const auto date = dayStart((*times)[i], calendar);
    const auto code = integer(&(*codes)[i]);
    const auto high = number(&(*highs)[i], extremeTemperature);
    const auto low = number(&(*lows)[i], extremeTemperature);
    if (!date || !code || !high || !low)
      continue;
    const auto chance =
        chances != nullptr && i < chances->size() ? number(&(*chances)[i], 100) : std::nullopt;
    days.push_back({*date, *high, *low, weatherCondition(*code),
                    chance && *chance >= 0 ? chance : std::nullopt});
  }
  return days;
}

} // namespace

std::optional<std::string> WeatherService::forecastURL(double latitude, double longitude,
                                                       WeatherUnit unit, std::string_view endpoint,
                                                       ForecastDetail detail) {
  if (!isLatitude(latitude) || !isLongitude(longitude))
    return std::nullopt;
  return fmt::format("{}?latitude={:.4f}&longitude={:.4f}"
                     "&current=temperature_2m,apparent_temperature,weather_code,is_day"
                     "&daily=weather_code,temperature_2m_max,temperature_2m_min{}"
                     "&forecast_days={}&timezone=auto&temperature_unit={}",
                     endpoint, latitude, longitude,
                     detail == ForecastDetail::rainChance ? ",precipitation_probability_max" : "",
                     forecastDays, nameOf(unit));
}

std::optional<std::string> WeatherService::searchURL(std::string_view city,
                                                     std::string_view language,
                                                     std::string_view endpoint) {
  const auto name = trimmed(city);
  if (characterCount(name) < 2)
    return std::nullopt;
  return fmt::format("{}?name={}&count={}&language={}&format=json", endpoint,
                     percentEncoded(beginning(name, longestText)), searchCount,
                     percentEncoded(language));
}

std::optional<WeatherReading> WeatherService::reading(std::string_view data, Date now) {
  const auto json = parsed(data);
  const auto* current = json ? json->member("current") : nullptr;
  const auto* daily = json ? json->member("daily") : nullptr;
  if (current == nullptr || daily == nullptr || daily->object() == nullptr)
    return std::nullopt;
  const auto temperature = number(current->member("temperature_2m"), extremeTemperature);
  const auto code = integer(current->member("weather_code"));
  const auto isDay = integer(current->member("is_day"));
  if (!temperature || !code || !isDay)
    return std::nullopt;
  WeatherReading reading;
  reading.temperature = *temperature;
  reading.apparent = number(current->member("apparent_temperature"), extremeTemperature);
  reading.condition = weatherCondition(*code);
  reading.isDay = *isDay == 1;
  reading.readAt = now;
  reading.timeZoneID = label(json->member("timezone"));
  if (reading.timeZoneID && !Calendar::isKnownTimeZone(*reading.timeZoneID))
    reading.timeZoneID.reset();
  reading.days = days(*daily, Calendar(reading.timeZoneID.value_or("")));
  if (reading.days.empty())
    return std::nullopt;
  return reading;
}

std::vector<WeatherPlace> WeatherService::places(std::string_view data) {
  std::vector<WeatherPlace> places;
  const auto json = parsed(data);
  const auto* results = json ? json->member("results") : nullptr;
  if (results == nullptr || results->array() == nullptr)
    return places;
  for (const auto& result : *results->array()) {
    if (places.size() == searchCount)
      break;
    const auto name = label(result.member("name"));
    const auto latitude = number(result.member("latitude"), 90);
    const auto longitude = number(result.member("longitude"), 180);
    if (!name || !latitude || !longitude)
      continue;
    std::optional<std::string> region = label(result.member("admin1"));
    if (const auto country = label(result.member("country")))
      region = region ? *region + ", " + *country : *country;
    places.push_back({*name, region, *latitude, *longitude});
  }
  return places;
}

} // namespace tavrin
