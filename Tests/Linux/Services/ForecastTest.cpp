#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinPlatform/Qt/QtHTTPClient.h"
#include "TavrinWidgetsUI/Weather/WeatherModel.h"
#include "Tests/Linux/Services/HTTPServer.h"
#include "Tests/Linux/Services/LoopTest.h"
#include "Tests/Support/FakePlatform.h"

#include <QTemporaryDir>
#include <cmath>

namespace tavrin::test {
namespace {

/// As long as the service's own answers: five days with their units and the rest of its words.
std::string forecast(int temperature) {
  return R"({"latitude":52.52,"longitude":13.419998,"generationtime_ms":0.08,"utc_offset_seconds":7200,)"
         R"("timezone":"Europe/Berlin","timezone_abbreviation":"CEST","elevation":38.0,)"
         R"("current_units":{"time":"iso8601","interval":"seconds","temperature_2m":"°C"},)"
         R"("current":{"time":"2026-05-08T12:00","interval":900,"temperature_2m":)" +
         std::to_string(temperature) +
         R"(,"apparent_temperature":9.5,"weather_code":61,"is_day":1},)"
         R"("daily_units":{"time":"iso8601","weather_code":"wmo code"},)"
         R"("daily":{"time":["2026-05-08","2026-05-09","2026-05-10","2026-05-11","2026-05-12"],)"
         R"("weather_code":[61,3,0,95,71],"temperature_2m_max":[12.1,13.0,18.4,17.0,2.2],)"
         R"("temperature_2m_min":[4.4,5.0,6.1,8.9,-1.5]}})";
}

WeatherSettings berlin() {
  WeatherSettings settings;
  settings.cityName = "Berlin";
  settings.latitude = 52.52;
  settings.longitude = 13.405;
  return settings;
}

/// The requests are real; the time between them is the test's.
class ForecastTest : public LoopTest {
protected:
  ForecastTest() {
    server_.answer = HTTPServer::whole(forecast(1));
    model_.onChange = [this] { ++changes_; };
  }
  bool finished() {
    return waitFor([&] { return !model_.isLoading(); });
  }
  /// Long enough for a request that should not be to arrive.
  void listen() {
    waitFor([] { return false; }, 30);
  }
  std::size_t requests() const { return server_.requests.size(); }

  HTTPServer server_;
  QtHTTPClient client_;
  FakeFileManager files_ = [this] {
    FakeFileManager files;
    files.variables["TAVRIN_FORECAST_URL"] = server_.url();
    return files;
  }();
  ManualClock clock_{Date{800'000'000}};
  ManualRunLoop time_{clock_};
  FakeWorkspace workspace_;
  QTemporaryDir folder_;
  const std::filesystem::path cache_ = folder_.filePath("weather.json").toStdString();
  WeatherFetch fetch_{client_, clock_, files_};
  WeatherModel model_{clock_, time_, workspace_, fetch_, WeatherCache(cache_), {}};
  int changes_ = 0;
};

TEST_F(ForecastTest, AWeekOfAnswers) {
  model_.start();
  time_.advance(7 * 86'400.0);
  workspace_.wake.call();
  listen();
  EXPECT_EQ(requests(), 0u) << "there is no place to ask about";

  server_.isSilent = true;
  model_.setSettings(berlin());
  ASSERT_TRUE(waitFor([&] { return requests() == 1; }));
  EXPECT_NE(server_.requests.front().find("GET /v1/forecast?latitude=52.5200&longitude=13.4050&"),
            std::string::npos);
  time_.advance(3 * WeatherModel::interval);
  model_.refresh();
  listen();
  EXPECT_EQ(requests(), 1u) << "one is under way";
  server_.speak();
  ASSERT_TRUE(finished());

  // Good answers, and now and then a bad one.
  const std::string bad[] = {
      HTTPServer::whole("\xff\xfe garbage"), HTTPServer::whole("oops", "500 Oops"),
      HTTPServer::whole(R"({"current":null})"),
      "HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\n" + forecast(3).substr(0, 300)};
  constexpr int intervals = 7 * 72;
  int temperature = 1;
  for (int i = 1; i <= intervals; ++i) {
    const bool isBad = i % 9 == 0;
    server_.answer = isBad ? bad[static_cast<std::size_t>(i / 9) % std::size(bad)]
                           : HTTPServer::whole(forecast(temperature = i % 40));
    time_.advance(WeatherModel::interval - 1);
    ASSERT_EQ(requests(), static_cast<std::size_t>(i)) << "too early";
    time_.advance(1);
    ASSERT_TRUE(finished());
    ASSERT_EQ(requests(), static_cast<std::size_t>(i + 1));
    ASSERT_EQ(model_.failed(), isBad) << i;
    ASSERT_TRUE(model_.reading());
    ASSERT_EQ(model_.reading()->temperature, temperature) << "the last good one stays";
    ASSERT_EQ(model_.reading()->days.size(), 5u);
  }

  server_.isSilent = true;
  time_.advance(WeatherModel::interval);
  ASSERT_TRUE(waitFor([&] { return requests() == intervals + 2; }));
  model_.stop();
  const int before = changes_;
  server_.speak();
  time_.advance(7 * 86'400.0);
  workspace_.wake.call();
  workspace_.lowPowerChange.call();
  listen();
  EXPECT_EQ(requests(), static_cast<std::size_t>(intervals + 2)) << "stopped";
  EXPECT_EQ(changes_, before);
}

TEST_F(ForecastTest, AnEndlessAnswerIsNotKept) {
  server_.answer = HTTPServer::whole(std::string(100 * 1024 * 1024, ' ') + forecast(5));
  model_.setSettings(berlin());
  ASSERT_TRUE(finished());
  EXPECT_TRUE(model_.failed());
  EXPECT_FALSE(model_.reading());
}

TEST_F(ForecastTest, TheLastReadingIsThereAfterARestartWithoutANetwork) {
  model_.setSettings(berlin());
  ASSERT_TRUE(finished());
  clock_.advance(2 * 3600);
  server_.answer.clear();
  WeatherModel next(clock_, time_, workspace_, fetch_, WeatherCache(cache_), berlin());
  ASSERT_TRUE(next.reading());
  EXPECT_EQ(next.reading()->temperature, 1);
  EXPECT_EQ(clock_.now().since(next.reading()->readAt), 2 * 3600.0);
  next.start();
  EXPECT_TRUE(waitFor([&] { return !next.isLoading(); }));
  EXPECT_TRUE(next.failed());
  EXPECT_TRUE(next.reading());
}

} // namespace
} // namespace tavrin::test
