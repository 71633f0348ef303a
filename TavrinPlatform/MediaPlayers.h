#pragma once

#include "TavrinCore/Kinds/Music/MusicPlayback.h"
#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// A program that plays, as it says itself.
struct MediaPlayer {
  /// Names it among the players: "vlc", "firefox.instance_1_8".
  std::string name;
  /// For the user: "VLC media player".
  std::string title;
  MusicPlayback playback;
  /// 0...1; no value where it has none to set.
  std::optional<double> volume;
  bool canPlay = false;
  bool canPause = false;
  bool canGoNext = false;
  bool canGoPrevious = false;
  bool canSeek = false;
  /// It has answered the last question in time.
  bool isAnswering = true;
  bool operator==(const MediaPlayer&) const = default;
};

/// The players of this desktop. Nothing waits for one; what is asked of a player shows once it has
/// told so itself.
class MediaPlayers {
public:
  virtual ~MediaPlayers() = default;

  /// The one that began to play, or was told something from here, last comes first.
  virtual const std::vector<MediaPlayer>& players() const = 0;
  /// Whether this desktop lets players be seen.
  virtual bool isAvailable() const = 0;
  /// Asks all of them anew.
  virtual void refresh() = 0;
  virtual void playPause(const std::string& name) = 0;
  virtual void next(const std::string& name) = 0;
  virtual void previous(const std::string& name) = 0;
  /// To so many seconds into the track.
  virtual void seek(const std::string& name, double seconds) = 0;
  /// 0...1.
  virtual void setVolume(const std::string& name, double volume) = 0;
  /// Brings the player's window to the user.
  virtual void raise(const std::string& name) = 0;
  /// Players came, went or said something. The first observer begins the watch.
  [[nodiscard]] virtual TokenPtr observe(std::function<void()> handler) = 0;
};

} // namespace tavrin
