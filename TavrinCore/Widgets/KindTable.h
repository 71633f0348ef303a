#pragma once

#include "TavrinCore/Kinds/AirDrop/AirDropSettings.h"
#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinCore/Kinds/Fans/FanSettings.h"
#include "TavrinCore/Kinds/Files/FilesSettings.h"
#include "TavrinCore/Kinds/Files/ScreenshotSettings.h"
#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinCore/Kinds/Music/MusicSettings.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"

#include <array>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace tavrin {

/// What stands under a kind's key: the settings record inside a member "_0", the members of the
/// record themselves, or an empty object.
enum class KindPayload { wrapped, flat, none };

/// One line of the kind table: all that is said of a kind beside its settings record `S`. Texts are
/// in English; whoever shows them translates them.
template <class S> struct KindRow {
  using Settings = S;
  /// The JSON key.
  static constexpr std::string_view key = S::kindKey;
  /// The name for users.
  std::string_view title;
  /// The symbol that stands for the kind.
  std::string_view symbol;
  /// What it is for, in a sentence.
  std::string_view purpose;
  /// Further words it may be looked for by.
  std::string_view words;
  int maxSpan;
  int (*defaultSpan)(const S&);
  KindPayload payload = KindPayload::wrapped;
  /// Files can be dropped on its tile.
  bool takesFiles = false;
};

template <class S, int span> constexpr int always(const S&) {
  return span;
}

constexpr int calendarSpan(const CalendarSettings& settings) {
  return settings.style == CalendarTileStyle::agenda ? 3
         : settings.style == CalendarTileStyle::date ? 1
                                                     : 2;
}
constexpr int reminderSpan(const ReminderSettings& settings) {
  return settings.style == ReminderTileStyle::next   ? 2
         : settings.style == ReminderTileStyle::list ? 3
                                                     : 1;
}
constexpr int weatherSpan(const WeatherSettings& settings) {
  return settings.style == WeatherTileStyle::forecast ? 3 : 2;
}
constexpr int gitHubSpan(const GitHubSettings& settings) {
  return settings.shows == GitHubShows::contributions ? 4 : 3;
}

