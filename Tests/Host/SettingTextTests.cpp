#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinHost/HostError.h"
#include "TavrinHost/Widgets/SettingEditing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

// 2026-03-01 12:00 in Berlin; clocks go forward on 29 March and back on 25 October.
constexpr Date now = Date::fromUnixSeconds(1'772'362'800);

TEST(SettingText, Durations) {
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"90", 90},    {"25m", 1500},     {"25 min", 1500}, {"1h30m", 5400}, {"1 h 30 min", 5400},
      {"1:30", 90},  {"1:30:00", 5400}, {"0.5h", 1800},   {"2d", 172800},  {"", {}},
      {"m", {}},     {"5x", {}},        {"1:75", {}},     {"5m 3", {}},    {"1:2:3:4", {}},
      {"1e400", {}}, {"nan", {}},       {"5m-3s", {}},    {"1:", {}}};
  for (const auto& [text, seconds] : cases)
    EXPECT_EQ(durationFromText(text), seconds) << text;
}

TEST(SettingText, DurationsReadBack) {
  for (const double seconds : {0.0, 1.0, 60.0, 90.0, 3600.0, 5400.0, 86400.0, 93784.0})
    EXPECT_EQ(durationFromText(durationText(seconds)), seconds) << durationText(seconds);
  EXPECT_EQ(durationText(5400), "1 h 30 min");
  EXPECT_EQ(durationText(0.5), "0.5 s");
}

TEST(SettingText, Dates) {
  const std::pair<const char*, const char*> cases[] = {
      {"now", "2026-03-01 12:00"},
      {"today", "2026-03-01 00:00"},
      {"tomorrow", "2026-03-02 00:00"},
      {"+14d", "2026-03-15 12:00"},
      {"-2h", "2026-03-01 10:00"},
      {"+1w", "2026-03-08 12:00"},
      // Across the change of clocks the time of day stays.
      {"+30d", "2026-03-31 12:00"},
      {"2026-12-24", "2026-12-24 00:00"},
      {"2026-12-24T18:00", "2026-12-24 18:00"},
      {"2026-12-24 18:00:05", "2026-12-24 18:00:05"},
      {"2026-12-24T18:00Z", "2026-12-24 19:00"},
      {"2026-07-01T00:00:00-05:00", "2026-07-01 07:00"},
      {"2028-02-29", "2028-02-29 00:00"},
      {"9999-12-31", "9999-12-31 00:00"},
      {"0002-01-01", "0002-01-01 00:00"}};
  for (const auto& [text, shown] : cases) {
    const auto date = dateFromText(text, now);
    ASSERT_TRUE(date) << text;
    EXPECT_EQ(dateText(*date), shown) << text;
  }
  for (const auto* text :
       {"", "2026-02-29", "2026-13-01", "2026-12-24T25:00", "2026-12-24T18", "24.12.2026", "+",
        "+5", "+5x", "next year", "2026-12-24T18:00+1", "0000-01-01", "2026-12-24x", "+1000000w",
        "-900000d", "+41999999999999999999999d", "+1e308h"})
    EXPECT_FALSE(dateFromText(text, now) && std::string_view(text) != "+5") << text;
}

TEST(SettingText, DatesBeyondFourDigitYears) {
  EXPECT_EQ(dateText(Date::fromUnixSeconds(-1e11)), "-100978307200 s");
  EXPECT_EQ(dateText(Date::fromUnixSeconds(2.54e11)), "253021692800 s");
}

struct Change {
  const char* kind;
  std::vector<const char*> words;
  const char* key;
  /// The stored JSON, "" for a key that is gone.
  const char* stored;
};

