#pragma once

#include "TavrinPlatform/GlobalShortcuts.h"

#include <memory>

namespace tavrin {

/// The hot keys of the event manager, which need no permission. A key that another program uses
/// as an ordinary hot key is not refused: both hear it. Needs the application's event loop.
std::unique_ptr<GlobalShortcuts> makeMacGlobalShortcuts();

} // namespace tavrin
