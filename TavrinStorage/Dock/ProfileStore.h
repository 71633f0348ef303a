#pragma once

#include "TavrinCore/Profiles/Profile.h"
#include "TavrinStorage/SharedDocument.h"

#include <set>

namespace tavrin {

/// The profiles file: each change is made in the file as it is then.
///
/// Identifiers and records are taken by value: what they may be taken from is read anew first.
///
/// A failed read throws FileError and leaves `file` as it was. A failed write throws FileError and
/// keeps the change in memory.
class ProfileStore {
public:
  explicit ProfileStore(std::filesystem::path url);

  const std::filesystem::path& url() const { return document_.url(); }
  /// Whether there was a file when this was last loaded.
  bool fileExistedOnLoad() const { return document_.existed(); }
  const ProfilesFile& file() const { return document_.value(); }

  void reload() { document_.reload(); }
  /// Writes the profiles that are in the file again, in today's form.
  void save();

  Profile create(Profile profile);
  /// Puts one back that was taken out, behind the last of `predecessors` that is there.
  void putBack(Profile profile, std::vector<UUID> predecessors);
  /// Replaces the profile with the same id. Throws DockError (profileNotFound) when there is none.
  void update(Profile profile);
  /// Changes the profile as it is in the file, and gives it as it then is. `change` may answer
  /// whether there is anything to write; what it throws leaves everything as it was. Throws
  /// DockError (profileNotFound).
  template <class Change> Profile change(UUID id, const Change& change) {
    std::optional<Profile> changed;
    document_.change([&](ProfilesFile& file) {
      auto& profile = required(file, id);
      bool isChanged = true;
      if constexpr (std::is_same_v<decltype(change(profile)), bool>)
        isChanged = change(profile);
      else
        change(profile);
      changed = profile;
      return isChanged;
    });
    return std::move(*changed);
  }
  /// Also makes no profile active when it was this one.
  void remove(UUID id);
  std::optional<Profile> profile(const UUID& id) const;
  /// The active one; no value where none is, or where it is gone.
  std::optional<Profile> activeProfile() const;
  void setActive(std::optional<UUID> id);
  /// Makes a profile that is in the file the active one, where it is not that already. Throws
  /// DockError (profileNotFound).
  Profile activate(UUID id);
  /// Makes the first profile that `matches` the active one, or none where none does.
  void activateFirst(const std::function<bool(const Profile&)>& matches);
  /// Adds profiles from elsewhere, as `ProfileTransfer::merge` does, and gives them as they were
  /// added.
  std::vector<Profile> merge(const std::vector<Profile>& imported,
                             const std::set<std::string>& knownDesktopUUIDs);

private:
  static Profile& required(ProfilesFile& file, const UUID& id);

  SharedDocument<ProfilesFile> document_;
};

} // namespace tavrin
