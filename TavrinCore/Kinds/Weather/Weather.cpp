#include "TavrinCore/Kinds/Weather/Weather.h"

#include "TavrinCore/Text/ClockText.h"
#include "TavrinCore/Text/Texts.h"

#include <array>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

struct ConditionWords {
  std::string_view words;
  std::string_view symbol;
  std::string_view nightSymbol;
};

/// In the order of the conditions.
constexpr std::array<ConditionWords, 8> words = {{
    {marked("Clear sky"), "sun.max.fill", "moon.stars.fill"},
    {marked("Partly cloudy"), "cloud.sun.fill", "cloud.moon.fill"},
    {marked("Cloudy"), "cloud.fill", "cloud.fill"},
    {marked("Fog"), "cloud.fog.fill", "cloud.fog.fill"},
    {marked("Drizzle"), "cloud.drizzle.fill", "cloud.drizzle.fill"},
    {marked("Rain"), "cloud.rain.fill", "cloud.rain.fill"},
    {marked("Snow"), "cloud.snow.fill", "cloud.snow.fill"},
    {marked("Thunderstorm"), "cloud.bolt.rain.fill", "cloud.bolt.rain.fill"},
}};

const ConditionWords& wordsOf(WeatherCondition condition) {
  return words.at(static_cast<std::size_t>(condition));
}

} // namespace

WeatherCondition weatherCondition(std::int64_t wmoCode) {
  switch (wmoCode) {
  case 0:
    return WeatherCondition::clear;
  case 1:
  case 2:
    return WeatherCondition::partlyCloudy;
  case 45:
  case 48:
    return WeatherCondition::fog;
  case 51:
  case 53:
  case 55:
  case 56:
  case 57:
    return WeatherCondition::drizzle;
  case 61:
  case 63:
  case 65:
  case 66:
  case 67:
  case 80:
  case 81:
  case 82:
    return WeatherCondition::rain;
  case 71:
  case 73:
  case 75:
  case 77:
  case 85:
  case 86:
    return WeatherCondition::snow;
  case 95:
  case 96:
  case 99:
    return WeatherCondition::thunderstorm;
  default:
    return WeatherCondition::cloudy;
  }
}

std::string_view symbolName(WeatherCondition condition, bool isDay) {
  return isDay ? wordsOf(condition).symbol : wordsOf(condition).nightSymbol;
}

std::string WeatherPlace::id() const {
  return fmt::format("{}|{}|{}", name, latitude, longitude);
}

std::string_view WeatherWords::describe(WeatherCondition condition) {
  return translation(wordsOf(condition).words);
}

std::string WeatherWords::dayName(Date date, bool isToday, const Calendar& calendar) {
  return isToday ? translated("Today") : calendar.text(date, "ccc");
}

std::string WeatherWords::shortDegrees(double value) {
  return fmt::format("{}°", std::lround(value));
}

std::string WeatherWords::degrees(double value, WeatherUnit unit) {
  return fmt::format("{}{}", std::lround(value), suffix(unit));
}

std::string WeatherWords::daySummary(const WeatherDay& day) {
  const std::string high = shortDegrees(day.high);
  const std::string low = shortDegrees(day.low);
  return day.rainChance ? fmt::format("High {}, low {}, {}% chance of rain", high, low,
                                      std::lround(*day.rainChance))
                        : fmt::format("High {}, low {}", high, low);
}

std::string WeatherWords::age(Date readAt, Date now) {
  const auto minutes = wholeSeconds(std::floor(now.since(readAt) / 60));
  if (minutes < 1)
    return translated("Updated just now");
  const auto days = minutes / (24 * 60);
  if (days > 0)
    return plural("Updated {count} day ago", "Updated {count} days ago", days);
  // From an hour on the minutes tell nothing.
  return translated("Updated {time} ago",
                    {{"time", durationText(minutes < 60 ? minutes : minutes / 60 * 60)}});
}

} // namespace tavrin
