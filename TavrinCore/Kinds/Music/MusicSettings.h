#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct MusicSettings {
  /// A player's name on the session bus, such as vlc; none is the one last used.
  std::optional<std::string> player;
  bool showsCover = true;
  bool showsArtist = true;
  bool showsProgress = true;

  static constexpr auto fields() {
    return std::tuple{
        optional("player", &MusicSettings::player).titled("Player"),
        optional("showsCover", &MusicSettings::showsCover).titled("Show the cover"),
        optional("showsArtist", &MusicSettings::showsArtist).titled("Show the artist"),
        optional("showsProgress", &MusicSettings::showsProgress).titled("Show the position")};
  }
  bool operator==(const MusicSettings&) const = default;
};

} // namespace tavrin
