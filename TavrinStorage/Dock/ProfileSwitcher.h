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

/// Backs the Dock up, puts a layout into it and deletes the oldest backups. Throws DockError and
/// FileError; the backup is then there, and the Dock may be written already.
void applyWithBackup(const DockSwapper& swapper, const BackupManager& backup,
                     const DockSnapshot& target, const BackupObserver& didBackUp);

/// Moves layouts between the profiles and the Dock. Blocks the calling thread while the Dock
/// restarts; used from one thread at a time.
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

  /// Does nothing when the profile is already active.
  void switchTo(const UUID& profileID);
  /// Takes the Dock as it is into the active profile; false when that changes nothing.
  bool captureCurrentDock();
  /// Makes a profile the active one without touching the Dock.
  void activate(const UUID& profileID);
  /// Puts the active profile into the Dock; false when the Dock shows it already.
  bool applyActiveProfile();
  /// Brings back the newest backup and takes it off the list; the Dock before becomes a backup.
  void undoLastChange();

private:
  Profile requiredProfile(const UUID& id) const;
  std::optional<Profile> activeProfile() const;
  void setActive(const Profile& profile);

  ProfileStore& store_;
  DockSwapper swapper_;
  BackupManager backup_;
  const Clock& clock_;
};

} // namespace tavrin
