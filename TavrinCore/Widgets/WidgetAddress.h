#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

namespace tavrin {

/// Names a widget by its identity or by its slot.
class WidgetAddress {
public:
  static WidgetAddress ofID(const UUID& id) { return WidgetAddress(id); }
  static WidgetAddress ofSlot(int slot) { return WidgetAddress(slot); }
  /// The slot of a placed widget, otherwise its identity.
  explicit WidgetAddress(const DockWidget& widget);
  /// No value for an identifier that is neither a widget's nor a slot application's.
  static std::optional<WidgetAddress> fromBundleIdentifier(std::string_view bundleIdentifier);

  const UUID* id() const { return std::get_if<UUID>(&value_); }
  const int* slot() const { return std::get_if<int>(&value_); }

  std::string bundleIdentifier() const;
  /// The identifier's text, or "slot4".
  std::string key() const;
  bool matches(const DockWidget& widget) const;

  bool operator==(const WidgetAddress&) const = default;

private:
  explicit WidgetAddress(const UUID& id) : value_(id) {}
  explicit WidgetAddress(int slot) : value_(slot) {}

  std::variant<UUID, int> value_;
  friend struct std::hash<WidgetAddress>;
};

} // namespace tavrin

template <> struct std::hash<tavrin::WidgetAddress> {
  std::size_t operator()(const tavrin::WidgetAddress& address) const noexcept {
    return std::hash<std::variant<tavrin::UUID, int>>()(address.value_);
  }
};
