#pragma once

#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinHost/Dock/DockEditing.h"
#include "TavrinHost/HostContext.h"
#include "TavrinStorage/Dock/ProfileSwitcher.h"
#include "TavrinStorage/StoragePath.h"

namespace tavrin {

/// The user's Dock, profiles and Dock backups as the commands see them.
class DockLibrary {
public:
  /// Without `restarts` the Dock is only written, and takes its new layout when it next starts.
  explicit DockLibrary(HostContext& context, bool restarts = true);

  /// Read when first asked for, so that a broken profiles file stops no command that needs none.
  /// Throws FileError.
  ProfileStore& profiles();
  ProfileSwitcher& switcher();
  BackupManager& backups() { return backups_; }
  /// Puts what `plan` says into the Dock, the Dock before backed up. False when nothing was
  /// written.
  bool change(const DockSwapper::Plan& plan);
  /// Puts the profile into the Dock and makes it the active one. Where the Dock shows all of it,
  /// names and options too, nothing is written. Throws as `ProfileSwitcher`.
  bool put(const UUID& profile);
  /// Puts the layout into the Dock, unless it shows the same. False when nothing was written.
  bool put(const DockSnapshot& layout);
  /// Backups are made without a word, where the user is told in another way.
  void keepQuiet() { didBackUp_ = {}; }
  std::shared_ptr<DockPreferencesBackend> dock() { return dock_; }
  DockSnapshot snapshot() const;

  /// The profile that goes by a name or identifier, or the start of one, case aside. Throws
  /// HostError (ambiguous, profileNotFound).
  const Profile& profile(std::string_view reference);

  /// A shortcut is one profile's. Throws HostError (refusedValue) where another one than `profile`
  /// has it.
  void requireFree(const Hotkey& hotkey, const UUID& profile);
  /// Adds the profiles of an export, whose bytes came from `source`, and gives them as they were
  /// added. One whose shortcut is taken is added without it, and that is remarked. Throws
  /// FileError.
  std::vector<Profile> importProfiles(std::string_view text, const std::string& source);

  /// A layout by name: "dock" for the Dock as it is, a Dock backup's file name, a property list
  /// file, or a profile. Throws HostError, DockError.
  DockSnapshot layout(const std::string& reference);

private:
  bool hasProfile(std::string_view name);

  HostContext& context_;
  std::shared_ptr<DockPreferencesBackend> dock_;
  DockSwapper swapper_;
  BackupManager backups_;
  BackupObserver didBackUp_;
  std::optional<ProfileStore> profiles_;
  std::optional<ProfileSwitcher> switcher_;
};

/// The exit status of each failure.
ExitCode exitCode(const DockError& error);

/// `path` as the user wrote it, made absolute; "~/" is the home folder.
std::filesystem::path absolutePath(HostContext& context, const std::string& path);

} // namespace tavrin
