#include "TavrinCore/Kinds/Weather/Weather.h"

#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinCore/Text/Text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>

namespace tavrin {
namespace {

TEST(Weather, CodesAndWords) {
  const std::tuple<int, const char*, const char*, const char*> cases[] = {
      {0, "Clear sky", "sun.max.fill", "moon.stars.fill"},
      {2, "Partly cloudy", "cloud.sun.fill", "cloud.moon.fill"},
      {3, "Cloudy", "cloud.fill", "cloud.fill"},
      {4, "Cloudy", "cloud.fill", "cloud.fill"},
      {100, "Cloudy", "cloud.fill", "cloud.fill"},
      {48, "Fog", "cloud.fog.fill", "cloud.fog.fill"},
      {57, "Drizzle", "cloud.drizzle.fill", "cloud.drizzle.fill"},
      {82, "Rain", "cloud.rain.fill", "cloud.rain.fill"},
      {86, "Snow", "cloud.snow.fill", "cloud.snow.fill"},
      {99, "Thunderstorm", "cloud.bolt.rain.fill", "cloud.bolt.rain.fill"}};
  for (const auto& [code, words, day, night] : cases) {
    const auto condition = weatherCondition(code);
    EXPECT_EQ(WeatherWords::describe(condition), words) << code;
    EXPECT_EQ(symbolName(condition, true), day) << code;
    EXPECT_EQ(symbolName(condition, false), night) << code;
  }
  EXPECT_EQ(WeatherWords::shortDegrees(-0.4), "0°");
  EXPECT_EQ(WeatherWords::degrees(21.5, WeatherUnit::fahrenheit), "22°F");
}

/// A good answer whose parts can be spoilt; an empty part is left away.
struct Answer {
  using Fields = std::map<std::string, std::string>;
  std::string timezone = "\"Europe/Berlin\"";
  Fields current = {{"temperature_2m", "21.5"},
                    {"apparent_temperature", "-0.4"},
                    {"weather_code", "3"},
                    {"is_day", "1"}};
  Fields daily = {{"time", R"(["2026-05-08","2026-05-09","2026-05-10"])"},
                  {"weather_code", "[0,61,95]"},
                  {"temperature_2m_max", "[22,19,18]"},
                  {"temperature_2m_min", "[12,9,8]"}};

