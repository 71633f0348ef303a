#pragma once

#include "TavrinCore/Dock/DockPlistReader.h"
#include "TavrinCore/Dock/DockReloader.h"

namespace tavrin {

/// Puts a layout into the Dock and proves that the Dock kept it. Blocks the calling thread for as
/// long as the Dock takes to restart.
struct DockSwapper {
  DockPlistReader reader;
  DockPlistWriter writer;
  std::shared_ptr<DockReloader> reloader;

  /// Reads and writes through one backend.
  static DockSwapper over(std::shared_ptr<DockPreferencesBackend> backend,
                          std::shared_ptr<DockReloader> reloader);

  DockSnapshot snapshot(Date now) const { return reader.read(now); }

  /// Writes, restarts and reads back; once more when the Dock wrote its old items over the new
  /// ones. Throws DockError: of a step, which leaves what the steps before it did, or
  /// dockReloadFailed when the Dock kept its items twice.
  void swap(const DockSnapshot& target) const;
};

} // namespace tavrin
