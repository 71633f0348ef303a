#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/Music/MusicSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/MediaPlayers.h"

#include <QImage>
#include <functional>

namespace tavrin {

/// The player that the widget shows, and its cover. Ticks only while something plays, and only as
/// often as what is shown moves.
class MusicModel {
public:
  MusicModel(MediaPlayers& players, Clock& clock, RunLoop& runLoop, DockWidget widget);
  MusicModel(const MusicModel&) = delete;
  MusicModel& operator=(const MusicModel&) = delete;

  const DockWidget& widget() const { return widget_; }
  /// Does not call `onChange`.
  void setWidget(const DockWidget& widget);
  MusicSettings settings() const { return widget_.kind.settings<MusicSettings>(); }
  Date now() const { return clock_.now(); }

  bool isAvailable() const { return players_.isAvailable(); }
  const std::vector<MediaPlayer>& players() const { return players_.players(); }
  /// The one the settings name where it is there, else the one last used; null for none.
  const MediaPlayer* player() const;
  /// Whether the name in the settings means this player: its own, or that of its program, of which
  /// "firefox.instance_1_8" is one.
  static bool isWished(const MediaPlayer& player, std::string_view wish);
  /// What the settings are to hold for a player that was chosen: its program, which is there the
  /// next time too, or its own name while the program runs more than once.
  std::string wishFor(const std::string& player) const;
  /// Null until it has been read, and where there is none.
  const QImage& cover() const { return cover_; }

  /// Asks the players how they are.
  void refresh() { players_.refresh(); }
  void playPause();
  void next();
  void previous();
  void seek(double seconds);
  void setVolume(double volume);
  void raise();

  /// How finely the tile shows the position: so many steps for the whole track; 0 for not at all.
  void setTileSteps(int steps);
  /// The panel shows seconds.
  void setCountingSeconds(bool isCounting);

  /// Something of the above differs, or the position has moved by a step.
  std::function<void()> onChange;

private:
  void changed();
  void schedule();
  void loadCover();

  MediaPlayers& players_;
  Clock& clock_;
  RunLoop& runLoop_;
  DockWidget widget_;
  QImage cover_;
  std::optional<std::filesystem::path> coverFile_;
  /// A cover's file may be written anew under its old name for the next track.
  std::string coverTrack_;
  Lifetime loading_;
  int tileSteps_ = 0;
  bool isCounting_ = false;
  TokenPtr observation_;
  TokenPtr tick_;
};

} // namespace tavrin
