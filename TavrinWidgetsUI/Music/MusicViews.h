#pragma once

#include "TavrinCore/Kinds/Music/MusicSettings.h"
#include "TavrinPlatform/MediaPlayers.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

inline constexpr QColor musicTint{0xFA, 0x4E, 0x6A};

struct MusicTileActions {
  std::function<void()> playPause;
  std::function<void()> next;
  std::function<void()> previous;
};

/// `player` may be null: nothing plays.
AnyView musicTileIcon(const MediaPlayer* player, const QImage& cover, const MusicSettings& settings,
                      Date now, const TileSize& size);
AnyView musicWideTile(const MediaPlayer* player, const QImage& cover, const MusicSettings& settings,
                      Date now, const TileSize& size, const MusicTileActions& actions);
/// The cover, or a note where there is none, as a square.
AnyView musicCover(const QImage& cover, double side);
/// How many steps of the position a tile of that size can show.
int musicTileSteps(const TileSize& size, double scale);

/// "Paused" and the like.
QString playbackWord(const MediaPlayer& player);
/// Title, or the player's name where it tells none.
QString trackTitle(const MediaPlayer& player);

} // namespace tavrin
