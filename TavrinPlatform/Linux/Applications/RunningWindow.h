#pragma once

#include "TavrinPlatform/Linux/Applications/DesktopEntries.h"

#include <string>

namespace tavrin {

/// Whether a window belongs to an application, by what its WM_CLASS holds: the name of its instance
/// and of its class, each ended by a null. The entry's StartupWMClass decides where it has one;
/// else the names are compared with the entry's own and with its program's, case aside.
bool isWindowOf(const FoundEntry& found, const std::string& windowClass);

/// Asks the window manager to bring the uppermost window of the application to the user. False
/// where it has none, or none that can be told: programs in a terminal, and applications that show
/// themselves on another display server than X.
bool raiseWindowOf(const FoundEntry& found);

} // namespace tavrin