TEST(SettingEditing, Accepted) {
  const Change cases[] = {
      {"pomodoro", {"focus=50m"}, "focus", "3000"},
      {"pomodoro", {"focus=120m"}, "focus", "7200"},
      {"pomodoro", {"ringsAtTheEnd=No"}, "ringsAtTheEnd", "false"},
      {"pomodoro", {"cyclesBeforeLongBreak=8"}, "cyclesBeforeLongBreak", "8"},
      {"timer", {"presets=3m, 5m,1:30"}, "presets", "[180,300,90]"},
      {"timer", {"presets=[60, 120]"}, "presets", "[60,120]"},
      {"timer", {"presets=1m,2m", "presets.1=5m"}, "presets", "[60,300]"},
      {"timeProgress", {"scope=MONTH"}, "scope", "\"month\""},
      {"timeProgress", {"scope=w"}, "scope", "\"week\""},
      {"clock", {"timeZoneID=Asia/Tokyo"}, "timeZoneID", "\"Asia/Tokyo\""},
      {"clock", {"timeZoneID=Asia/Tokyo", "timeZoneID=null"}, "timeZoneID", ""},
      {"clock", {"uses24Hour=none"}, "uses24Hour", ""},
      {"note", {"text=a=b, null"}, "text", "\"a=b, null\""},
      {"note", {"text=null"}, "text", "\"null\""},
      {"countdown", {"target=2026-12-24T18:00Z"}, "target", "819828000"},
      {"collection", {"apps=[{\"path\":\"/a\"}]", "apps="}, "apps", "[]"},
      {"collection", {"apps=none"}, "apps", "[]"},
      {"collection",
       {"apps=xterm, org.gnome.Terminal"},
       "apps",
       R"([{"path":"xterm"},{"path":"org.gnome.Terminal"}])"},
      {"files", {"folders=/a", "folders=none"}, "folders", "[]"},
      {"files", {"folders=/a", "folders=null"}, "folders", "[]"},
      {"colourPicker", {"hotkey=Ctrl+alt+P"}, "hotkey", R"({"keyCode":35,"modifiers":6})"},
      {"colourPicker",
       {"hotkey={\"keyCode\":1,\"modifiers\":4}", "hotkey.keyCode=35"},
       "hotkey",
       R"({"keyCode":35,"modifiers":4})"},
      {"calendar",
       {"calendars.accountIDs=[\"none\"]"},
       "calendars",
       R"({"accountIDs":["none"],"calendarIDs":[]})"},
      {"files", {"folders=~/a,/b"}, "folders", R"(["/home/ann/a","/b"])"},
      {"shelf", {"paths=~/x.png"}, "paths", R"(["/home/ann/x.png"])"},
      {"shelf", {"paths=file:///a%20b"}, "paths", R"(["/a b"])"},
      {"note", {"colorHex=#0a0B0c"}, "colorHex", "\"#0a0B0c\""},
      {"timer", {"presets="}, "presets", "[]"},
      {"weather", {"latitude=-33.5", "longitude=151"}, "latitude", "-33.5"},
      {"calendar",
       {"calendars.accountIDs=a,b"},
       "calendars",
       R"({"accountIDs":["a","b"],"calendarIDs":[]})"}};
  for (const auto& test : cases) {
    std::vector<Assignment> assignments;
    for (const auto* word : test.words)
      assignments.push_back(Assignment::parse(word));
    const DockWidget widget(UUID(), "W", {}, *freshKind(test.kind, now), 1);
    const auto settings =
        settingsJSON(withAssignments(widget, assignments, now, settingSystem("/home/ann")).kind);
    const auto* value = settings.member(test.key);
    EXPECT_EQ(value == nullptr ? "" : value->compact(), test.stored) << test.words.front();
  }
}

