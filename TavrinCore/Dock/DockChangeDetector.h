#pragma once

#include "TavrinCore/Dock/DockItem.h"

namespace tavrin {

/// Compares two states of the Dock by what their items lead to and the side they stand on. Names,
/// identifiers, kept tiles and badges play no part. Equal spacers of one side are one and the same
/// here: another number of them shows as another order.
struct DockChangeDetector {
  struct Report {
    /// In the order of the later state.
    std::vector<DockItem> added;
    /// In the order of the earlier one.
    std::vector<DockItem> removed;
    /// What both states have stands in another order.
    bool reordered = false;

    bool hasChanges() const { return !added.empty() || !removed.empty() || reordered; }
    bool operator==(const Report&) const = default;
  };

  static Report diff(const DockSnapshot& previous, const DockSnapshot& current);

  /// Whether `current` shows all that changes `before` into `after`, whatever else it shows.
  static bool holds(const DockSnapshot& current, const DockSnapshot& before,
                    const DockSnapshot& after);
};

} // namespace tavrin
