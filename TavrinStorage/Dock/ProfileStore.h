#pragma once

#include "TavrinCore/Dock/Profile.h"

#include <filesystem>

namespace tavrin {

/// The profiles file, held in memory and rewritten after each change.
///
/// A failed read throws FileError and leaves `file` as it was. A failed write throws FileError and
/// keeps the change in memory.
class ProfileStore {
public:
  explicit ProfileStore(std::filesystem::path url);

  const std::filesystem::path& url() const { return url_; }
  /// Whether there was a file when this was last loaded.
  bool fileExistedOnLoad() const { return fileExistedOnLoad_; }
  const ProfilesFile& file() const { return file_; }

  void reload();
  void save() const;

  Profile create(Profile profile);
  /// Replaces the profile with the same id. Throws DockError (profileNotFound) when there is none.
  void update(const Profile& profile);
  /// Also makes no profile active when it was this one.
  void remove(const UUID& id);
  std::optional<Profile> profile(const UUID& id) const;
  void setActive(const std::optional<UUID>& id);
  /// Replaces the list of profiles, as after an import.
  void replaceAll(std::vector<Profile> profiles);

private:
  std::filesystem::path url_;
  ProfilesFile file_;
  bool fileExistedOnLoad_ = false;
};

} // namespace tavrin