TEST(SettingEditing, Refused) {
  struct Refusal {
    const char* kind;
    const char* word;
    ExitCode code;
    const char* part;
  };
  const Refusal cases[] = {
      {"pomodoro", "focus=59", ExitCode::refusedValue, "1 min to 2 h"},
      {"pomodoro", "focus=7201", ExitCode::refusedValue, "1 min to 2 h"},
      {"pomodoro", "focus=", ExitCode::refusedValue, "1 min to 2 h"},
      {"pomodoro", "focus=null", ExitCode::refusedValue, "1 min to 2 h"},
      {"pomodoro", "cyclesBeforeLongBreak=2.5", ExitCode::refusedValue, "2 to 8"},
      {"pomodoro", "ringsAtTheEnd=maybe", ExitCode::refusedValue, "yes or no"},
      {"pomodoro", "focsu=5m", ExitCode::notFound, "it has focus, shortBreak"},
      {"pomodoro", "focus.x=5", ExitCode::notFound, "single value"},
      {"timer", "presets=5m,2d", ExitCode::refusedValue, "1 s to 1 d"},
      {"timer", "presets.9=5m", ExitCode::notFound, "no element 9"},
      {"timer", "presets=[1,\"a\"]", ExitCode::refusedValue, "presets.1"},
      {"timeProgress", "scope=decade", ExitCode::refusedValue, "day, week, month or year"},
      {"countdown", "target=soon", ExitCode::refusedValue, "a date such as"},
      {"stopwatch", "x=1", ExitCode::notFound, "has no settings"},
      {"clipboard", "span=2", ExitCode::refusedValue, "must be 1"},
      {"timer", "span=4", ExitCode::refusedValue, "1 to 3"},
      {"timer", "name=  ", ExitCode::refusedValue, "blank"},
      {"timer", "name=\u00a0", ExitCode::refusedValue, "blank"},
      {"collection", "apps=x,,y", ExitCode::refusedValue, "a list of applications"},
      {"weather", "latitude=91", ExitCode::refusedValue, "-90° to 90°"},
      {"weather", "latitude=1", ExitCode::refusedValue, "go together"},
      {"weather", "cityName=Paris", ExitCode::refusedValue, "search for the place in the"},
      {"shelf", "paths=x.png", ExitCode::refusedValue, "must be absolute paths, not \"x.png\""},
      {"clock", "timeZoneID=Mars/Olympus", ExitCode::refusedValue,
       "must be a time zone such as Europe/Berlin, or null, not \"Mars/Olympus\""},
      {"timer", "tintHex=purple", ExitCode::refusedValue,
       "must be a colour such as #FBBF24, not \"purple\""},
      {"shortcut", "symbolName=nosuchsymbol", ExitCode::refusedValue, "the name of a symbol"},
      {"shortcut", "workingFolder=somewhere", ExitCode::refusedValue, "absolute path"},
      {"github", "repositories=notarepo", ExitCode::refusedValue, "written owner/name"},
      {"github", "repositories=a/b/c", ExitCode::refusedValue, "written owner/name"},
      {"bookmarks", "bookmarks=[{\"url\":\" \"}]", ExitCode::refusedValue, "an address such as"},
      {"bookmarks", "bookmarks=[{\"url\":\"no url\"}]", ExitCode::refusedValue, "of the web"},
      {"bookmarks", "bookmarks=[{\"url\":\"ftp://a.example\"}]", ExitCode::refusedValue,
       "http or https"},
      {"bookmarks", "folders=[{\"title\":\"A\",\"bookmarks\":[{\"url\":\"https://\"}]}]",
       ExitCode::refusedValue, "no site of this name"},
      {"note", "colorHex=red", ExitCode::refusedValue, "such as #FBBF24, not \"red\""},
      {"shortcut", "colorHex=#12345", ExitCode::refusedValue, "such as #FBBF24"},
      {"shortcut", "colorHex=#12345G", ExitCode::refusedValue, "such as #FBBF24"},
      {"converter", "from=parsec", ExitCode::refusedValue, ": one of "},
      {"colourPicker", "hotkey=shift+P", ExitCode::refusedValue, "needs Ctrl, Alt or Super"},
      {"colourPicker", "historyLimit=3", ExitCode::refusedValue, "4 to 60"}};
  for (const auto& test : cases) {
    const DockWidget widget(UUID(), "W", {}, *freshKind(test.kind, now), 1);
    try {
      withAssignments(widget, {Assignment::parse(test.word)}, now, settingSystem({}));
      ADD_FAILURE() << test.word << " was accepted";
    } catch (const HostError& error) {
      EXPECT_EQ(error.code(), test.code) << test.word;
      EXPECT_THAT(error.what(), testing::HasSubstr(test.part)) << test.word;
    }
  }
}

