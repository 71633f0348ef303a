#pragma once

#include "TavrinCore/Dock/DockPreferencesBackend.h"

#include <memory>

namespace tavrin {

/// Copies of the Dock's two tile arrays, a property list file each, named by the moment they were
/// made. Throws DockError and FileError.
struct BackupManager {
  static constexpr std::size_t defaultLimit = 20;
  static constexpr std::string_view directoryName = "backups";

  std::filesystem::path directory;
  /// What is copied.
  std::shared_ptr<DockPreferencesBackend> source;

  /// Copies the Dock as it is and gives the new file. A clock that was set back does not put the
  /// new backup before those that are there: it then takes the newest one's time.
  std::filesystem::path snapshot(Date now) const;
  /// Oldest first.
  std::vector<std::filesystem::path> listBackups() const;
  std::optional<std::filesystem::path> latestBackup() const;
  /// When a backup was made, by its name; no value for a name of another sort.
  static std::optional<Date> dateOf(const std::filesystem::path& backup);
  /// Deletes the oldest until `count` remain.
  void prune(std::size_t count) const;
};

} // namespace tavrin
