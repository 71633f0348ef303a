#pragma once

#include "TavrinCore/Base/Coding.h"
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

#include <span>
#include <variant>

namespace tavrin {

/// A widget of the user's, as it stands in the widgets file.
struct DockWidget {
  using KindVariant =
      std::variant<CollectionSettings, TimerSettings, PomodoroSettings, MusicSettings,
                   CalendarSettings, BatterySettings, ClockSettings, StopwatchSettings,
                   CountdownSettings, TimeProgressSettings, ActivitySettings, NetworkSettings,
                   NoteSettings, ReminderSettings, ShortcutSettings, AirDropSettings,
                   WeatherSettings, ClaudeUsageSettings, GitHubSettings, PetSettings,
                   ColourPickerSettings, ClipboardSettings, BookmarkSettings, EmojiSettings,
                   ScreenshotSettings, FilesSettings, ShelfSettings, WaterSettings,
                   ConverterSettings, FanSettings, KeyboardLockSettings>;

  /// What a widget is, with its settings.
  struct Kind : KindVariant {
    using KindVariant::KindVariant;
    // Defined in one place: the compiler writes much code for each of them.
    Kind();
    Kind(const Kind&);
    Kind(Kind&&) noexcept;
    Kind& operator=(const Kind&);
    Kind& operator=(Kind&&) noexcept;
    ~Kind();
    bool operator==(const Kind&) const;

    /// The JSON key: "timer".
    std::string_view key() const;
    /// The name for users: "Timer".
    std::string_view title() const;
    /// The span of a record that states none; depends on the tile style for some kinds.
    int defaultSpan() const;
    int maxSpan() const;

    template <class Settings> const Settings* get() const { return std::get_if<Settings>(this); }
    template <class Settings> Settings* get() { return std::get_if<Settings>(this); }
  };

  DockWidget() = default;
  /// Brings `span` to at least 1 and at most the kind's `maxSpan`.
  DockWidget(UUID id, std::string name, std::optional<int> slot, Kind kind, int span);

  UUID id;
  std::string name;
  /// 1 to `DockSlot::count`; none for a widget that is not placed.
  std::optional<int> slot;
  Kind kind;
  /// How many tiles the wide form is long.
  int span = 1;

  bool operator==(const DockWidget&) const = default;
};

/// In JSON an object with one member, named after the kind.
template <> struct Coder<DockWidget::Kind> {
  static DockWidget::Kind decode(const JSONValue& json);
  static JSONValue encode(const DockWidget::Kind& kind);
};

template <> struct Coder<DockWidget> {
  static DockWidget decode(const JSONValue& json);
  static JSONValue encode(const DockWidget& widget);
};

/// One kind as editors list it.
struct KindInfo {
  std::string_view key;
  std::string_view title;
  int maxSpan = 1;
};

/// All kinds in declaration order.
std::span<const KindInfo> allKinds();

/// A kind with the settings of a new widget, for one of the keys of `allKinds`. `now` is what
/// settings that hold a date start from.
std::optional<DockWidget::Kind> freshKind(std::string_view key, Date now);

/// The lines of the kind's settings record.
std::vector<FieldInfo> describeSettings(const DockWidget::Kind& kind);

/// The settings record as JSON.
JSONValue settingsJSON(const DockWidget::Kind& kind);

/// The same kind with the settings read from `settings`. Throws CodingError.
DockWidget::Kind withSettings(const DockWidget::Kind& kind, const JSONValue& settings);

} // namespace tavrin