// What is stored already may stay: another setting of the same widget can still be changed.
TEST(SettingEditing, AValueFromElsewhereDoesNotRefuseOtherChanges) {
  GitHubSettings settings;
  settings.repositories = {"notarepo"};
  DockWidget widget(UUID(), "W", {}, DockWidget::Kind(settings), 1);
  widget = withAssignments(widget, {Assignment::parse("limit=5")}, now, settingSystem({}));
  widget = withAssignments(widget, {Assignment::parse("repositories=notarepo,a/b")}, now,
                           settingSystem({}));
  EXPECT_THAT(widget.kind.get<GitHubSettings>()->repositories,
              testing::ElementsAre("notarepo", "a/b"));
}

/// A name over another place's forecast would be worse than none.
TEST(SettingEditing, APlacesNameAndCoordinatesGoTogether) {
  struct Case {
    std::vector<const char*> words;
    /// The name, latitude and longitude afterwards; none for a change that is refused.
    std::optional<WeatherSettings> after;
  };
  const auto place = [](std::optional<std::string> name, std::optional<double> latitude,
                        std::optional<double> longitude) {
    WeatherSettings settings;
    settings.cityName = name;
    settings.latitude = latitude;
    settings.longitude = longitude;
    return settings;
  };
  const auto berlin = place("Berlin", 52.5, 13.4);
  const Case cases[] = {
      {{"cityName=Paris"}, {}},
      {{"cityName=Paris", "latitude=48.9"}, place("Paris", 48.9, 13.4)},
      {{"cityName=Paris", "latitude=48.9", "longitude=2.4"}, place("Paris", 48.9, 2.4)},
      {{"cityName=Home", "latitude=52.5", "longitude=13.4"}, place("Home", 52.5, 13.4)},
      {{"latitude=48.9", "longitude=2.4"}, place({}, 48.9, 2.4)},
      {{"latitude=52.6", "cityName=Berlin"}, place("Berlin", 52.6, 13.4)},
      {{"latitude=null"}, {}},
      {{"latitude=null", "longitude=null"}, place({}, {}, {})},
      {{"cityName=null"}, place({}, 52.5, 13.4)},
      {{"cityName=Berlin"}, berlin}};
  for (const auto& one : cases) {
    std::vector<Assignment> assignments;
    for (const auto* word : one.words)
      assignments.push_back(Assignment::parse(word));
    const DockWidget widget(UUID(), "W", {}, DockWidget::Kind(berlin), 1);
    try {
      const auto changed = withAssignments(widget, assignments, now, settingSystem({}));
      EXPECT_EQ(*changed.kind.get<WeatherSettings>(), one.after.value_or(WeatherSettings()))
          << one.words.front();
    } catch (const HostError& error) {
      EXPECT_EQ(error.code(), ExitCode::refusedValue);
      EXPECT_FALSE(one.after) << one.words.front() << error.what();
    }
  }
}

// What a fresh widget holds is shown without loss and is within its own table.
TEST(SettingEditing, EveryKindsDefaultsAreAllowed) {
  for (const auto& kind : allKinds()) {
    const auto fresh = *freshKind(kind.key, now);
    EXPECT_EQ(refusalOf(describeSettings(fresh), settingsJSON(fresh)), "") << kind.key;
    EXPECT_EQ(
        withCheckedSettings(fresh, describeSettings(fresh), settingsJSON(fresh), settingSystem({})),
        fresh)
        << kind.key;
  }
}

} // namespace
} // namespace tavrin
