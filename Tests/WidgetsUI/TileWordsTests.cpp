#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinWidgetsUI/Calendar/CalendarViews.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardViews.h"
#include "TavrinWidgetsUI/Colour/ColourViews.h"
#include "TavrinWidgetsUI/Converter/ConverterViews.h"
#include "TavrinWidgetsUI/Files/FileViews.h"
#include "TavrinWidgetsUI/GitHub/GitHubViews.h"
#include "TavrinWidgetsUI/Note/NoteViews.h"
#include "TavrinWidgetsUI/Runs/PomodoroViews.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"
#include "TavrinWidgetsUI/Runs/TimerViews.h"
#include "TavrinWidgetsUI/System/ActivityViews.h"
#include "TavrinWidgetsUI/System/BatteryViews.h"
#include "TavrinWidgetsUI/System/ClockViews.h"
#include "TavrinWidgetsUI/System/CountdownViews.h"
#include "TavrinWidgetsUI/System/NetworkViews.h"
#include "TavrinWidgetsUI/System/Samplers/ClockReading.h"
#include "TavrinWidgetsUI/System/TimeProgressViews.h"
#include "TavrinWidgetsUI/Water/WaterViews.h"
#include "TavrinWidgetsUI/Weather/WeatherViews.h"
#include "Tests/Support/DrawnLines.h"
#include "Tests/Support/InLanguage.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

