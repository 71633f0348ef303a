#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct MusicSettings {
  static constexpr std::string_view kindKey = "music";

  /// A player's name on the session bus, such as vlc; none is the one last used.
  std::optional<std::string> player;
  bool showsCover = true;
  bool showsArtist = true;
  bool showsProgress = true;

  static constexpr auto fields() {
    return std::tuple{optional("player", &MusicSettings::player)
                          .titled("Player")
                          .helped("Which program is shown and controlled.")
                          .as(FieldRole::player)
                          .absentAs("The one last used"),
                      optional("showsCover", &MusicSettings::showsCover)
                          .titled("Show the cover")
                          .helped("The album's picture on the tile."),
                      optional("showsArtist", &MusicSettings::showsArtist)
                          .titled("Show the artist")
                          .helped("Below the title."),
                      optional("showsProgress", &MusicSettings::showsProgress)
                          .titled("Show the position")
                          .helped("How far into the track it is.")};
  }
  bool operator==(const MusicSettings&) const = default;
};

} // namespace tavrin
