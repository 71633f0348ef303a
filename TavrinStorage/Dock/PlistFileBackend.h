#pragma once

#include "TavrinCore/Dock/DockPlistReader.h"

namespace tavrin {

/// Dock preferences in a property list file of either form; written as XML. All other keys of the
/// file are kept.
class PlistFileBackend final : public DockPreferencesBackend {
public:
  explicit PlistFileBackend(std::filesystem::path url) : url_(std::move(url)) {}

  std::filesystem::path url() const override { return url_; }
  /// Throws DockError: plistNotFound without a file, plistReadFailed, plistMalformed. A missing
  /// section is an empty one.
  DockTiles readTiles() override;
  /// Makes the file where there is none. Throws DockError: as above for a file that is there, else
  /// plistWriteFailed.
  void writeTiles(const DockTiles& tiles) override;
  /// As `exclusiveAccessTo` says.
  std::shared_ptr<void> exclusiveAccess() override;

private:
  std::filesystem::path url_;
};

/// The file's DocumentLock. Throws DockError (plistWriteFailed) when somebody else keeps it: a Dock
/// is not looked at again between reading and writing, so a change without it could undo theirs.
std::shared_ptr<void> exclusiveAccessTo(const std::filesystem::path& dockPlist);

/// A reader and a writer over one file.
DockPlistReader dockPlistReader(const std::filesystem::path& file);
DockPlistWriter dockPlistWriter(const std::filesystem::path& file);

} // namespace tavrin
