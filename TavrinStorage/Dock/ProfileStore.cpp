#include "TavrinStorage/Dock/ProfileStore.h"

#include "TavrinCore/Dock/DockError.h"
#include "TavrinCore/Profiles/ProfileTransfer.h"

#include <algorithm>

namespace tavrin {

ProfileStore::ProfileStore(std::filesystem::path url) : document_(std::move(url)) {
  reload();
}

void ProfileStore::save() {
  document_.change([](ProfilesFile&) {});
}

Profile& ProfileStore::required(ProfilesFile& file, const UUID& id) {
  const auto found = std::ranges::find(file.profiles, id, &Profile::id);
  if (found == file.profiles.end())
    throw DockError::profileNotFound(id.text());
  return *found;
}

Profile ProfileStore::create(Profile profile) {
  document_.change([&](ProfilesFile& file) { file.profiles.push_back(profile); });
  return profile;
}

void ProfileStore::putBack(Profile profile, std::vector<UUID> predecessors) {
  document_.change([&](ProfilesFile& file) {
    auto& all = file.profiles;
    const auto last = std::find_if(all.rbegin(), all.rend(), [&](const Profile& one) {
      return std::ranges::count(predecessors, one.id) > 0;
    });
    all.insert(last.base(), profile);
  });
}

void ProfileStore::update(Profile profile) {
  change(profile.id, [&](Profile& stored) { stored = profile; });
}

void ProfileStore::remove(UUID id) {
  document_.change([&](ProfilesFile& file) {
    std::erase_if(file.profiles, [&](const Profile& one) { return one.id == id; });
    if (file.activeProfileId == id)
      file.activeProfileId = std::nullopt;
  });
}

std::optional<Profile> ProfileStore::profile(const UUID& id) const {
  const auto found = std::ranges::find(file().profiles, id, &Profile::id);
  return found == file().profiles.end() ? std::nullopt : std::optional(*found);
}

std::optional<Profile> ProfileStore::activeProfile() const {
  const auto& id = file().activeProfileId;
  return id ? profile(*id) : std::nullopt;
}

void ProfileStore::setActive(std::optional<UUID> id) {
  document_.change([&](ProfilesFile& file) { file.activeProfileId = id; });
}

Profile ProfileStore::activate(UUID id) {
  std::optional<Profile> active;
  document_.change([&](ProfilesFile& file) {
    active = required(file, id);
    const bool isNew = file.activeProfileId != id;
    file.activeProfileId = id;
    return isNew;
  });
  return std::move(*active);
}

void ProfileStore::activateFirst(const std::function<bool(const Profile&)>& matches) {
  document_.change([&](ProfilesFile& file) {
    const auto found = std::ranges::find_if(file.profiles, matches);
    file.activeProfileId = found == file.profiles.end() ? std::nullopt : std::optional(found->id);
  });
}

std::vector<Profile> ProfileStore::merge(const std::vector<Profile>& imported,
                                         const std::set<std::string>& knownDesktopUUIDs) {
  document_.change([&](ProfilesFile& file) {
    file.profiles = ProfileTransfer::merge(imported, file.profiles, knownDesktopUUIDs);
  });
  const auto& all = file().profiles;
  return {all.end() - static_cast<std::ptrdiff_t>(imported.size()), all.end()};
}

} // namespace tavrin
