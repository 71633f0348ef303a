#include "TavrinCore/Kinds/Weather.h"

#include <gtest/gtest.h>

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

TEST(Weather, ABadAnswerGivesNoneAndABadDayIsLeftOut) {
  const auto answer = [](const std::string& current, const std::string& times,
                         const std::string& zone = "\"Europe/Berlin\"") {
    return R"({"timezone":)" + zone + R"(,"current":{)" + current + R"(},"daily":{"time":)" +
           times +
           R"(,"weather_code":[0,61],"temperature_2m_max":[22,1e9],)"
           R"("temperature_2m_min":[12,9,8]}})";
  };
  const std::string good = R"("temperature_2m":1,"weather_code":0,"is_day":0)";
  const std::string days = R"(["2026-05-08","2026-05-09"])";
  const auto reading = WeatherService::reading(answer(good, days, "\"Mars/Base\""), {});
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->days.size(), 1u);
  EXPECT_EQ(reading->apparent, std::nullopt);
  EXPECT_FALSE(reading->isDay);
  for (const std::string& bad :
       {answer(R"("weather_code":0,"is_day":1)", days),
        answer(R"("temperature_2m":null,"weather_code":0,"is_day":1)", days),
        answer(R"("temperature_2m":1e300,"weather_code":0,"is_day":1)", days), answer(good, "null"),
        answer(good, "[\"tomorrow\"]"), std::string("[]"), std::string(), std::string("\xff\xfe")})
    EXPECT_EQ(WeatherService::reading(bad, {}), std::nullopt) << bad;
  EXPECT_EQ(WeatherService::searchURL(" m ", "de"), std::nullopt);
  EXPECT_EQ(WeatherService::forecastURL(91, 0, WeatherUnit::celsius), std::nullopt);
}

} // namespace
} // namespace tavrin