/// What a tile says at the size a Dock has by default: a picture, so what is not on it is not said.
namespace tavrin {
namespace {

/// Wednesday, 9 September 2026, 22:08:42 in Berlin.
constexpr Date evening = Date::fromUnixSeconds(1'788'984'522);
const Calendar& berlin() {
  static const Calendar calendar("Europe/Berlin", "en_US");
  return calendar;
}

using test::DrawnLines;
using test::linesOf;

/// All of it in one line, a word broken by a hyphen as one.
QString textOf(const DrawnLines& lines) {
  QString all;
  for (const auto& line : lines)
    all += line.string.endsWith(u'-') ? line.string.chopped(1) : line.string + u' ';
  return all;
}

struct Tile {
  std::string name;
  std::function<AnyView(const TileSize&)> view;
  /// Each word of it stands on the tile, whole.
  QString words;
  int span = 1;
};

std::vector<Tile> clockTiles() {
  std::vector<Tile> tiles;
  for (const bool showsSeconds : {false, true})
    for (const int span : {1, 2, 3}) {
      ClockSettings settings;
      settings.showsSeconds = showsSeconds;
      settings.uses24Hour = true;
      const auto clock = ClockReader(settings, berlin()).at(evening);
      tiles.push_back({"clock",
                       [clock](const TileSize& size) {
                         return size.isWide() ? clockWideTile(clock, size)
                                              : clockTileIcon(clock, size);
                       },
                       showsSeconds ? (span > 1 ? "22:08:42 Wednesday" : "22:08 42 Wednesday")
                                    : "22:08 Wednesday",
                       span});
    }
  for (const auto scope : allTimeProgressScopes) {
    const auto reading = TimeProgressReading::at(evening, scope, berlin());
    const QString words = QString::number(reading.percentLeft) + "% left " +
                          QString::fromStdString(std::string(title(scope)));
    for (const int span : {1, 2, 3})
      tiles.push_back({"time progress",
                       [reading](const TileSize& size) {
                         return size.isWide() ? timeProgressWideTile(reading, size)
                                              : timeProgressTileIcon(reading, size);
                       },
                       words, span});
  }
  for (const int span : {1, 2, 3})
    tiles.push_back({"note",
                     [](const TileSize& size) {
                       return size.isWide() ? noteWideTile({}, size) : noteTileIcon({}, size);
                     },
                     "Click to write a note", span});
  const auto countdown = [&](double left, bool countsUp, const char* words, int span) {
    tiles.push_back({"countdown",
                     [=](const TileSize& size) {
                       const CountdownSettings settings{evening + left, countsUp};
                       return size.isWide() ? countdownWideTile("Launch", settings, evening, size)
                                            : countdownTileIcon("Launch", settings, evening, size);
                     },
                     words, span});
  };
  for (const int span : {1, 2, 3}) {
    countdown(3 * 86'400.0 + 15'000, false, "3d 4h Launch", span);
    countdown(-5, false, "0:00 Launch", span);
    countdown(-5, true, "0:05 Launch", span);
  }
  return tiles;
}

std::vector<Tile> runTiles() {
  std::vector<Tile> tiles;
  const auto pomodoro = [&](PomodoroPhase phase, const char* words) {
    auto run = PomodoroRun::fresh(evening);
    run.phase = phase;
    for (const int span : {2, 3})
      tiles.push_back(
          {"pomodoro",
           [run](const TileSize& size) { return pomodoroWideTile(run, {}, evening, size, {}); },
           words, span});
  };
  pomodoro(PomodoroPhase::focus, "Focus 1/4 25:00");
  pomodoro(PomodoroPhase::shortBreak, "Break 5:00");
  pomodoro(PomodoroPhase::longBreak, "Long Break 15:00");
  const auto timer = [&](TimerRun run, const char* words) {
    for (const int span : {2, 3})
      tiles.push_back({"timer",
                       [run](const TileSize& size) {
                         return timerWideTile(run, evening, palette::orange, size, {});
                       },
                       words, span});
  };
  TimerRun run;
  timer(run, "Timer Remaining 25:00");
  run.startedAt = evening;
  timer(run, "Timer Running 25:00");
  run.startedAt.reset();
  run.accumulated = 1500;
  timer(run, "Timer Done 0:00");
  run.mode = TimerRun::Mode::stopwatch;
  timer(run, "Stopwatch Paused 25:00");
  return tiles;
}

std::vector<Tile> weatherTiles() {
  std::vector<Tile> tiles;
  const auto add = [&](WeatherTileStyle style, WeatherCondition condition, int days,
                       const char* words, std::vector<int> spans) {
    WeatherSnapshot weather;
    weather.settings.cityName = "Berlin";
    weather.settings.latitude = weather.settings.longitude = 10;
    weather.settings.style = style;
    weather.now = evening;
    WeatherReading reading;
    reading.temperature = 21.4;
    reading.apparent = 19;
    reading.condition = condition;
    reading.timeZoneID = "Europe/Berlin";
    for (int i = 0; i < days; ++i)
      reading.days.push_back({berlin().addingDays(i, evening), 24.0 - i, 12.0 - i, condition});
    weather.reading = reading;
    for (const int span : spans)
      tiles.push_back({"weather",
                       [weather](const TileSize& size) {
                         return size.isWide() ? weatherWideTile(weather, size)
                                              : weatherTileIcon(weather, size);
                       },
                       words, span});
  };
  using Style = WeatherTileStyle;
  using Condition = WeatherCondition;
  add(Style::current, Condition::rain, 5, "21° Feels 19° Berlin", {1});
  for (const auto& [condition, words] :
       {std::pair{Condition::clear, "21° Clear sky Feels 19°"},
        std::pair{Condition::partlyCloudy, "21° Partly cloudy Feels 19°"},
        std::pair{Condition::thunderstorm, "21° Thunderstorm Feels 19°"}}) {
    add(Style::conditions, condition, 5, words, {1, 2, 3, 4});
    add(Style::conditions, condition, 5, "Berlin", {2, 3, 4});
  }
  add(Style::forecast, Condition::rain, 5, "24° 12° 23° 11° Feels 19°", {1});
  add(Style::forecast, Condition::rain, 0, "21° Feels 19°", {1});
  return tiles;
}

std::vector<Tile> calendarTiles() {
  std::vector<Tile> tiles;
  for (const bool isTurned : {false, true}) {
    CalendarReading reading{{}, CalendarState::items, {}, evening, berlin()};
    reading.settings.turnsTextSideways = isTurned;
    reading.settings.style = CalendarTileStyle::date;
    tiles.push_back({"date",
                     [reading](const TileSize& size) { return calendarTileIcon(reading, size); },
                     "Wed 9"});
    reading.settings.style = CalendarTileStyle::nextEvent;
    reading.state = CalendarState::empty;
    tiles.push_back({"no event",
                     [reading](const TileSize& size) { return calendarTileIcon(reading, size); },
                     "Nothing coming up"});
  }
  ReminderReading reminders{{}, CalendarState::empty, {}, evening, berlin()};
  tiles.push_back({"no reminder",
                   [reminders](const TileSize& size) { return reminderTileIcon(reminders, size); },
                   "Nothing coming up"});
  return tiles;
}

/// One entry a tile.
std::vector<Tile> serviceTiles() {
  std::vector<Tile> tiles;
  const auto gitHub = [&](GitHubReading reading, const char* words, std::vector<int> spans) {
    for (const int span : spans)
      tiles.push_back({"github",
                       [reading](const TileSize& size) {
                         return size.isWide() ? gitHubWideTile(reading, evening, size, {})
                                              : gitHubTileIcon(reading, size);
                       },
                       words, span});
  };
  using Kind = GitHubSource::Trouble::Kind;
  GitHubReading reading;
  reading.hasRead = false;
  gitHub(reading, "Asking GitHub", {1, 2, 3});
  for (const auto& [kind, words] : {std::pair{Kind::toolMissing, "gh not installed"},
                                    std::pair{Kind::signedOut, "gh is signed out"},
                                    std::pair{Kind::failed, "Could not reach GitHub"}}) {
    reading.trouble = GitHubSource::Trouble{kind, {}};
    gitHub(reading, words, {1, 2, 3});
  }
  reading = {};
  reading.hasRead = true;
  for (const auto shows : {GitHubShows::myPullRequests, GitHubShows::waitingOnYou}) {
    reading.settings.shows = shows;
    gitHub(reading, "Nothing waiting on you", {1, 2, 3});
  }
  reading.items = {{1, "One", "a/b", "u", GitHubChecks::failing, false, false, evening},
                   {2, "Two", "a/b", "v", GitHubChecks::failing, false, false, evening}};
  gitHub(reading, "2 failing", {1, 2, 3});

  const auto usage = [&](const ClaudeUsageReading& shown, const char* words) {
    for (const int span : {1, 2, 3})
      tiles.push_back({"usage",
                       [shown](const TileSize& size) {
                         return size.isWide() ? claudeUsageWideTile(shown, evening, size)
                                              : claudeUsageTileIcon(shown, evening, size);
                       },
                       words, span});
  };
  ClaudeUsageReading claude;
  claude.hasRead = true;
  claude.isConnected = true;
  claude.settings.shows = ClaudeUsageShows::fiveHourLimit;
  usage(claude, "Waiting for Claude Code");
  claude.isAvailable = false;
  usage(claude, "Claude Code has not run here");

  ClipboardReading clipboard;
  clipboard.hasRead = false;
  const auto copied = [&](const char* words) {
    tiles.push_back(
        {"clipboard",
         [clipboard](const TileSize& size) { return clipboardTileIcon(clipboard, size); }, words});
  };
  copied("Loading clipboard");
  clipboard = {.count = 12, .unseen = 3, .preview = "Milk, bread"};
  copied("12 3 Milk, bread");

  WaterReading water;
  water.millilitres = 2750;
  for (const auto style : {WaterTileStyle::tank, WaterTileStyle::glass}) {
    water.settings.style = style;
    water.settings.goal = 3000;
    tiles.push_back(
        {"water",
         [water](const TileSize& size) { return waterTileIcon(water, waterTankOf(water), size); },
         "11 /12"});
  }
  tiles.push_back({"battery", [](const TileSize& size) { return batteryTileIcon({}, {}, size); },
                   "No battery"});
  tiles.push_back({"activity",
                   [](const TileSize& size) {
                     return activityTileIcon({0.4, 0.6}, {}, size);
                   },
                   "CPU RAM"});
  return tiles;
}

TEST(TileWords, StandWholeOnEveryTileFromTheDefaultSizeUp) {
  for (const auto& tiles :
       {clockTiles(), runTiles(), weatherTiles(), calendarTiles(), serviceTiles()})
    for (const Tile& each : tiles)
      for (const double side : {48.0, 56.0, 64.0, 96.0, 128.0}) {
        const TileSize size{side, each.span};
        const DrawnLines lines = linesOf(each.view(size), size);
        const QString shown = textOf(lines);
        for (const QString& word : each.words.split(u' '))
          EXPECT_TRUE(shown.contains(word))
              << each.name << " at " << side << " x " << each.span << " lacks \""
              << word.toStdString() << "\": " << shown.toStdString();
        for (const auto& line : lines)
          EXPECT_GE(line.pointSize, minimumCaptionSize - 0.01)
              << each.name << " at " << side << ": " << line.string.toStdString();
      }
}

TEST(TileWords, ANameGoesBeforeSince) {
  const TileSize size{48, 2};
  const CountdownSettings settings{evening - 5, true};
  const QString shown =
      textOf(linesOf(countdownWideTile("Grandmother's day", settings, evening, size), size));
  EXPECT_TRUE(shown.startsWith("Grand")) << shown.toStdString();
}

TEST(TileWords, AFilesExtensionStays) {
  FilesReading reading;
  reading.isKnown = true;
  reading.files = {{{}, "Annual report of the society.pdf", "22:08", "4 MB"}};
  for (const double side : {48.0, 64.0, 128.0}) {
    const TileSize size{side, 2};
    const QString shown = textOf(linesOf(filesWideTile(reading, size, {}), size));
    EXPECT_TRUE(shown.contains("pdf")) << side << ": " << shown.toStdString();
  }
}

TEST(TileWords, ANumberIsWrittenShorterBeforeItIsCut) {
  const NumberNotation notation(std::string("en_US"));
  const ConverterSettings settings{ConverterCategory::length, "pc", "nm", 1e9};
  for (const double side : {48.0, 64.0, 128.0}) {
    const TileSize size{side, 2};
    const QString shown = textOf(linesOf(converterWideTile(settings, notation, size, {}), size));
    EXPECT_TRUE(shown.contains("pc") && shown.contains("nm"))
        << side << ": " << shown.toStdString();
    EXPECT_FALSE(shown.contains(u'…')) << side << ": " << shown.toStdString();
  }
}

TEST(TileWords, WhatIsLateGoesBeforeItsCircle) {
  const test::InLanguage german({{"Late", "Überfällig"}}, "de");
  ReminderReading reading{{}, CalendarState::items, {}, evening, berlin()};
  Reminder& rent = reading.reminders.emplace_back();
  rent.title = "Rent";
  rent.due = evening - 86'400;
  for (const double side : {48.0, 64.0, 128.0}) {
    const TileSize size{side, 1};
    const QString shown = textOf(linesOf(reminderTileIcon(reading, size), size));
    EXPECT_TRUE(shown.contains(QStringLiteral("Überfällig")))
        << side << ": " << shown.toStdString();
  }
}

TEST(TileWords, LinesStandApartWhereThereIsRoom) {
  WeatherSnapshot weather;
  weather.settings.cityName = "Berlin";
  weather.settings.latitude = weather.settings.longitude = 10;
  weather.settings.style = WeatherTileStyle::conditions;
  weather.now = evening;
  weather.reading.emplace();
  weather.reading->apparent = 19;
  weather.reading->condition = WeatherCondition::rain;
  weather.reading->timeZoneID = "Europe/Berlin";
  for (const double side : {48.0, 64.0}) {
    const TileSize size{side, 1};
    const DrawnLines lines = linesOf(weatherTileIcon(weather, size), size);
    const auto footOf = [&](const QString& words) {
      const auto found = std::ranges::find_if(
          lines, [&](const auto& line) { return line.string.startsWith(words); });
      return found == lines.end() ? -1 : found->ink.boundingRect().bottom();
    };
    const double apart = (footOf("Feels") - footOf("Rain")) / test::drawnScale;
    EXPECT_GT(apart, 1.25 * size.caption()) << side;
  }
}

TEST(TileWords, AUnitIsSmallerThanItsNumber) {
  NetworkTrace trace;
  trace.now = {1.2e9, 88};
  for (const double side : {48.0, 64.0, 96.0, 128.0})
    for (const int span : {1, 2, 3}) {
      const TileSize size{side, span};
      const DrawnLines lines = linesOf(
          span > 1 ? networkWideTile(trace, {}, size) : networkTileIcon(trace, {}, size), size);
      const auto sizeOf = [&](const QString& words) {
        const auto found = std::ranges::find(lines, words, &TextEngine::DrawnLine::string);
        return found == lines.end() ? 0 : found->pointSize;
      };
      EXPECT_EQ(sizeOf("GB/s") > 0, sizeOf("1.2") > 0) << side << ' ' << span;
      EXPECT_LE(sizeOf("GB/s"), sizeOf("1.2") * 0.86) << side << ' ' << span;
    }
}

TEST(TileWords, TurnedTextStandsOnItsSide) {
  CalendarReading reading{{}, CalendarState::items, {}, evening, berlin()};
  reading.events = {{"1", "Lunch", evening + 600, evening + 1200, false, {}, {}}};
  const auto pictureOf = [&](bool isTurned, CalendarTileStyle style, int span) {
    reading.settings.turnsTextSideways = isTurned;
    reading.settings.style = style;
    const TileSize size{48, span};
    return span > 1 ? calendarWideTile(reading, size) : calendarTileIcon(reading, size);
  };
  for (const int span : {1, 2})
    EXPECT_FALSE(pictureOf(true, CalendarTileStyle::date, span) ==
                 pictureOf(false, CalendarTileStyle::date, span));
}

} // namespace
} // namespace tavrin
