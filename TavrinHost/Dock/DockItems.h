#pragma once

#include "TavrinHost/Dock/DockEditing.h"
#include "TavrinHost/HostContext.h"

namespace tavrin {

/// The item that a path or an address names. Throws DockError (fileNotFound) for a path that is
/// not there, unless `mayBeMissing`.
DockItem itemNamed(HostContext& context, const std::string& word, bool mayBeMissing);

/// How an item looks, beside what it leads to.
struct DockItemLook {
  /// Empty for the item's own name; none leaves the one it has.
  std::optional<std::string> label;
  /// Of a folder.
  FolderOptions folder;
};

/// A spacer has no look but its width.
DockItem withLook(DockItem item, const DockItemLook& look);

/// The items of `after` that `before` has in the same section with another name or other options,
/// in Dock order. `DockChangeDetector` tells of neither.
std::vector<DockItem> relooked(const DockSnapshot& before, const DockSnapshot& after);

/// Whether both show the same: items, order, names and options, as they read in the Dock.
bool showTheSame(const DockSnapshot& one, const DockSnapshot& other);

/// One position, counted from 0.
struct DockPosition {
  DockSection section;
  std::size_t index;
  bool operator==(const DockPosition&) const = default;
};

// Edits of one item by where it stands. They throw HostError (notFound) where another item stands
// there by then.

/// `to` is counted without the item.
DockEdit movingTo(PlacedDockItem item, DockPosition to);
/// No `items` remove it.
DockEdit replacingAt(PlacedDockItem item, std::vector<DockItem> items);

} // namespace tavrin
