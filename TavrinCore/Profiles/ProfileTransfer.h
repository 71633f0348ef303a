#pragma once

#include "TavrinCore/Profiles/Profile.h"

#include <set>

namespace tavrin {

/// Profiles on their way from one machine to another.
struct ProfileTransfer {
  /// A profiles file with these profiles and none active, pretty-printed.
  static std::string exportData(const std::vector<Profile>& profiles);
  /// Throws JSONError for what is no JSON, CodingError for what is no profiles file.
  static std::vector<Profile> profiles(std::string_view data);

  /// `existing`, then `imported` in order. An identifier that is taken is replaced by a new one, a
  /// name that is taken gets " (Imported)", as often as it takes. Of the desktops only those in
  /// `knownDesktopUUIDs` stay.
  static std::vector<Profile> merge(const std::vector<Profile>& imported,
                                    std::vector<Profile> existing,
                                    const std::set<std::string>& knownDesktopUUIDs);
};

} // namespace tavrin
