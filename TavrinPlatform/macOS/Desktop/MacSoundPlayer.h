#pragma once

#include "TavrinPlatform/SoundPlayer.h"

#include <memory>

namespace tavrin {

/// NSSound, by the names of the system's sounds.
std::unique_ptr<SoundPlayer> makeMacSoundPlayer();

} // namespace tavrin
