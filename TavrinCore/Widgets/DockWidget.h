#pragma once

#include "TavrinCore/Base/FieldInfo.h"

#include <concepts>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tavrin {

/// The settings record of a kind says which one's it is: `kindKey`, the kind's key in JSON. That is
/// asked first: whether a kind itself can be copied leads back to this question.
template <class S>
concept KindSettings = requires {
  { S::kindKey } -> std::convertible_to<std::string_view>;
} && std::copyable<S> && std::equality_comparable<S>;

/// A widget of the user's, as it stands in the widgets file.
struct DockWidget {
  /// What a widget is, with its settings: a value that holds the settings record of one of the
  /// kinds in KindTable.h, and knows none of them, so that who handles widgets of any kind need not.
  /// One that was moved from may only be assigned to or destroyed.
  class Kind {
  public:
    /// An empty collection.
    Kind();
    template <KindSettings Settings>
    Kind(Settings settings) : record_(std::make_unique<RecordOf<Settings>>(std::move(settings))) {}
    Kind(const Kind& other) : record_(other.record_->copy()) {}
    Kind(Kind&&) noexcept = default;
    Kind& operator=(const Kind& other) {
      record_ = other.record_->copy();
      return *this;
    }
    Kind& operator=(Kind&&) noexcept = default;
    ~Kind() = default;
    bool operator==(const Kind& other) const {
      return key() == other.key() && record_->equals(*other.record_);
    }

    /// The JSON key: "timer".
    std::string_view key() const { return record_->key; }
    /// Its place in declaration order.
    std::size_t index() const;
    /// The name for users: "Timer".
    std::string_view title() const;
    /// The span of a record that states none; depends on the tile style for some kinds.
    int defaultSpan() const;
    int maxSpan() const;
    /// Files can be dropped on the tile.
    bool takesFiles() const;

    /// The settings of that kind; none where this is another.
    template <KindSettings Settings> const Settings* get() const {
      return key() == Settings::kindKey
                 ? &static_cast<const RecordOf<Settings>&>(*record_).settings
                 : nullptr;
    }
    template <KindSettings Settings> Settings* get() {
      return const_cast<Settings*>(std::as_const(*this).get<Settings>());
    }
    /// The settings; those of a new widget where this is another kind.
    template <KindSettings Settings> Settings settings() const {
      const auto* own = get<Settings>();
      return own != nullptr ? *own : Settings{};
    }

  private:
    struct Record {
      explicit Record(std::string_view kindKey) : key(kindKey) {}
      virtual ~Record() = default;
      virtual std::unique_ptr<Record> copy() const = 0;
      /// For a record of the same kind.
      virtual bool equals(const Record& other) const = 0;
      const std::string_view key;
    };
    template <class Settings> struct RecordOf final : Record {
      explicit RecordOf(Settings own) : Record(Settings::kindKey), settings(std::move(own)) {}
      std::unique_ptr<Record> copy() const override {
        return std::make_unique<RecordOf>(settings);
      }
      bool equals(const Record& other) const override {
        return settings == static_cast<const RecordOf&>(other).settings;
      }
      Settings settings;
    };
    std::unique_ptr<Record> record_;
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
