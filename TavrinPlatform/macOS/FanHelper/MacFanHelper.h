#pragma once

#include "TavrinPlatform/FanHelperClient.h"

#include <memory>
#include <string>

namespace tavrin {

/// The helper as a daemon of launchd's, registered by the application with `appIdentifier`, whose
/// bundle holds its property list. `teamIdentifier` is the signing team's: without one the helper
/// could not tell its callers from others, and is never registered.
std::unique_ptr<FanHelperClient> makeMacFanHelper(RunLoop& runLoop, std::string appIdentifier,
                                                  std::string teamIdentifier);

} // namespace tavrin
