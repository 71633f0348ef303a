#pragma once

#include "TavrinCore/Base/Hotkey.h"
#include "TavrinCore/Dock/DockItem.h"
#include "TavrinCore/Widgets/WidgetStack.h"

namespace tavrin {

enum class ProfileColor { blue, pink, orange, green, purple, graphite };

template <> struct EnumNames<ProfileColor> {
  static constexpr std::array names = {
      std::pair{ProfileColor::blue, std::string_view("blue")},
      std::pair{ProfileColor::pink, std::string_view("pink")},
      std::pair{ProfileColor::orange, std::string_view("orange")},
      std::pair{ProfileColor::green, std::string_view("green")},
      std::pair{ProfileColor::purple, std::string_view("purple")},
      std::pair{ProfileColor::graphite, std::string_view("graphite")}};
};

/// What happens to running applications that are not in a profile when it becomes active.
enum class OtherWorkspaceApps { keep, hide, quit };

template <> struct EnumNames<OtherWorkspaceApps> {
  static constexpr std::array names = {
      std::pair{OtherWorkspaceApps::keep, std::string_view("keep")},
      std::pair{OtherWorkspaceApps::hide, std::string_view("hide")},
      std::pair{OtherWorkspaceApps::quit, std::string_view("quit")}};
};

/// A named Dock layout that the user can switch to.
struct Profile {
  UUID id;
  std::string name;
  ProfileColor color = ProfileColor::blue;
  /// Left of the Dock's divider.
  std::vector<DockItem> items;
  /// Right of it.
  std::vector<DockItem> others;
  std::vector<WidgetStack> stacks;
  /// The Focus mode that activates this profile.
  std::optional<std::string> focusModeBinding;
  std::optional<Hotkey> hotkey;
  OtherWorkspaceApps otherWorkspaceApps = OtherWorkspaceApps::hide;
  /// The desktops bound to this profile.
  std::vector<std::string> desktopUUIDs;
  /// Hexadecimal.
  std::optional<std::string> indicatorColorHex;
  /// Members that this build does not know, written back as they were.
  JSONValue::Object unrecognized;

  DockSnapshot snapshot(Date now) const { return {items, others, now}; }

  static constexpr auto fields() {
    return std::tuple{
        required("id", &Profile::id).titled("Identifier"),
        required("name", &Profile::name).titled("Name"),
        required("color", &Profile::color).titled("Colour"),
        required("items", &Profile::items).titled("Left items"),
        optional("others", &Profile::others).titled("Right items"),
        optional("stacks", &Profile::stacks).titled("Stacks"),
        optional("focusModeBinding", &Profile::focusModeBinding).titled("Focus mode"),
        optional("hotkey", &Profile::hotkey).titled("Shortcut"),
        optional("otherWorkspaceApps", &Profile::otherWorkspaceApps).titled("Other applications"),
        optional("desktopUUIDs", &Profile::desktopUUIDs).titled("Desktops"),
        optional("indicatorColorHex", &Profile::indicatorColorHex).titled("Indicator colour")};
  }
  bool operator==(const Profile&) const = default;
};

/// The document "profiles.json".
struct ProfilesFile {
  static constexpr int currentVersion = 2;

  int version = currentVersion;
  std::optional<UUID> activeProfileId;
  std::vector<Profile> profiles;
  /// As in a profile.
  JSONValue::Object unrecognized;

  static constexpr auto fields() {
    return std::tuple{required("version", &ProfilesFile::version),
                      optional("activeProfileId", &ProfilesFile::activeProfileId),
                      required("profiles", &ProfilesFile::profiles)};
  }
  bool operator==(const ProfilesFile&) const = default;
};

/// Reads the older layouts too: without "others" all items are in "items"; instead of
/// "otherWorkspaceApps" there is the truth value "quitsOtherWorkspaceApps", and instead of
/// "desktopUUIDs" one "desktopUUID". Only the current keys are written.
template <> struct Coder<Profile> {
  static Profile decode(const JSONValue& json);
  static JSONValue encode(const Profile& profile);
};
template <> struct Coder<ProfilesFile> {
  static ProfilesFile decode(const JSONValue& json);
  /// A file of an older version becomes one of the current version.
  static JSONValue encode(const ProfilesFile& file);
};

} // namespace tavrin
