#pragma once

#include "TavrinCore/Dock/DockItem.h"
#include "TavrinCore/Dock/DockPreferencesBackend.h"

#include <memory>

namespace tavrin {

/// The Dock's preferences as items.
struct DockPlistReader {
  std::shared_ptr<DockPreferencesBackend> backend;

  /// All items or none: throws DockError at the first tile that is no item.
  DockSnapshot read(Date now) const;
};

/// Items into the Dock's preferences. Each side's items are written to that side in their order.
struct DockPlistWriter {
  std::shared_ptr<DockPreferencesBackend> backend;

  /// Throws DockError.
  void write(const DockSnapshot& snapshot) const;
};

} // namespace tavrin
