#pragma once

#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/Linux/Base/Bus.h"

namespace tavrin {

/// Follows the tile of the application that has, or will have, the name `identifier`, until the
/// token goes: see `Application::watchTile`.
TokenPtr watchTile(Bus& bus, const std::string& identifier, int pixelsHigh,
                   std::function<void(const TilePicture*)> shown);

} // namespace tavrin
