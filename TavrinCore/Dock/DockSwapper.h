#pragma once

#include "TavrinCore/Dock/DockPlistReader.h"
#include "TavrinCore/Dock/DockReloader.h"

#include <functional>

namespace tavrin {

/// A layout as it reads once written: a relative path becomes one from the root, and an application
/// right of the divider a plain file.
DockSnapshot asRead(const DockSnapshot& layout);

/// Puts a layout into the Dock and proves that the Dock kept it. Blocks the calling thread for as
/// long as the Dock takes to restart.
struct DockSwapper {
  DockPlistReader reader;
  DockPlistWriter writer;
  std::shared_ptr<DockReloader> reloader;

  /// Reads and writes through one backend.
  static DockSwapper over(std::shared_ptr<DockPreferencesBackend> backend,
                          std::shared_ptr<DockReloader> reloader);

  /// Says what is to be put into the Dock; no value where it is to stay as it is.
  using Plan = std::function<std::optional<DockSnapshot>()>;

  DockSnapshot snapshot(Date now) const { return reader.read(now); }

  /// Writes, restarts and reads back; once more when the Dock wrote its old items over the new
  /// ones. Throws DockError: of a step, which leaves what the steps before it did, or
  /// dockReloadFailed when the Dock kept its items twice.
  void swap(const DockSnapshot& target) const;

  /// The same with a layout that depends on what is there: once the Dock can be written, other
  /// writers are kept out, `plan` reads and decides, and the Dock is written before they are let in
  /// again. Where the Dock does not show the layout afterwards, `plan` is asked anew: the Dock may
  /// have put its old items back, or somebody else may have written since. False when nothing was
  /// written.
  bool change(const Plan& plan) const;
};

} // namespace tavrin
