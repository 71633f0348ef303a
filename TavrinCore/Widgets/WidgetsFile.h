#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

#include <map>
#include <optional>
#include <set>

namespace tavrin {

/// An entry of the widgets file that this build cannot read, kept as it was written.
struct UnrecognizedWidget {
  JSONValue raw;
  bool operator==(const UnrecognizedWidget&) const = default;
};

/// The document "widgets.json".
struct WidgetsFile {
  static constexpr std::int64_t currentVersion = 1;

  std::int64_t version = currentVersion;
  std::vector<DockWidget> widgets;
  std::vector<UnrecognizedWidget> unrecognized;

  /// The slots that widgets and unrecognized entries use, also those that do not exist.
  std::set<int> takenSlots() const;
  /// The lowest slot that nobody uses.
  std::optional<int> freeSlot() const;

  /// The widget that each slot shows, the first in file order, by slot number. The pointers are
  /// into `widgets`.
  std::map<int, const DockWidget*> placedWidgets() const;

  /// Reads the older document of app collections, an object with a list "collections".
  /// Throws CodingError.
  static WidgetsFile migrating(const JSONValue& legacyCollections);

  bool operator==(const WidgetsFile&) const = default;
};

/// Decoding keeps every entry that is no widget under `unrecognized`; encoding writes these after
/// the widgets.
template <> struct Coder<WidgetsFile> {
  static WidgetsFile decode(const JSONValue& json);
  static JSONValue encode(const WidgetsFile& file);
};

} // namespace tavrin
