#include "TavrinStorage/Dock/ProfileStore.h"

#include "TavrinCore/Dock/DockError.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <algorithm>

namespace tavrin {

ProfileStore::ProfileStore(std::filesystem::path url) : url_(std::move(url)) {
  reload();
}

void ProfileStore::reload() {
  const auto document = readJSONFile(url_);
  try {
    file_ = document ? decode<ProfilesFile>(*document) : ProfilesFile{};
    fileExistedOnLoad_ = document.has_value();
  } catch (const CodingError& error) {
    throw FileError(failure("read " + url_.string(), error.what()), error.what());
  }
}

void ProfileStore::save() const {
  writeJSONFile(url_, encode(file_));
}

Profile ProfileStore::create(Profile profile) {
  file_.profiles.push_back(profile);
  save();
  return profile;
}

void ProfileStore::update(const Profile& profile) {
  const auto found = std::find_if(file_.profiles.begin(), file_.profiles.end(),
                                  [&](const Profile& one) { return one.id == profile.id; });
  if (found == file_.profiles.end())
    throw DockError::profileNotFound(profile.id.text());
  *found = profile;
  save();
}

void ProfileStore::remove(const UUID& id) {
  std::erase_if(file_.profiles, [&](const Profile& one) { return one.id == id; });
  if (file_.activeProfileId == id)
    file_.activeProfileId = std::nullopt;
  save();
}

std::optional<Profile> ProfileStore::profile(const UUID& id) const {
  for (const auto& profile : file_.profiles)
    if (profile.id == id)
      return profile;
  return std::nullopt;
}

void ProfileStore::setActive(const std::optional<UUID>& id) {
  file_.activeProfileId = id;
  save();
}

void ProfileStore::replaceAll(std::vector<Profile> profiles) {
  file_.profiles = std::move(profiles);
  save();
}

} // namespace tavrin
