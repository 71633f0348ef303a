#pragma once

#include <string>

namespace tavrin {

/// The system's named sounds ("Glass", "Submarine", "Tink"). Silent where there is no sound.
class SoundPlayer {
public:
  virtual ~SoundPlayer() = default;
  virtual void play(const std::string& name) = 0;
};

} // namespace tavrin
