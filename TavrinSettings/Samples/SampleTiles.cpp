#include "TavrinSettings/Samples/SampleTiles.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/KindTable.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/AirDrop/AirDropViews.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkViews.h"
#include "TavrinWidgetsUI/Calendar/CalendarViews.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardViews.h"
#include "TavrinWidgetsUI/Collection/CollectionViews.h"
#include "TavrinWidgetsUI/Colour/ColourViews.h"
#include "TavrinWidgetsUI/Converter/ConverterViews.h"
#include "TavrinWidgetsUI/Emoji/EmojiViews.h"
#include "TavrinWidgetsUI/Fans/FanViews.h"
#include "TavrinWidgetsUI/Files/FileViews.h"
#include "TavrinWidgetsUI/Files/ScreenshotViews.h"
#include "TavrinWidgetsUI/Files/ShelfViews.h"
#include "TavrinWidgetsUI/GitHub/GitHubViews.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockViews.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Music/MusicViews.h"
#include "TavrinWidgetsUI/Note/NoteViews.h"
#include "TavrinWidgetsUI/Runs/PomodoroViews.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"
#include "TavrinWidgetsUI/Runs/TimerViews.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"
#include "TavrinWidgetsUI/System/ActivityViews.h"
#include "TavrinWidgetsUI/System/BatteryViews.h"
#include "TavrinWidgetsUI/System/ClockViews.h"
#include "TavrinWidgetsUI/System/CountdownViews.h"
#include "TavrinWidgetsUI/System/NetworkViews.h"
#include "TavrinWidgetsUI/System/PetViews.h"
#include "TavrinWidgetsUI/System/TimeProgressViews.h"
#include "TavrinWidgetsUI/Water/WaterViews.h"
#include "TavrinWidgetsUI/Weather/WeatherViews.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

/// What every kind's drawing below gets.
struct Stand {
  const DockWidget& widget;
  const TileSize& size;
  Date now;
  const Calendar& calendar;
  const NumberNotation& notation;
  EmojiGlyphs& glyphs;
  const std::function<CollectionTileApp(const AppEntry&, int)>& application;

  bool isOfAKind() const { return widget.id == UUID(); }
};

template <class Wide, class Icon>
AnyView either(const Stand& stand, const Wide& wide, const Icon& icon) {
  return stand.size.isWide() ? wide() : icon();
}

const QImage& keptScreen(int variety) {
  static std::map<int, QImage> kept;
  auto& picture = kept[variety];
  if (picture.isNull())
    picture = samples::smallScreen(variety);
  return picture;
}

FileSheet sheetOf(const char* name) {
  return fileSheet(std::filesystem::path(name), false, {});
}

AnyView draw(const Stand& c, const CollectionSettings& settings) {
  std::vector<CollectionTileApp> apps;
  const bool isSample = settings.apps.empty() && c.isOfAKind();
  const int count = isSample ? 4 : static_cast<int>(settings.apps.size());
  const auto cells = CollectionCells::of(settings.layout, count, c.size);
  const int side = std::max(1, static_cast<int>(std::lround(cells.side)));
  static const char* const names[] = {marked("Browser"), marked("Terminal"), marked("Mail"),
                                      marked("Music")};
  for (int i = 0; i < std::min(count, cells.room()); ++i) {
    const auto index = static_cast<std::size_t>(i);
    if (isSample)
      apps.push_back({worded(names[i % 4]), samples::applicationIcon(index, 2 * side), false});
    else if (c.application)
      apps.push_back(c.application(settings.apps[index], side));
    else
      apps.push_back({QString::fromStdString(DockItem{settings.apps[index]}.displayName()),
                      samples::applicationIcon(index, 2 * side), false});
  }
  const auto name = QString::fromStdString(c.widget.name);
  return either(
      c, [&] { return collectionWideTile(apps, settings.layout, c.size, name, {}, {}); },
      [&] { return collectionTileIcon(apps, settings.layout, c.size, name); });
}

AnyView draw(const Stand& c, const TimerSettings& settings) {
  TimerRun run;
  run.duration = settings.presets.empty() ? TimerRun::defaultDuration : settings.presets.front();
  run.startedAt = c.now;
  run.accumulated = run.duration * 0.3;
  const auto tint = colourFromHex(settings.tintHex, *colourFromHex(TimerSettings::defaultTintHex));
  return either(
      c, [&] { return timerWideTile(run, c.now, tint, c.size, {}); },
      [&] { return timerTileIcon(run, c.now, tint, c.size); });
}

