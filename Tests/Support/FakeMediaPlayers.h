#pragma once

#include "TavrinPlatform/MediaPlayers.h"
#include "Tests/Support/HandlerList.h"

#include <fmt/format.h>

namespace tavrin::test {

/// Shows what `all` says; writes down what it is told.
class FakeMediaPlayers final : public MediaPlayers {
public:
  const std::vector<MediaPlayer>& players() const override { return all; }
  bool isAvailable() const override { return available; }
  void refresh() override { ++refreshes; }
  void playPause(const std::string& name) override { told.push_back("playPause " + name); }
  void next(const std::string& name) override { told.push_back("next " + name); }
  void previous(const std::string& name) override { told.push_back("previous " + name); }
  void seek(const std::string& name, double seconds) override {
    told.push_back(fmt::format("seek {} {}", name, seconds));
  }
  void setVolume(const std::string& name, double volume) override {
    told.push_back(fmt::format("volume {} {}", name, volume));
  }
  void raise(const std::string& name) override { told.push_back("raise " + name); }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }

  static MediaPlayer player(const std::string& name, const std::string& title, double length,
                            Date now) {
    MediaPlayer player;
    player.name = name;
    player.title = name;
    player.canPlay = player.canPause = player.canGoNext = player.canGoPrevious = player.canSeek =
        true;
    player.playback.track.title = title;
    if (length > 0)
      player.playback.track.length = length;
    player.playback.status = PlaybackStatus::playing;
    player.playback.positionDate = now;
    return player;
  }

  std::vector<MediaPlayer> all;
  std::vector<std::string> told;
  bool available = true;
  int refreshes = 0;
  HandlerList changes;
};

} // namespace tavrin::test