/// Every kind, in declaration order. A new kind is one line here, and one in the slot's table of
/// controllers.
// clang-format off
inline constexpr std::tuple kindTable{
    KindRow<CollectionSettings>{marked("App Collection"), "square.grid.2x2.fill", marked("Starts your favourite applications from one tile."), marked("launcher apps programs folder start"), 4, always<CollectionSettings, 1>, KindPayload::flat},
    KindRow<TimerSettings>{marked("Timer"), "timer", marked("Counts down from a length you choose, or up from nothing."), marked("alarm cooking tea egg minutes countdown"), 3, always<TimerSettings, 1>},
    KindRow<PomodoroSettings>{marked("Pomodoro"), "timer", marked("Divides work into stretches of focus and breaks."), marked("focus concentration work break productivity tomato"), 3, always<PomodoroSettings, 2>},
    KindRow<MusicSettings>{marked("Music"), "music.note", marked("Shows what plays, and lets you pause and skip."), marked("player song track media audio spotify mpris"), 4, always<MusicSettings, 2>},
    KindRow<CalendarSettings>{marked("Calendar"), "calendar", marked("Shows today's date and your next appointments."), marked("events agenda appointments meetings date schedule"), 4, calendarSpan},
    KindRow<BatterySettings>{marked("Battery"), "battery.100", marked("Shows how full the batteries of computer and devices are."), marked("power charge energy mouse headphones"), 2, always<BatterySettings, 1>},
    KindRow<ClockSettings>{marked("Clock"), "clock", marked("Tells the time here, or anywhere in the world."), marked("time zone world hour analog digital"), 4, always<ClockSettings, 1>},
    KindRow<StopwatchSettings>{marked("Stopwatch"), "stopwatch", marked("Takes times and laps."), marked("lap timing sport chronograph"), 4, always<StopwatchSettings, 1>, KindPayload::none},
    KindRow<CountdownSettings>{marked("Countdown"), "hourglass", marked("Counts the days to a date that matters to you."), marked("days date birthday holiday event until since"), 4, always<CountdownSettings, 1>},
    KindRow<TimeProgressSettings>{marked("Time Progress"), "largecircle.fill.circle", marked("Shows how much of the day, week, month or year is over."), marked("year day week month percent"), 4, always<TimeProgressSettings, 1>},
    KindRow<ActivitySettings>{marked("Activity"), "cpu", marked("Shows how busy the processor and the memory are."), marked("cpu ram processor memory load system monitor"), 4, always<ActivitySettings, 1>},
    KindRow<NetworkSettings>{marked("Network"), "network", marked("Shows how fast data come and go."), marked("internet speed download upload bandwidth wifi"), 2, always<NetworkSettings, 1>},
    KindRow<NoteSettings>{marked("Note"), "note.text", marked("Keeps a short text on a coloured paper."), marked("sticky memo text paper todo"), 4, always<NoteSettings, 2>},
    KindRow<ReminderSettings>{marked("Reminders"), "list.bullet", marked("Lists what is to be done, and lets you tick it off."), marked("todo tasks list due checklist"), 4, reminderSpan},
    KindRow<ShortcutSettings>{marked("Shortcut"), "command", marked("Runs a command, or an application's action, at a click."), marked("script command run launch automation button"), 4, always<ShortcutSettings, 1>},
    KindRow<AirDropSettings>{marked("AirDrop"), "dot.radiowaves.up.forward", marked("Sends files to devices nearby."), marked("share send phone bluetooth transfer"), 4, always<AirDropSettings, 1>, KindPayload::none, true},
    KindRow<WeatherSettings>{marked("Weather"), "cloud.sun.fill", marked("Shows the weather of your city, now and in the days to come."), marked("forecast temperature rain sun city"), 4, weatherSpan},
    KindRow<ClaudeUsageSettings>{marked("Claude Code Usage"), "sparkle", marked("Shows how much of the coding assistant's plan is used."), marked("tokens ai assistant limit budget coding"), 2, always<ClaudeUsageSettings, 2>},
    KindRow<GitHubSettings>{marked("GitHub"), "arrow.triangle.pull", marked("Lists your pull requests and their checks, or your year."), marked("git pull requests reviews contributions code"), 4, gitHubSpan},
    KindRow<PetSettings>{marked("Pet"), "pawprint.fill", marked("Keeps you company: an animal that walks along your tiles."), marked("cat dog fox rabbit turtle animal fun"), 4, always<PetSettings, 1>},
    KindRow<ColourPickerSettings>{marked("Colour Picker"), "eyedropper", marked("Takes colours from the screen and remembers them."), marked("color eyedropper hex rgb design palette"), 2, always<ColourPickerSettings, 2>},
    KindRow<ClipboardSettings>{marked("Clipboard"), "doc.on.clipboard", marked("Remembers what you copied, to be pasted again."), marked("copy paste history snippets"), 1, always<ClipboardSettings, 1>},
    KindRow<BookmarkSettings>{marked("Bookmarks"), "bookmark.fill", marked("Opens your favourite pages."), marked("links web sites internet favourites browser"), 4, always<BookmarkSettings, 3>},
    KindRow<EmojiSettings>{marked("Emoji"), "face.smiling", marked("Finds an emoji and copies it."), marked("smiley symbols characters picker"), 4, always<EmojiSettings, 2>},
    KindRow<ScreenshotSettings>{marked("Screenshots"), "photo", marked("Shows the pictures you took of your screen last."), marked("screen capture pictures images photos"), 4, always<ScreenshotSettings, 3>},
    KindRow<FilesSettings>{marked("Files"), "folder.fill", marked("Shows the files that came last, such as downloads."), marked("downloads folder recent documents"), 4, always<FilesSettings, 3>},
    KindRow<ShelfSettings>{marked("Shelf"), "tray.full.fill", marked("Holds files that you drop on it until you need them."), marked("drop stack temporary drag files"), 4, always<ShelfSettings, 3>, KindPayload::wrapped, true},
    KindRow<WaterSettings>{marked("Water"), "drop.fill", marked("Reminds you to drink, and counts the glasses."), marked("drink health hydration glass"), 4, always<WaterSettings, 3>},
    KindRow<ConverterSettings>{marked("Converter"), "arrow.left.arrow.right", marked("Turns one unit into another."), marked("units length mass temperature miles kilometres inches pounds"), 2, always<ConverterSettings, 2>},
    KindRow<FanSettings>{marked("Fans"), "fanblades.fill", marked("Shows how fast the fans turn, and lets them run at full speed."), marked("cooling temperature noise speed"), 4, always<FanSettings, 1>, KindPayload::none},
    KindRow<KeyboardLockSettings>{marked("Keyboard Lock"), "keyboard", marked("Holds the keyboard while you clean it."), marked("clean lock keys child cat"), 4, always<KeyboardLockSettings, 1>},
};
// clang-format on

template <class... Settings> struct KindList {
  static constexpr std::size_t size = sizeof...(Settings);
  /// The place of a kind in declaration order.
  template <class S> static constexpr std::size_t index() {
    std::size_t place = 0;
    static_cast<void>(((std::is_same_v<S, Settings> || (++place, false)) || ...));
    return place;
  }
};

template <class Table> struct KindsOf;
template <class... Rows> struct KindsOf<const std::tuple<Rows...>> {
  using List = KindList<typename Rows::Settings...>;
};

/// The settings records of all kinds in declaration order.
using AllKinds = KindsOf<decltype(kindTable)>::List;

/// The table line of a settings record.
template <class S> constexpr const KindRow<S>& kindRow(const S&) {
  return std::get<KindRow<S>>(kindTable);
}

/// The place of a settings record among all kinds.
template <class S> inline constexpr std::size_t kindIndex = AllKinds::index<S>();

/// What `use` makes of the kind's settings record; the same type for each.
template <class Use> auto visitKind(const DockWidget::Kind& kind, const Use& use) {
  using Result = decltype(use(CollectionSettings()));
  using Visitor = Result (*)(const DockWidget::Kind&, const Use&);
  static constexpr auto visitors = []<class... Settings>(KindList<Settings...>) {
    return std::array<Visitor, sizeof...(Settings)>{
        [](const DockWidget::Kind& any, const Use& visitor) -> Result {
          return visitor(*any.get<Settings>());
        }...};
  }
  (AllKinds());
  return visitors[kind.index()](kind, use);
}

} // namespace tavrin
