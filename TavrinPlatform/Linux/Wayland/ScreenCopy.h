#pragma once

#include "TavrinPlatform/Linux/Wayland/Outputs.h"

#include <QImage>

namespace tavrin {

/// What an output shows at the moment, without the pointer: its own pixels, upright. Waits for the
/// compositor, a second at most. Null where it shows that to no program.
QImage copyOfOutput(WaylandConnection& connection, const Outputs::Output& output);

} // namespace tavrin
