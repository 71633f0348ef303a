#pragma once

#include "TavrinPlatform/Platform.h"

#include <memory>

namespace tavrin {

/// The services of a Linux desktop, for a slot and for other programs with a tile. To be called
/// first thing in `main`. Null when the process has nothing left to do: another process is this
/// application already and has been asked to activate, or the arguments asked for a notice
/// ("--notify IDENTIFIER TITLE BODY") that has been shown; then `main` returns 0.
///
/// Read from the environment, beside what the desktop itself sets:
/// - TAVRIN_SURFACE: the surfaces of the tile, of "strip", "tray" and "picture", with commas. By
///   default the strip where there is an X server, else the tray where there is a status
///   notifier host, else the picture.
/// - TAVRIN_PICTURE_DIR: the folder of the picture surface's files; by default "tiles" in the
///   data folder. A file is called by the bundle identifier.
/// - TAVRIN_APPEARANCE: "light" or "dark", instead of the desktop's preference.
/// - TAVRIN_LOG: "stderr" to write the log there too.
std::unique_ptr<Platform> makePlatform(int& argc, char** argv);

/// Runs the event loop until `Application::terminate` or a signal to end; the exit status. At
/// once when `terminate` has been called before.
int runEventLoop(Platform& platform);

} // namespace tavrin
