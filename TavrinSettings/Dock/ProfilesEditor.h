#pragma once

#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinSettings/Editing/History.h"

#include <filesystem>
#include <functional>

namespace tavrin {

/// One profile as a step found it and as it left it; none where it was not there.
struct ProfileChange {
  std::optional<Profile> before;
  std::optional<Profile> after;
  /// Those that stood before it where it came or went: shortcuts by number go by the order.
  std::vector<UUID> predecessors;

  ProfileChange inverse() const { return {after, before, predecessors}; }
  ProfileChange followedBy(const ProfileChange& next) const {
    return {before, next.after, predecessors};
  }
  /// Makes the change on what stands by now: what somebody else changed since stays, and is said.
  std::vector<std::string> apply(ProfileStore& store) const;
};

/// The profiles as the window changes them: each change is a transaction of the profiles file and a
/// step of the history. Throws HostError, DockError and FileError with a whole sentence.
class ProfilesEditor {
public:
  ProfilesEditor(HostContext& context, History& history);

  const ProfilesFile& file() { return library_.profiles().file(); }
  std::optional<Profile> profile(const UUID& id) { return library_.profiles().profile(id); }
  DockLibrary& library() { return library_; }
  /// Others may have changed the file.
  void reload();

  /// A profile of the Dock as it is, or without items.
  UUID create(bool isEmpty = false);
  UUID duplicate(const UUID& id);
  void remove(const UUID& id);
  /// A profile of any layout; another name where there is one of that name.
  UUID createFrom(DockSnapshot layout, const std::string& name);
  /// Adds the profiles of an export, or one of a Dock's preferences file (".plist"); gives the
  /// first, none where there was none in it. Throws FileError, DockError.
  std::optional<UUID> importFrom(const std::filesystem::path& file);
  /// Writes an export of the profile, or of all without one. Into a ".plist", which is a Dock's
  /// preferences file, a profile's items are put, and all else of it is kept. Throws FileError,
  /// DockError.
  void exportTo(const std::filesystem::path& file, const std::optional<UUID>& id);
  /// Changes of the same `field` that follow each other are one step.
  void edit(const UUID& id, const std::string& title, const std::string& field,
            const std::function<void(Profile&)>& edit);

  std::function<void()> onChange;

private:
  void did(const std::string& title, const std::string& field, ProfileChange change);
  /// A layout was added at the end.
  void didAdd(const std::string& title, const Profile& profile);
  std::vector<UUID> predecessorsOf(const UUID& id);
  std::vector<std::string> apply(const ProfileChange& change);
  std::string freeName(const std::string& name);

  HostContext& context_;
  History& history_;
  DockLibrary library_;
};

/// "adds Mail, removes Music and changes the order": what leads from one to the other, in words;
/// "changes nothing" where there is no difference.
std::string differenceWords(const DockSnapshot& before, const DockSnapshot& after);

} // namespace tavrin
