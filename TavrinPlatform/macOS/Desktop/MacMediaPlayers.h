#pragma once

#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/MediaPlayers.h"

#include <memory>

namespace tavrin {

/// Music and Spotify, the players that tell what they do: by their notices, and by Apple events,
/// for which the system asks the user once a player. The system has no interface for all players.
std::unique_ptr<MediaPlayers> makeMacMediaPlayers(RunLoop& runLoop, Clock& clock);

} // namespace tavrin