  static std::string object(const Fields& fields) {
    std::string text;
    for (const auto& [key, value] : fields)
      if (!value.empty())
        text += (text.empty() ? "\"" : ",\"") + key + "\":" + value;
    return "{" + text + "}";
  }
  std::optional<WeatherReading> reading() const {
    return WeatherService::reading(
        object({{"timezone", timezone}, {"current", object(current)}, {"daily", object(daily)}}),
        Date{5});
  }
};

const char* const wrongNumbers[] = {"",   "null", "\"20\"", "true", "{}",
                                    "[]", "[20]", "1e300",  "-1e9"};

TEST(Weather, ReadsAnAnswer) {
  const auto reading = Answer{}.reading();
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->temperature, 21.5);
  EXPECT_EQ(reading->apparent, -0.4);
  EXPECT_EQ(reading->condition, WeatherCondition::cloudy);
  EXPECT_TRUE(reading->isDay);
  EXPECT_EQ(reading->readAt, Date{5});
  const Calendar berlin("Europe/Berlin", "en_GB");
  ASSERT_EQ(reading->days.size(), 3u);
  EXPECT_EQ(reading->days[2],
            (WeatherDay{berlin.date({2026, 5, 10}), 18, 8, WeatherCondition::thunderstorm}));
  EXPECT_EQ(WeatherWords::daySummary(reading->days[0]), "High 22°, low 12°");
  Answer rainy;
  rainy.daily["precipitation_probability_max"] = "[40,null,101]";
  const auto days = rainy.reading()->days;
  ASSERT_EQ(days.size(), 3U);
  EXPECT_EQ(days[0].rainChance, 40);
  EXPECT_EQ(WeatherWords::daySummary(days[0]), "High 22°, low 12°, 40% chance of rain");
  EXPECT_FALSE(days[1].rainChance) << "a day without it stays a day";
  EXPECT_FALSE(days[2].rainChance) << "nonsense";
  Answer night;
  night.current["is_day"] = "0";
  EXPECT_FALSE(night.reading()->isDay);
}

TEST(Weather, WithoutARequiredPartThereIsNoReading) {
  for (const char* field : {"temperature_2m", "weather_code", "is_day"})
    for (const char* wrong : wrongNumbers) {
      if (std::string(field) == "weather_code" && std::string(wrong) == "-1e9")
        continue; // an unknown code is a cloudy one
      Answer answer;
      answer.current[field] = wrong;
      if (std::string(field) != "is_day" || std::string(wrong) != "-1e9") {
        EXPECT_EQ(answer.reading(), std::nullopt) << field << " " << wrong;
      }
    }
  for (const char* field : {"time", "weather_code", "temperature_2m_max", "temperature_2m_min"})
    for (const char* wrong :
         {"", "null", "5", "\"x\"", "{}", "[]", "[null,null,null]", "[{},[],true]"}) {
      Answer answer;
      answer.daily[field] = wrong;
      EXPECT_EQ(answer.reading(), std::nullopt) << field << " " << wrong;
    }
  for (const std::string& bad :
       {std::string(), std::string("[]"), std::string("null"), std::string("{}"),
        std::string("\xff\xfe"), std::string(R"({"current":[],"daily":{}})"),
        std::string("{\"timezone\":\"\xc3\x28\"}"), std::string(200'000, '['),
        std::string(R"({"error":true,"reason":"Too many requests"})")})
    EXPECT_EQ(WeatherService::reading(bad, {}), std::nullopt) << bad.substr(0, 40);
}

TEST(Weather, WithoutAnOptionalPartThereIs) {
  for (const char* wrong : wrongNumbers) {
    Answer answer;
    answer.current["apparent_temperature"] = wrong;
    ASSERT_TRUE(answer.reading()) << wrong;
    EXPECT_EQ(answer.reading()->apparent, std::nullopt) << wrong;
  }
  for (const char* wrong : {"", "null", "7", "\"\"", "\"Mars/Base\"", "\"../../etc/passwd\""}) {
    Answer answer;
    answer.timezone = wrong;
    ASSERT_TRUE(answer.reading()) << wrong;
    EXPECT_EQ(answer.reading()->timeZoneID, std::nullopt) << wrong;
    EXPECT_EQ(answer.reading()->days.size(), 3u) << wrong;
  }
}

TEST(Weather, ABadDayIsLeftOutAndUnequalArraysEndWithTheShortest) {
  struct Case {
    const char* field;
    const char* value;
    std::size_t days;
  };
  const Case cases[] = {{"time", R"(["2026-05-08","2026-05-09"])", 2},
                        {"time", R"(["2026-05-08","tomorrow","2026-05-10"])", 2},
                        {"time", R"(["2026-13-08","2026-05-32","2026-05-10"])", 1},
                        {"time", R"(["2026-05-08T10:00",7,"2026-05-10"])", 1},
                        {"weather_code", "[0]", 1},
                        {"weather_code", "[0,null,\"1\"]", 1},
                        {"temperature_2m_max", "[22,1e9,18,4,4,4]", 2},
                        {"temperature_2m_min", "[null,9]", 1}};
  for (const auto& [field, value, days] : cases) {
    Answer answer;
    answer.daily[field] = value;
    ASSERT_TRUE(answer.reading()) << field << value;
    EXPECT_EQ(answer.reading()->days.size(), days) << field << value;
  }
}

std::vector<WeatherPlace> places(const std::string& results) {
  return WeatherService::places("{\"results\":" + results + "}");
}
std::string place(const Answer::Fields& changes = {}) {
  Answer::Fields fields = {{"name", "\"Berlin\""},
                           {"latitude", "52.52"},
                           {"longitude", "13.4"},
                           {"admin1", "\"State of Berlin\""},
                           {"country", "\"Germany\""}};
  for (const auto& [key, value] : changes)
    fields[key] = value;
  return Answer::object(fields);
}

TEST(Weather, PlacesWithoutNameOrCoordinatesAreLeftOut) {
  for (const char* field : {"latitude", "longitude"})
    for (const char* wrong : wrongNumbers)
      EXPECT_EQ(places("[" + place({{field, wrong}}) + "," + place() + "]").size(), 1u)
          << field << wrong;
  EXPECT_EQ(places("[" + place({{"latitude", "90.1"}}) + "]").size(), 0u);
  EXPECT_EQ(places("[" + place({{"longitude", "180.1"}}) + "]").size(), 0u);
  for (const char* wrong : {"", "null", "7", "\"\"", "\" \"", "[]", "{}"})
    EXPECT_EQ(places("[" + place({{"name", wrong}}) + "]").size(), 0u) << wrong;
  for (const char* wrong : {"null", "7", "{}", "\"x\"", "[]", "[null,7,\"x\",[]]"})
    EXPECT_EQ(places(wrong).size(), 0u) << wrong;
  EXPECT_EQ(WeatherService::places("\xff").size(), 0u);
  EXPECT_EQ(WeatherService::places("{}").size(), 0u);
  std::string many = "[" + place();
  for (int i = 0; i < 20; ++i)
    many += "," + place();
  EXPECT_EQ(places(many + "]").size(), 8u);
}

TEST(Weather, RegionsAreWhatIsKnownOfThem) {
  using Region = std::optional<std::string>;
  const std::tuple<const char*, const char*, Region> cases[] = {
      {"\"Bavaria\"", "\"Germany\"", "Bavaria, Germany"},
      {"", "\"Germany\"", "Germany"},
      {"\"Bavaria\"", "null", "Bavaria"},
      {"7", "[]", std::nullopt},
      {"\"\"", "\" \"", std::nullopt}};
  for (const auto& [admin, country, region] : cases)
    EXPECT_EQ(places("[" + place({{"admin1", admin}, {"country", country}}) + "]").front().region,
              region);
  // A name that nobody reads to its end is not cut within a character.
  for (const char* letter : {"ü", "€", "🌦"})
    for (const char* start : {"", "a", "ab", "abc"}) {
      std::string longName = start;
      for (int i = 0; i < 300; ++i)
        longName += letter;
      const auto found = places("[" + place({{"name", "\"" + longName + "\""}}) + "]");
      ASSERT_EQ(found.size(), 1u);
      EXPECT_LE(found.front().name.size(), 200u);
      EXPECT_TRUE(isUTF8(found.front().name)) << letter << start;
    }
}

TEST(Weather, TheChanceOfRainIsAskedForOnlyWhereItIsWanted) {
  using namespace WeatherService;
  const auto usual = forecastURL(52.5, 13.4, WeatherUnit::celsius);
  const auto more =
      forecastURL(52.5, 13.4, WeatherUnit::celsius, forecastEndpoint, ForecastDetail::rainChance);
  EXPECT_EQ(usual->find("precipitation"), std::string::npos);
  EXPECT_NE(more->find("temperature_2m_min,precipitation_probability_max&"), std::string::npos);
}

TEST(Weather, WhatCannotBeAskedHasNoAddress) {
  for (const char* city : {"", " ", "m", " m ", "ü", "\n\t"})
    EXPECT_EQ(WeatherService::searchURL(city, "de"), std::nullopt) << city;
  EXPECT_EQ(WeatherService::searchURL(" Bad Tölz & Co ", "de"),
            "https://geocoding-api.open-meteo.com/v1/search?name=Bad%20T%C3%B6lz%20%26%20Co"
            "&count=8&language=de&format=json");
  for (const auto& [latitude, longitude] : {std::pair(91., 0.), std::pair(0., -181.),
                                            std::pair(std::nan(""), 0.), std::pair(0., HUGE_VAL)})
    EXPECT_EQ(WeatherService::forecastURL(latitude, longitude, WeatherUnit::celsius), std::nullopt);
}

} // namespace
} // namespace tavrin
