#pragma once

#include "TavrinCore/Base/FieldInfo.h"
#include "TavrinCore/Widgets/KindTable.h"

#include <span>

namespace tavrin {

/// A widget of the user's, as it stands in the widgets file.
struct DockWidget {
  using KindVariant = tavrin::KindVariant;

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
    /// Files can be dropped on the tile.
    bool takesFiles() const;

    template <class Settings> const Settings* get() const { return std::get_if<Settings>(this); }
    template <class Settings> Settings* get() { return std::get_if<Settings>(this); }
    /// The settings; those of a new widget where this is another kind.
    template <class Settings> Settings settings() const {
      const auto* own = get<Settings>();
      return own != nullptr ? *own : Settings{};
    }
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
  std::string_view symbol;
  /// What it is for, in a sentence, and further words it may be looked for by.
  std::string_view purpose;
  std::string_view words;
  int maxSpan = 1;
  bool takesFiles = false;
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
