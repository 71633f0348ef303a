#include "TavrinCore/Profiles/Profile.h"

#include <algorithm>
#include <iterator>

namespace tavrin {
namespace {

constexpr std::string_view oldQuitsKey = "quitsOtherWorkspaceApps";
constexpr std::string_view oldDesktopKey = "desktopUUID";

/// The member of an older layout; `fallback` when it is missing or null.
template <class T> T oldMember(const JSONValue& json, std::string_view key, T fallback) {
  const auto* value = json.member(key);
  return value == nullptr || value->isNull() ? fallback : decodeMember<T>(json, key);
}

bool lacks(const JSONValue& json, std::string_view key) {
  const auto* value = json.member(key);
  return value == nullptr || value->isNull();
}

} // namespace

Profile Coder<Profile>::decode(const JSONValue& json) {
  Profile profile = RecordCoder<Profile>::decode(json);
  if (lacks(json, "others")) {
    const auto others =
        std::stable_partition(profile.items.begin(), profile.items.end(),
                              [](const DockItem& item) { return item.belongsInAppsSection(); });
    profile.others.assign(std::make_move_iterator(others),
                          std::make_move_iterator(profile.items.end()));
    profile.items.erase(others, profile.items.end());
  }
  if (lacks(json, "otherWorkspaceApps"))
    profile.otherWorkspaceApps =
        oldMember(json, oldQuitsKey, false) ? OtherWorkspaceApps::quit : OtherWorkspaceApps::hide;
  if (lacks(json, "desktopUUIDs"))
    if (const auto desktop = oldMember<std::optional<std::string>>(json, oldDesktopKey, {}))
      profile.desktopUUIDs = {*desktop};
  for (const auto key : {oldQuitsKey, oldDesktopKey})
    profile.unrecognized.erase(std::string(key));
  return profile;
}

JSONValue Coder<Profile>::encode(const Profile& profile) {
  return RecordCoder<Profile>::encode(profile);
}

ProfilesFile Coder<ProfilesFile>::decode(const JSONValue& json) {
  return RecordCoder<ProfilesFile>::decode(json);
}

JSONValue Coder<ProfilesFile>::encode(const ProfilesFile& file) {
  auto current = file;
  current.version = std::max(file.version, ProfilesFile::currentVersion);
  return RecordCoder<ProfilesFile>::encode(current);
}

} // namespace tavrin
