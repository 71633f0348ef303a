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

#include <string_view>
#include <tuple>
#include <variant>

namespace tavrin {

/// What stands under a kind's key: the settings record inside a member "_0", the members of the
/// record themselves, or an empty object.
enum class KindPayload { wrapped, flat, none };

/// One line of the kind table: all that is said of a kind beside its settings record `S`.
template <class S> struct KindRow {
  using Settings = S;
  /// The JSON key.
  std::string_view key;
  /// The name for users.
  std::string_view title;
  /// The symbol that stands for the kind.
  std::string_view symbol;
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
    KindRow<CollectionSettings>{"collection", "App Collection", "square.grid.2x2.fill", 4, always<CollectionSettings, 1>, KindPayload::flat},
    KindRow<TimerSettings>{"timer", "Timer", "timer", 3, always<TimerSettings, 1>},
    KindRow<PomodoroSettings>{"pomodoro", "Pomodoro", "timer", 3, always<PomodoroSettings, 2>},
    KindRow<MusicSettings>{"music", "Music", "music.note", 4, always<MusicSettings, 2>},
    KindRow<CalendarSettings>{"calendar", "Calendar", "calendar", 4, calendarSpan},
    KindRow<BatterySettings>{"battery", "Battery", "battery.100", 2, always<BatterySettings, 1>},
    KindRow<ClockSettings>{"clock", "Clock", "clock", 4, always<ClockSettings, 1>},
    KindRow<StopwatchSettings>{"stopwatch", "Stopwatch", "stopwatch", 4, always<StopwatchSettings, 1>, KindPayload::none},
    KindRow<CountdownSettings>{"countdown", "Countdown", "hourglass", 4, always<CountdownSettings, 1>},
    KindRow<TimeProgressSettings>{"timeProgress", "Time Progress", "largecircle.fill.circle", 4, always<TimeProgressSettings, 1>},
    KindRow<ActivitySettings>{"activity", "Activity", "cpu", 4, always<ActivitySettings, 1>},
    KindRow<NetworkSettings>{"network", "Network", "network", 2, always<NetworkSettings, 1>},
    KindRow<NoteSettings>{"note", "Note", "note.text", 4, always<NoteSettings, 2>},
    KindRow<ReminderSettings>{"reminders", "Reminders", "list.bullet", 4, reminderSpan},
    KindRow<ShortcutSettings>{"shortcut", "Shortcut", "command", 4, always<ShortcutSettings, 1>},
    KindRow<AirDropSettings>{"airdrop", "AirDrop", "dot.radiowaves.up.forward", 4, always<AirDropSettings, 1>, KindPayload::none, true},
    KindRow<WeatherSettings>{"weather", "Weather", "cloud.sun.fill", 4, weatherSpan},
    KindRow<ClaudeUsageSettings>{"claudeUsage", "Claude Code Usage", "sparkle", 2, always<ClaudeUsageSettings, 2>},
    KindRow<GitHubSettings>{"github", "GitHub", "arrow.triangle.pull", 4, gitHubSpan},
    KindRow<PetSettings>{"pet", "Pet", "pawprint.fill", 4, always<PetSettings, 1>},
    KindRow<ColourPickerSettings>{"colourPicker", "Colour Picker", "eyedropper", 2, always<ColourPickerSettings, 2>},
    KindRow<ClipboardSettings>{"clipboard", "Clipboard", "doc.on.clipboard", 1, always<ClipboardSettings, 1>},
    KindRow<BookmarkSettings>{"bookmarks", "Bookmarks", "bookmark.fill", 4, always<BookmarkSettings, 3>},
    KindRow<EmojiSettings>{"emoji", "Emoji", "face.smiling", 4, always<EmojiSettings, 2>},
    KindRow<ScreenshotSettings>{"screenshots", "Screenshots", "photo", 4, always<ScreenshotSettings, 3>},
    KindRow<FilesSettings>{"files", "Files", "folder.fill", 4, always<FilesSettings, 3>},
    KindRow<ShelfSettings>{"shelf", "Shelf", "tray.full.fill", 4, always<ShelfSettings, 3>, KindPayload::wrapped, true},
    KindRow<WaterSettings>{"water", "Water", "drop.fill", 4, always<WaterSettings, 3>},
    KindRow<ConverterSettings>{"converter", "Converter", "arrow.left.arrow.right", 2, always<ConverterSettings, 2>},
    KindRow<FanSettings>{"fans", "Fans", "fanblades.fill", 4, always<FanSettings, 1>, KindPayload::none},
    KindRow<KeyboardLockSettings>{"keyboardLock", "Keyboard Lock", "keyboard", 4, always<KeyboardLockSettings, 1>},
};
// clang-format on

template <class Table> struct KindsOf;
template <class... Rows> struct KindsOf<const std::tuple<Rows...>> {
  using Variant = std::variant<typename Rows::Settings...>;
};

/// The settings record of any kind.
using KindVariant = KindsOf<decltype(kindTable)>::Variant;

/// The table line of a settings record.
template <class S> constexpr const KindRow<S>& kindRow(const S&) {
  return std::get<KindRow<S>>(kindTable);
}

/// The place of a settings record in the variant.
template <class S>
inline constexpr std::size_t kindIndex = [] {
  return []<std::size_t... Index>(std::index_sequence<Index...>) {
    return ((std::is_same_v<S, std::variant_alternative_t<Index, KindVariant>> ? Index : 0) + ...);
  }
  (std::make_index_sequence<std::variant_size_v<KindVariant>>());
}();

} // namespace tavrin
