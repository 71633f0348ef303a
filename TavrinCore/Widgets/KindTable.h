#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

namespace tavrin {

/// What stands under a kind's key: the settings record inside a member "_0", the members of the
/// record themselves, or an empty object.
enum class KindPayload { wrapped, flat, none };

/// One line of the kind table.
template <class S> struct KindRow {
  using Settings = S;
  std::string_view key;
  std::string_view title;
  int maxSpan;
  int (*defaultSpan)(const S&);
  KindPayload payload = KindPayload::wrapped;
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

/// Every kind, in the order of the variant's alternatives.
// clang-format off
inline constexpr std::tuple kindTable{
    KindRow<CollectionSettings>{"collection", "App Collection", 4, always<CollectionSettings, 1>, KindPayload::flat},
    KindRow<TimerSettings>{"timer", "Timer", 3, always<TimerSettings, 1>},
    KindRow<PomodoroSettings>{"pomodoro", "Pomodoro", 3, always<PomodoroSettings, 2>},
    KindRow<MusicSettings>{"music", "Music", 4, always<MusicSettings, 2>},
    KindRow<CalendarSettings>{"calendar", "Calendar", 4, calendarSpan},
    KindRow<BatterySettings>{"battery", "Battery", 2, always<BatterySettings, 1>},
    KindRow<ClockSettings>{"clock", "Clock", 4, always<ClockSettings, 1>},
    KindRow<StopwatchSettings>{"stopwatch", "Stopwatch", 4, always<StopwatchSettings, 1>, KindPayload::none},
    KindRow<CountdownSettings>{"countdown", "Countdown", 4, always<CountdownSettings, 1>},
    KindRow<TimeProgressSettings>{"timeProgress", "Time Progress", 4, always<TimeProgressSettings, 1>},
    KindRow<ActivitySettings>{"activity", "Activity", 4, always<ActivitySettings, 1>},
    KindRow<NetworkSettings>{"network", "Network", 2, always<NetworkSettings, 1>},
    KindRow<NoteSettings>{"note", "Note", 4, always<NoteSettings, 2>},
    KindRow<ReminderSettings>{"reminders", "Reminders", 4, reminderSpan},
    KindRow<ShortcutSettings>{"shortcut", "Shortcut", 4, always<ShortcutSettings, 1>},
    KindRow<AirDropSettings>{"airdrop", "AirDrop", 4, always<AirDropSettings, 1>, KindPayload::none},
    KindRow<WeatherSettings>{"weather", "Weather", 4, weatherSpan},
    KindRow<ClaudeUsageSettings>{"claudeUsage", "Claude Code Usage", 2, always<ClaudeUsageSettings, 2>},
    KindRow<GitHubSettings>{"github", "GitHub", 4, gitHubSpan},
    KindRow<PetSettings>{"pet", "Pet", 4, always<PetSettings, 1>},
    KindRow<ColourPickerSettings>{"colourPicker", "Colour Picker", 2, always<ColourPickerSettings, 2>},
    KindRow<ClipboardSettings>{"clipboard", "Clipboard", 1, always<ClipboardSettings, 1>},
    KindRow<BookmarkSettings>{"bookmarks", "Bookmarks", 4, always<BookmarkSettings, 3>},
    KindRow<EmojiSettings>{"emoji", "Emoji", 4, always<EmojiSettings, 2>},
    KindRow<ScreenshotSettings>{"screenshots", "Screenshots", 4, always<ScreenshotSettings, 3>},
    KindRow<FilesSettings>{"files", "Files", 4, always<FilesSettings, 3>},
    KindRow<ShelfSettings>{"shelf", "Shelf", 4, always<ShelfSettings, 3>},
    KindRow<WaterSettings>{"water", "Water", 4, always<WaterSettings, 3>},
    KindRow<ConverterSettings>{"converter", "Converter", 2, always<ConverterSettings, 2>},
    KindRow<FanSettings>{"fans", "Fans", 4, always<FanSettings, 1>, KindPayload::none},
    KindRow<KeyboardLockSettings>{"keyboardLock", "Keyboard Lock", 4, always<KeyboardLockSettings, 1>},
};
// clang-format on

template <class Row, class Kind> struct KindRowMatches;
template <class... Row, class... Settings>
struct KindRowMatches<const std::tuple<Row...>, std::variant<Settings...>>
    : std::is_same<std::tuple<typename Row::Settings...>, std::tuple<Settings...>> {};
static_assert(KindRowMatches<decltype(kindTable), DockWidget::KindVariant>::value,
              "the kind table and the variant list the same kinds in the same order");

/// The table line of a settings record.
template <class S> constexpr const KindRow<S>& kindRow(const S&) {
  return std::get<KindRow<S>>(kindTable);
}

/// The place of a settings record in the variant.
template <class S>
inline constexpr std::size_t kindIndex = [] {
  return []<std::size_t... Index>(std::index_sequence<Index...>) {
    return ((std::is_same_v<S, std::variant_alternative_t<Index, DockWidget::KindVariant>> ? Index
                                                                                           : 0) +
            ...);
  }
  (std::make_index_sequence<std::variant_size_v<DockWidget::KindVariant>>());
}();

} // namespace tavrin
