#pragma once

#include "TavrinPlatform/Platform.h"

#include <functional>
#include <memory>

namespace tavrin {

/// The services of a Mac, for a slot. To be called first thing in `main`.
std::unique_ptr<Platform> makePlatform(int& argc, char** argv);

/// Runs the event loop until `Application::terminate`; `launched` is called from inside of it,
/// once. The exit status.
int runEventLoop(Platform& platform, std::function<void()> launched);

} // namespace tavrin