AnyView draw(const Stand& c, const PomodoroSettings& settings) {
  auto run = PomodoroRun::fresh(c.now);
  run.startedAt = c.now;
  run.accumulated = settings.length(run.phase) * 0.3;
  run.cycle = std::min(1, settings.cycles() - 1);
  return either(
      c, [&] { return pomodoroWideTile(run, settings, c.now, c.size, {}); },
      [&] { return pomodoroTileIcon(run, settings, c.now, c.size); });
}

AnyView draw(const Stand& c, const MusicSettings& settings) {
  const auto player =
      samples::player(PlaybackStatus::playing, "Morning Tide", "The Lighthouse Quartet", c.now);
  return either(
      c, [&] { return musicWideTile(&player, samples::cover(), settings, c.now, c.size, {}); },
      [&] { return musicTileIcon(&player, samples::cover(), settings, c.now, c.size); });
}

AnyView draw(const Stand& c, const CalendarSettings& settings) {
  auto events = samples::events(c.now, c.calendar);
  std::erase_if(events, [&](const CalendarEvent& event) {
    return (event.isAllDay && !settings.showsAllDay) ||
           event.start > c.calendar.startOfDay(c.now) + settings.daysAhead * 86'400.0;
  });
  const CalendarReading reading{settings, CalendarState::items, std::move(events), c.now,
                                c.calendar};
  return either(
      c, [&] { return calendarWideTile(reading, c.size); },
      [&] { return calendarTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const BatterySettings& settings) {
  const BatteryReading reading{0.72, false, false, 204};
  return either(
      c, [&] { return batteryWideTile(reading, settings, c.size); },
      [&] { return batteryTileIcon(reading, settings, c.size); });
}

AnyView draw(const Stand& c, const ClockSettings& settings) {
  const auto reading = ClockReader(settings, c.calendar).at(c.now);
  return either(
      c, [&] { return clockWideTile(reading, c.size); },
      [&] { return clockTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const StopwatchSettings&) {
  StopwatchRun run;
  run.startedAt = c.now;
  run.accumulated = 83;
  return either(
      c, [&] { return stopwatchWideTile(run, c.now, c.size, {}); },
      [&] { return stopwatchTileIcon(run, c.now, c.size); });
}

AnyView draw(const Stand& c, const CountdownSettings& settings) {
  return either(
      c, [&] { return countdownWideTile(c.widget.name, settings, c.now, c.size); },
      [&] { return countdownTileIcon(c.widget.name, settings, c.now, c.size); });
}

AnyView draw(const Stand& c, const TimeProgressSettings& settings) {
  const auto reading = TimeProgressReading::at(c.now, settings.scope, c.calendar);
  return either(
      c, [&] { return timeProgressWideTile(reading, c.size); },
      [&] { return timeProgressTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const ActivitySettings& settings) {
  const ActivityReading reading{0.34, 0.58};
  return either(
      c, [&] { return activityWideTile(reading, settings, c.size); },
      [&] { return activityTileIcon(reading, settings, c.size); });
}

AnyView draw(const Stand& c, const NetworkSettings& settings) {
  NetworkTrace trace{{2'400'000, 310'000}, {}};
  for (int i = 0; i < 60; ++i)
    trace.history.push_back({1'400'000 * (1.2 + std::sin(i / 5.0)), 240'000.0 * (i % 9)});
  return either(
      c, [&] { return networkWideTile(trace, settings, c.size); },
      [&] { return networkTileIcon(trace, settings, c.size); });
}

AnyView draw(const Stand& c, const NoteSettings& settings) {
  return either(
      c, [&] { return noteWideTile(settings, c.size); },
      [&] { return noteTileIcon(settings, c.size); });
}

AnyView draw(const Stand& c, const ReminderSettings& settings) {
  const ReminderReading reading{
      settings, CalendarState::items,
      selectReminders(samples::reminders(c.now, c.calendar), settings, c.now, c.calendar), c.now,
      c.calendar};
  return either(
      c, [&] { return reminderWideTile(reading, c.size); },
      [&] { return reminderTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const ShortcutSettings& settings) {
  ShortcutTileState state;
  state.title = QString::fromStdString(settings.title.empty() ? c.widget.name : settings.title);
  return either(
      c, [&] { return shortcutWideTile(state, settings, c.size, {}, {}); },
      [&] { return shortcutTileIcon(state, settings, c.size); });
}

AnyView draw(const Stand& c, const AirDropSettings&) {
  const AirDropTileState state;
  return either(
      c, [&] { return airDropWideTile(state, c.size, {}); },
      [&] { return airDropTileIcon(state, c.size); });
}

AnyView draw(const Stand& c, const WeatherSettings& settings) {
  WeatherSnapshot snapshot;
  snapshot.settings = settings;
  if (!snapshot.hasPlace()) {
    snapshot.settings.cityName = translated("Your city");
    snapshot.settings.latitude = snapshot.settings.longitude = 0;
  }
  const bool isFahrenheit = settings.unit == WeatherUnit::fahrenheit;
  snapshot.reading = samples::weather(isFahrenheit ? 70 : 21, WeatherCondition::partlyCloudy, true,
                                      c.now, c.calendar.timeZoneID());
  snapshot.now = c.now;
  return either(
      c, [&] { return weatherWideTile(snapshot, c.size); },
      [&] { return weatherTileIcon(snapshot, c.size); });
}

AnyView draw(const Stand& c, const ClaudeUsageSettings& settings) {
  ClaudeUsageReading reading;
  reading.settings = settings;
  reading.hasRead = reading.isConnected = true;
  reading.totals.tokens = settings.scope == ClaudeUsageScope::week ? 3'400'000 : 250'000;
  reading.totals.messages = 128;
  reading.limits = ClaudeUsageLimits{
      ClaudeUsageWindow{42, c.now + 8000}, ClaudeUsageWindow{68, c.now + 273'600}, {}, c.now};
  return either(
      c, [&] { return claudeUsageWideTile(reading, c.now, c.size); },
      [&] { return claudeUsageTileIcon(reading, c.now, c.size); });
}

AnyView draw(const Stand& c, const GitHubSettings& settings) {
  GitHubReading reading;
  reading.settings = settings;
  reading.hasRead = true;
  // Their repositories are samples too.
  auto anyRepository = settings;
  anyRepository.repositories.clear();
  reading.items = GitHubBoard::select(samples::gitHubItems(c.now), anyRepository);
  reading.contributions = samples::contributions(c.now);
  return either(
      c, [&] { return gitHubWideTile(reading, c.now, c.size, {}); },
      [&] { return gitHubTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const PetSettings& settings) {
  const PetPose pose{PetActivity::sitting, 0, c.size.isWide() ? 24 : 6, 0, false};
  return petTile(settings, pose, PetSky::day, c.size);
}

AnyView draw(const Stand& c, const ColourPickerSettings& settings) {
  static const auto history =
      samples::colours({0xE056C8, 0x2BB59A, 0xFFC83D, 0x3A9BF0, 0x121214, 0xFA4E6A, 0x6FB54A});
  return either(
      c, [&] { return colourWideTile(history, settings, c.size, {}, {}); },
      [&] { return colourTileIcon(history, settings, c.size); });
}

AnyView draw(const Stand& c, const ClipboardSettings& settings) {
  ClipboardReading reading;
  reading.count = static_cast<std::size_t>(std::min(settings.historyLimit, 24));
  reading.unseen = 2;
  if (settings.showLastPreviewOnTile)
    reading.preview = translated("Meet at nine");
  return clipboardTileIcon(reading, c.size);
}

AnyView draw(const Stand& c, const BookmarkSettings& settings) {
  auto shown = settings;
  if (settings.bookmarks.empty() && settings.folders.empty() && c.isOfAKind())
    shown.bookmarks = {{translated("News"), "https://news.example"},
                       {translated("Weather"), "https://weather.example"},
                       {translated("Board"), "https://board.example"},
                       {translated("Mail"), "https://mail.example"}};
  return either(
      c,
      [&] {
        return bookmarkWideTile(shown, c.size, [](const std::string&) { return QImage(); }, {});
      },
      [&] { return bookmarkTileIcon(shown, c.size); });
}

AnyView draw(const Stand& c, const EmojiSettings& settings) {
  return either(
      c, [&] { return emojiWideTile(samples::emoji(), settings.skinTone, c.glyphs, c.size, {}); },
      [&] { return emojiTileIcon(samples::emoji(), settings.skinTone, c.glyphs, c.size); });
}

AnyView draw(const Stand& c, const ScreenshotSettings& settings) {
  ScreenshotReading reading{true, FolderListing::State::listed, {}};
  const int shown = std::min(settings.limit, static_cast<int>(mostTileShots));
  for (int i = 0; i < (c.size.isWide() ? shown : 1); ++i)
    reading.shots.push_back({keptScreen(i), "Screenshot " + std::to_string(i) + ".png",
                             QString::fromStdString(c.calendar.timeOfDay(c.now - 600.0 * i)),
                             false});
  return either(
      c, [&] { return screenshotWideTile(reading, c.size, {}); },
      [&] { return screenshotTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const FilesSettings& settings) {
  FilesReading reading{true, false, settings.marksUnseen ? std::size_t{3} : 0, 0, {}, false};
  for (const char* name : {"plan.pdf", "photos.zip", "notes.txt"})
    reading.files.push_back(
        {sheetOf(name), name, QString::fromStdString(c.calendar.timeOfDay(c.now)), "3.1 MB"});
  return either(
      c, [&] { return filesWideTile(reading, c.size, {}); },
      [&] { return filesTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const ShelfSettings& settings) {
  ShelfReading reading;
  for (const auto& path : settings.paths)
    reading.sheets.push_back(fileSheet(path, false, {}));
  if (reading.sheets.empty() && c.isOfAKind())
    reading.sheets = {sheetOf("plan.pdf"), sheetOf("song.flac"), sheetOf("table.ods")};
  reading.count = reading.sheets.size();
  reading.sheets.resize(std::min(reading.sheets.size(), c.size.isWide() ? mostTileSheets : 2));
  return either(
      c, [&] { return shelfWideTile(reading, c.size); },
      [&] { return shelfTileIcon(reading, c.size); });
}

AnyView draw(const Stand& c, const WaterSettings& settings) {
  const auto reading = WaterReading::of(
      samples::water(settings.glass * 3, settings.refillMinutes * 0.3, c.now, c.calendar), settings,
      c.now, c.calendar);
  const auto tank = waterTankOf(reading);
  return either(
      c, [&] { return waterWideTile(reading, tank, c.size, {}); },
      [&] { return waterTileIcon(reading, tank, c.size); });
}

AnyView draw(const Stand& c, const ConverterSettings& settings) {
  return either(
      c, [&] { return converterWideTile(settings, c.notation, c.size, {}); },
      [&] { return converterTileIcon(settings, c.notation, c.size); });
}

AnyView draw(const Stand& c, const FanSettings&) {
  const FanStatus status{true, true, false, 2150, 0.4};
  return either(
      c, [&] { return fanWideTile(QString::fromStdString(c.widget.name), status, c.size, {}); },
      [&] { return fanTileIcon(status, c.size); });
}

AnyView draw(const Stand& c, const KeyboardLockSettings& settings) {
  KeyboardLockStatus status;
  status.locksPointer = settings.locksPointer;
  status.holdSeconds = settings.holdSeconds;
  return either(
      c,
      [&] {
        return keyboardLockWideTile(QString::fromStdString(c.widget.name), status, c.size, {});
      },
      [&] { return keyboardLockTileIcon(status, c.size); });
}

} // namespace

AnyView SampleTiles::tile(const DockWidget& widget, const TileSize& size, Date now) {
  const Stand stand{widget, size, now, calendar_, notation_, glyphs_, application};
  return visitKind(widget.kind, [&](const auto& settings) -> AnyView {
    if constexpr (requires { draw(stand, settings); })
      return draw(stand, settings);
    else
      return symbolTile(widget.kind, size, TileState::live);
  });
}

AnyView symbolTile(const DockWidget::Kind& kind, const TileSize& size, TileState state) {
  const auto kinds = allKinds();
  const auto info = std::ranges::find(kinds, kind.key(), &KindInfo::key);
  // A wide tile's body is not a square one's.
  return tile(palette::ground,
              tile({.mark = symbol(std::string(info->symbol)), .markRatio = 0.36, .state = state},
                   {size.side, 1})
                  .frame(size.width(), size.height()),
              size);
}

bool followsTime(const DockWidget::Kind& kind) {
  return kind.get<ClockSettings>() != nullptr || kind.get<CountdownSettings>() != nullptr ||
         kind.get<TimeProgressSettings>() != nullptr;
}

} // namespace tavrin
