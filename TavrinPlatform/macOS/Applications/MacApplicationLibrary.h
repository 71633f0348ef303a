#pragma once

#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinPlatform/FolderWatch.h"

#include <memory>

namespace tavrin {

/// The bundles in the folders for applications. `id` is the bundle identifier, `icon` the bundle's
/// path; applications here have no actions.
std::unique_ptr<ApplicationLibrary> makeMacApplicationLibrary(RunLoop& runLoop,
                                                              FolderWatch& folders);

} // namespace tavrin
