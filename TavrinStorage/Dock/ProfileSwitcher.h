#pragma once

#include "TavrinCore/Dock/DockSwapper.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinStorage/Dock/BackupManager.h"
#include "TavrinStorage/Dock/ProfileStore.h"

#include <functional>

namespace tavrin {

/// Told when another profile has become the active one.
class WorkspaceSwitchObserver {
public:
  virtual ~WorkspaceSwitchObserver() = default;
  virtual void profileBecameActive(const Profile& profile) = 0;
};

/// Told of a backup once it is on disk, before the Dock is touched.
using BackupObserver = std::function<void(const std::filesystem::path& backup)>;

/// Puts what `plan` says into the Dock, as `DockSwapper::change` does, backs the Dock up just
/// before it is first written, and deletes the oldest backups, also where the change fails. False
/// when nothing was written. Throws DockError and FileError; the backup may then be there, and the
/// Dock written already.
bool applyWithBackup(const DockSwapper& swapper, const BackupManager& backup,
                     const DockSwapper::Plan& plan, const Clock& clock,
                     const BackupObserver& didBackUp);

/// Moves layouts between the profiles and the Dock. Blocks the calling thread while the Dock
/// restarts; used from one thread at a time. Profiles that others change meanwhile are kept, and
/// what is put into the Dock is the profile as it is when the Dock is written.
///
/// A failed change of the Dock leaves the profiles file as it was and a backup of the Dock before,
/// which `undoLastChange` brings back. Throws DockError and FileError.
class ProfileSwitcher {
public:
  ProfileSwitcher(ProfileStore& store, DockSwapper swapper, BackupManager backup,
                  const Clock& clock)
      : store_(store), swapper_(std::move(swapper)), backup_(std::move(backup)), clock_(clock) {}

  std::weak_ptr<WorkspaceSwitchObserver> workspaceObserver;
  BackupObserver didBackUp;

  /// Does nothing, and gives false, when the profile is already active.
  bool switchTo(UUID profileID);
  /// Takes the Dock as it is into the active profile; false when that changes nothing.
  bool captureCurrentDock();
  /// The same with a profile that need not be active. Throws DockError (profileNotFound).
  bool capture(UUID profileID, const DockSnapshot& dock);
  /// Makes a profile the active one without touching the Dock.
  void activate(UUID profileID);
  /// Puts the active profile into the Dock; false when the Dock shows it already.
  bool applyActiveProfile();
  /// Brings back the newest backup and takes it off the list; the Dock before becomes a backup.
  void undoLastChange();

private:
  Profile requiredProfile(const UUID& id) const;
  bool apply(const DockSwapper::Plan& plan);
  bool isReplaced(const UUID& id) const;

  ProfileStore& store_;
  DockSwapper swapper_;
  BackupManager backup_;
  const Clock& clock_;
};

} // namespace tavrin
