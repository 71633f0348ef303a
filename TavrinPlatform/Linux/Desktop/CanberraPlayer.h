#pragma once

#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/SoundPlayer.h"

#include <memory>

namespace tavrin {

/// The desktop's sound theme through libcanberra, which is loaded with the first sound and
/// connected to the sound server only while one plays.
class CanberraPlayer final : public SoundPlayer {
public:
  explicit CanberraPlayer(RunLoop& runLoop);
  /// A sound that plays ends with its player.
  ~CanberraPlayer() override;
  CanberraPlayer(const CanberraPlayer&) = delete;
  CanberraPlayer& operator=(const CanberraPlayer&) = delete;
  void play(const std::string& name) override;

  /// The freedesktop.org sound name (such as "complete") that stands for a sound's name.
  static const char* eventFor(const std::string& name);

private:
  class Silence;
  static void playAndWait(const char* event, Silence& silence);

  RunLoop& runLoop_;
  std::shared_ptr<Silence> silence_;
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace tavrin
