#pragma once

#include "TavrinCore/Dock/DockItem.h"
#include "TavrinCore/Dock/DockPreferencesBackend.h"

namespace tavrin {

enum class DockSection { apps, others };

/// What a folder's tile shows and how. The numbers are the Dock's.
struct FolderOptions {
  enum class Arrangement { name = 1, dateAdded, dateModified, dateCreated, kind };
  enum class Display { stack = 0, folder = 1 };
  enum class View { automatic = 0, fan, grid, list };

  std::optional<Arrangement> arrangement;
  std::optional<Display> display;
  std::optional<View> view;

  bool isEmpty() const { return !arrangement && !display && !view; }
  bool operator==(const FolderOptions&) const = default;
};

/// The item that a tile dictionary stands for. Throws DockError: plistMalformed (of `file`) where
/// the tile lacks its type or address, unsupportedItemType for a type that is no item here.
DockItem decodeItem(const PropertyList::Dictionary& tile, DockSection section,
                    const std::filesystem::path& file);

/// The tile dictionary of an item. It begins with the tile the item was read from, as long as
/// that leads to the same place, so that keys without a meaning here survive; its "GUID" does not.
PropertyList::Dictionary encodeItem(const DockItem& item);

/// What the tile an entry was read from says; empty without one.
FolderOptions folderOptions(const FileEntry& entry);
/// The entry with the options in its tile. What is absent in `options` stays.
FileEntry withFolderOptions(FileEntry entry, const FolderOptions& options);

} // namespace tavrin
