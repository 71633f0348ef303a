#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Weather/WeatherModel.h"
#include "TavrinWidgetsUI/Weather/WeatherPanelView.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <deque>

namespace tavrin {
namespace {

/// Wednesday, 9 September 2026, 12:08 in Berlin.
constexpr Date noon = Date::fromUnixSeconds(1'788'948'522);
using Condition = WeatherCondition;

WeatherSnapshot weather(const char* city, double temperature, Condition condition, bool isDay,
                        WeatherTileStyle style) {
  WeatherSnapshot snapshot;
  snapshot.settings.cityName = city;
  snapshot.settings.latitude = 52.52;
  snapshot.settings.longitude = 13.405;
  snapshot.settings.unit = WeatherUnit::celsius;
  snapshot.settings.style = style;
  snapshot.now = noon;
  snapshot.reading = samples::weather(temperature, condition, isDay, noon, "Europe/Berlin");
  return snapshot;
}

struct WeatherCase {
  const char* name;
  WeatherSnapshot weather;
};

std::vector<WeatherCase> weatherCases() {
  std::vector<WeatherCase> cases;
  using Style = WeatherTileStyle;
  const std::pair<const char*, Condition> conditions[] = {
      {"clear", Condition::clear},     {"partly", Condition::partlyCloudy},
      {"cloudy", Condition::cloudy},   {"fog", Condition::fog},
      {"drizzle", Condition::drizzle}, {"rain", Condition::rain},
      {"snow", Condition::snow},       {"thunder", Condition::thunderstorm}};
  for (const auto style : {Style::current, Style::conditions, Style::forecast}) {
    double temperature = 24.6;
    for (const auto& [name, condition] : conditions) {
      cases.push_back({name, weather("Berlin", temperature, condition, true, style)});
      temperature -= 4.2;
    }
    cases.push_back({"night", weather("Berlin", -18.2, Condition::clear, false, style)});
    cases.push_back(
        {"long name", weather("Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogogoch", 104,
                              Condition::partlyCloudy, false, style)});
    auto stale = weather("Berlin", 12, Condition::rain, true, style);
    stale.isStale = stale.failed = true;
    stale.reading->readAt = noon - 7.3 * 3600;
    cases.push_back({"stale", stale});
  }
  auto bare = weather("Berlin", 21, Condition::clear, true, Style::current);
  bare.settings.showsApparent = false;
  bare.settings.unit = WeatherUnit::fahrenheit;
  cases.push_back({"bare °F", bare});
  WeatherSnapshot none;
  none.now = noon;
  cases.push_back({"no city", none});
  auto loading = bare;
  loading.reading.reset();
  loading.isLoading = true;
  cases.push_back({"loading", loading});
  auto failed = loading;
  failed.isLoading = false;
  failed.failed = true;
  cases.push_back({"failed", failed});
  return cases;
}

/// A search on a desktop of its own, for as long as the gallery runs.
struct Desk {
  Desk() : platform(noon) {}
  test::FakePlatform platform;
  WeatherFetch fetch{platform.fakeHTTP, platform.fakeClock, platform.files};
  WeatherSearch search{platform.loop, fetch};
};

WeatherSearch& searchFor(const std::string& text, const std::string& answer) {
  static std::deque<Desk> desks;
  Desk& desk = desks.emplace_back();
  desk.search.type(text);
  desk.platform.loop.advance(1);
  desk.platform.fakeHTTP.answer("", {200, answer});
  return desk.search;
}

GalleryPanel panelOf(const char* name, const WeatherSnapshot& weather,
                     const std::string& typed = {}, const std::string& answer = {}) {
  return {name, weatherTint, [=](const PanelAppearance& look) {
            return new WeatherPanelView(
                look, {[] { return std::string("Weather"); }, [weather] { return weather; },
                       [] { return std::optional<std::string>("State of Berlin, Germany"); }, [] {},
                       searchFor(typed, answer), [](const WeatherPlace&) {},
                       [](const std::string&) {}, [] {}});
          }};
}

} // namespace

GallerySheet weatherGallery() {
  GallerySheet sheet;
  for (const int span : {1, 2, 3, 4})
    for (const auto& entry : weatherCases())
      if (span == 1 || entry.weather.settings.style == WeatherTileStyle::current)
        sheet.push_back({entry.name, span, [snapshot = entry.weather](const TileSize& size) {
                           return size.isWide() ? weatherWideTile(snapshot, size)
                                                : weatherTileIcon(snapshot, size);
                         }});
  return sheet;
}

GalleryPanels weatherPanels() {
  GalleryPanels panels;
  for (const auto& entry : weatherCases())
    if (entry.weather.settings.style == WeatherTileStyle::current)
      panels.push_back(panelOf(entry.name, entry.weather));
  const auto berlin = weatherCases().front().weather;
  auto rainy = berlin;
  double chance = 0;
  for (auto& day : rainy.reading->days) {
    day.rainChance = chance;
    chance += 25;
  }
  panels.push_back(panelOf("chance of rain", rainy));
  panels.push_back(panelOf("found", berlin, "berl", R"({"results":[
    {"name":"Berlin","latitude":52.5,"longitude":13.4,"admin1":"State of Berlin","country":"Germany"},
    {"name":"Berlin","latitude":44.4,"longitude":-71.2,"admin1":"New Hampshire","country":"United States"},
    {"name":"Berlin","latitude":39.7,"longitude":-74.9,"admin1":"New Jersey","country":"United States"},
    {"name":"Berlstedt","latitude":51.1,"longitude":11.2,"admin1":"Thuringia","country":"Germany"},
    {"name":"Berlaar","latitude":51.1,"longitude":4.6,"country":"Belgium"},
    {"name":"Berlingen","latitude":47.6,"longitude":9.0}]})"));
  panels.push_back(panelOf("none found", berlin, "qqqq", "{}"));
  return panels;
}

const GalleryEntry weatherEntries[] = {{"weather", weatherGallery},
                                       {"weather-panels", weatherPanels}};

} // namespace tavrin
