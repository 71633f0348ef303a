#pragma once

#include "TavrinCore/Dock/DockTileMapping.h"

#include <filesystem>
#include <functional>
#include <string_view>
#include <variant>

namespace tavrin {

/// Where an item goes within its section.
struct DockPlace {
  struct First {};
  struct Last {};
  /// Counted from 1; beyond the end is the end.
  struct Number {
    std::size_t value;
  };
  /// Beside the item that goes by a reference, in that item's section.
  struct Beside {
    std::string reference;
    bool isAfter;
  };
  std::variant<Last, First, Number, Beside> where = Last{};

  /// "first", "last" or a number from 1. Throws HostError (refusedValue).
  static DockPlace parse(std::string_view text);
};

/// What is wanted of a new item.
struct DockAddition {
  std::vector<DockItem> items;
  std::optional<DockSection> section;
  std::optional<DockPlace> place;
  /// The item whose place the new one takes; where there is none, the new one is simply added.
  std::optional<std::string> replacing;
};

/// Which items are meant.
struct DockSelection {
  std::vector<std::string> references;
  bool allSpacers = false;
  bool everything = false;
  std::optional<DockSection> section;
  /// Take all items that a reference may mean instead of asking which.
  bool everyMatch = false;
};

/// One item and where it stands.
struct PlacedDockItem {
  DockSection section;
  std::size_t index;
  DockItem item;
};

/// Both sections, one after the other.
std::vector<PlacedDockItem> placedItems(const DockSnapshot& dock);

/// The items that a selection means, in Dock order. A reference is a label, path, bundle
/// identifier or address; case counts only where the same label comes in several. Throws
/// HostError: ambiguous, or notFound when a reference means no item.
std::vector<PlacedDockItem> select(const DockSnapshot& dock, const DockSelection& selection);

/// One change of a Dock. Throws HostError; what it was given is then of no use.
using DockEdit = std::function<void(DockSnapshot&)>;

/// Items that are there already stay as they are, and `alreadyThere` is told of them.
DockEdit adding(DockAddition addition, std::function<void(const DockItem&)> alreadyThere);
DockEdit removing(DockSelection selection);
DockEdit moving(DockSelection selection, std::optional<DockSection> section, DockPlace place);

std::vector<DockItem>& sectionOf(DockSnapshot& dock, DockSection section);

/// A plain file's tile left of the divider is an application's, and right of it an application's
/// is a plain file's: what is written must be what is read back.
DockItem fitting(const DockItem& item, DockSection section);

/// "Mail (left, 3)"
std::string described(const PlacedDockItem& placed);
/// "app", "folder", "file", "link", "spacer"
std::string_view kindWord(const DockItem& item);
/// The path or address; empty for a spacer.
std::string addressOf(const DockItem& item);

} // namespace tavrin
