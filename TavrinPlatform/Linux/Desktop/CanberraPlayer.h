#pragma once

#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/SoundPlayer.h"

namespace tavrin {

/// The desktop's sound theme through libcanberra, which is loaded with the first sound and
/// connected to the sound server only while one plays.
class CanberraPlayer final : public SoundPlayer {
public:
  explicit CanberraPlayer(RunLoop& runLoop) : runLoop_(runLoop) {}
  void play(const std::string& name) override;

  /// The freedesktop.org sound name (such as "complete") that stands for a sound's name.
  static const char* eventFor(const std::string& name);

private:
  RunLoop& runLoop_;
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace tavrin
