#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinStorage/WidgetStore.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "Tests/Slot/SlotFixture.h"

namespace tavrin::test {
namespace {

using testing::Contains;
using testing::HasSubstr;

const char* const forecast = R"({"timezone":"Europe/Berlin",
  "current":{"temperature_2m":21.5,"apparent_temperature":-0.4,"weather_code":3,"is_day":1},
  "daily":{"time":["2026-05-08","2026-05-09"],"weather_code":[0,61],
           "temperature_2m_max":[22,19],"temperature_2m_min":[12,9]}})";

class WeatherWidgetTest : public SlotTest {
protected:
  WeatherSettings berlin() const {
    WeatherSettings settings;
    settings.cityName = "Berlin";
    settings.latitude = 52.52;
    settings.longitude = 13.405;
    settings.unit = WeatherUnit::celsius;
    return settings;
  }
  bool answerForecast() { return http().answer("/v1/forecast", {200, forecast}); }
  FakeHTTPClient& http() { return platform_.fakeHTTP; }
};

TEST_F(WeatherWidgetTest, WithoutACityNothingIsAsked) {
  start(WeatherSettings{});
  platform_.loop.advance(7 * 86'400.0);
  platform_.fakeWorkspace.wake.call();
  EXPECT_TRUE(http().urls.empty());
  EXPECT_EQ(platform_.tile.name, "Weather, no city chosen");
  click();
  EXPECT_THAT(words(), Contains("Choose a city and Tavrin will show its weather here."));
}

TEST_F(WeatherWidgetTest, AsksOncePerIntervalAndNeverTwiceAtATime) {
  start(berlin());
  EXPECT_EQ(platform_.tile.name, "Weather, loading");
  EXPECT_EQ(http().urls,
            std::vector<std::string>{
                "https://api.open-meteo.com/v1/forecast?latitude=52.5200&longitude=13.4050"
                "&current=temperature_2m,apparent_temperature,weather_code,is_day"
                "&daily=weather_code,temperature_2m_max,temperature_2m_min"
                "&forecast_days=5&timezone=auto&temperature_unit=celsius"});
  platform_.loop.advance(3600);
  EXPECT_EQ(http().urls.size(), 1u) << "one is under way";
  ASSERT_TRUE(answerForecast());
  EXPECT_EQ(platform_.tile.name, "Weather, Berlin");
  EXPECT_EQ(platform_.tile.value, "22°C, Cloudy, feels like 0°");
  for (int i = 0; i < 7 * 72; ++i) {
    platform_.loop.advance(1200);
    ASSERT_EQ(http().open(), 1);
    answerForecast();
  }
  EXPECT_EQ(http().urls.size(), 1u + 7 * 72);
  platform_.fakeWorkspace.lowPower = true;
  platform_.fakeWorkspace.lowPowerChange.call();
  platform_.loop.advance(3599);
  EXPECT_EQ(http().open(), 0);
  platform_.loop.advance(1);
  EXPECT_EQ(http().open(), 1);
  app_.reset();
  EXPECT_EQ(http().open(), 0) << "a request ends with its controller";
}

TEST_F(WeatherWidgetTest, EachDayTellsItsRangeAndTheChanceOfRainWhereItIsWanted) {
  start(berlin());
  answerForecast();
  click();
  panel()->show();
  const auto days = [this] {
    QStringList told;
    for (auto* row : all<ViewWidget>())
      if (row->isVisibleTo(panel()) && !row->accessibleDescription().isEmpty())
        told << row->accessibleName() + ": " + row->accessibleDescription();
    return told;
  };
  ASSERT_EQ(days().size(), 2);
  EXPECT_TRUE(days()[0].endsWith("Clear sky: High 22°, low 12°")) << days()[0].toStdString();
  EXPECT_TRUE(days()[1].endsWith("Rain: High 19°, low 9°"));
  auto settings = berlin();
  settings.showsRainChance = true;
  write(settings);
  announce();
  ASSERT_EQ(http().urls.size(), 2U);
  EXPECT_THAT(http().urls.back(), HasSubstr("temperature_2m_min,precipitation_probability_max&"));
  EXPECT_EQ(days().size(), 2) << "what is known stays while the rest is asked for";
  std::string rainy = forecast;
  rainy.insert(rainy.find("\"weather_code\":[0"), "\"precipitation_probability_max\":[5,80],");
  ASSERT_TRUE(http().answer("/v1/forecast", {200, rainy}));
  ASSERT_EQ(days().size(), 2);
  EXPECT_TRUE(days()[1].endsWith("High 19°, low 9°, 80% chance of rain"));
}

TEST_F(WeatherWidgetTest, AFailureKeepsTheLastReadingAndTheNetworksReturnEndsIt) {
  start(berlin());
  answerForecast();
  for (const HTTPResponse& bad : {HTTPResponse{}, HTTPResponse{500, forecast},
                                  HTTPResponse{200, "{}"}, HTTPResponse{200, "\xff"}}) {
    platform_.loop.advance(1200);
    ASSERT_TRUE(http().answer("forecast", bad));
    EXPECT_EQ(platform_.tile.value, "22°C, Cloudy, feels like 0°");
  }
  click();
  EXPECT_THAT(words(), Contains("Could not reach the forecast just now."));
  EXPECT_THAT(words(), Contains("Updated 1 h ago"));
  http().network.call();
  http().network.call();
  platform_.loop.advance(5);
  EXPECT_EQ(http().open(), 1);
  answerForecast();
  EXPECT_THAT(words(), testing::Not(Contains("Could not reach the forecast just now.")));
  http().network.call();
  platform_.loop.advance(5);
  EXPECT_EQ(http().open(), 0) << "a fresh reading needs no other";
  platform_.fakeWorkspace.wake.call();
  EXPECT_EQ(http().open(), 1);
}

TEST_F(WeatherWidgetTest, AClockThatWasSetMakesAReadingOldAtOnce) {
  start(berlin());
  answerForecast();
  platform_.fakeClock.advance(60);
  platform_.fakeWorkspace.clockChange.call();
  EXPECT_EQ(http().open(), 0);
  for (const double hours : {16, -30}) {
    platform_.fakeClock.advance(hours * 3600);
    platform_.fakeWorkspace.clockChange.call();
    EXPECT_EQ(http().open(), 1) << hours;
    answerForecast();
  }
}

TEST_F(WeatherWidgetTest, AFirstLoadThatFailedIsTriedAgainFromThePanel) {
  start(berlin());
  ASSERT_TRUE(http().answer("forecast", {}));
  EXPECT_EQ(platform_.tile.name, "Weather, the forecast could not be reached");
  click();
  button("Try Again")->click();
  EXPECT_EQ(http().open(), 1);
  EXPECT_THAT(words(), Contains("Asking for the weather in Berlin…"));
  answerForecast();
  EXPECT_EQ(platform_.tile.name, "Weather, Berlin");
}

TEST_F(WeatherWidgetTest, AStartWithoutANetworkShowsTheLastReadingWithItsAge) {
  start(berlin());
  answerForecast();
  app_.reset();
  platform_.fakeClock.advance(5 * 3600);
  start(berlin());
  http().answer("forecast", {});
  EXPECT_EQ(platform_.tile.value, "22°C, Cloudy, feels like 0°, Updated 5 h ago");
  app_.reset();
  auto elsewhere = berlin();
  elsewhere.latitude = 10;
  start(elsewhere);
  EXPECT_EQ(platform_.tile.name, "Weather, loading");
}

TEST_F(WeatherWidgetTest, TypingAsksOnceAndAnOvertakenAnswerIsDropped) {
  start(WeatherSettings{});
  click();
  auto* field = all<PanelSearchField>().front();
  auto* list = all<PanelList>().front();
  for (const char* text : {"b", "be", "ber", "berl"}) {
    field->setText(text);
    platform_.loop.advance(0.1);
  }
  EXPECT_TRUE(http().urls.empty());
  platform_.loop.advance(0.3);
  ASSERT_EQ(http().urls.size(), 1u);
  EXPECT_THAT(http().urls.back(), HasSubstr("/v1/search?name=berl&count=8&language="));
  field->setText("M\u00fcnchen ");
  EXPECT_FALSE(http().answer("name=berl", {200, R"({"results":[]})"})) << "dropped";
  platform_.loop.advance(0.4);
  EXPECT_THAT(http().urls.back(), HasSubstr("name=M%C3%BCnchen&"));
  http().answer("name=M", {200, R"({"results":[{"name":"Munich","latitude":48.1,"longitude":11.6,
                                   "admin1":"Bavaria","country":"Germany"}]})"});
  ASSERT_EQ(list->count(), 1);
  EXPECT_EQ(list->row(0).subtitle, "Bavaria, Germany");
  list->setFocus();
  list->onOpen(0);
  // The emptied field has the keys again, and nothing to clear.
  EXPECT_EQ(field->window()->focusWidget(), field);
  EXPECT_EQ(field->text(), "");
  EXPECT_TRUE(field->findChild<QPushButton*>()->isHidden());
  const WidgetStore store(folder_ / "widgets.json");
  const auto* saved = store.file().widgets.front().kind.get<WeatherSettings>();
  EXPECT_EQ(saved->cityName, "Munich");
  EXPECT_EQ(saved->latitude, 48.1);
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
  EXPECT_THAT(http().urls.back(), HasSubstr("latitude=48.1000"));
  answerForecast();
  EXPECT_THAT(words(), Contains("Bavaria, Germany"));
  field->setText("qq");
  platform_.loop.advance(0.4);
  http().answer("name=qq", {200, "{}"});
  EXPECT_THAT(words(), Contains("No city by that name."));
}

} // namespace
} // namespace tavrin::test
