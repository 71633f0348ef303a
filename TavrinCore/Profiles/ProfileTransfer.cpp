#include "TavrinCore/Profiles/ProfileTransfer.h"

#include <algorithm>

namespace tavrin {

std::string ProfileTransfer::exportData(const std::vector<Profile>& profiles) {
  ProfilesFile file;
  file.profiles = profiles;
  return encode(file).prettyPrinted();
}

std::vector<Profile> ProfileTransfer::profiles(std::string_view data) {
  return decode<ProfilesFile>(JSONValue::parse(data)).profiles;
}

std::vector<Profile> ProfileTransfer::merge(const std::vector<Profile>& imported,
                                            std::vector<Profile> existing,
                                            const std::set<std::string>& knownDesktopUUIDs) {
  const auto isTaken = [&](auto Profile::*member, const auto& value) {
    return std::any_of(existing.begin(), existing.end(),
                       [&](const Profile& one) { return one.*member == value; });
  };
  for (Profile profile : imported) {
    while (isTaken(&Profile::id, profile.id))
      profile.id = UUID::random();
    while (isTaken(&Profile::name, profile.name))
      profile.name += " (Imported)";
    std::erase_if(profile.desktopUUIDs,
                  [&](const std::string& id) { return !knownDesktopUUIDs.contains(id); });
    existing.push_back(std::move(profile));
  }
  return existing;
}

} // namespace tavrin
