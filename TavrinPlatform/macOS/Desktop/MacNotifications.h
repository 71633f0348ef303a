#pragma once

#include "TavrinPlatform/DistributedNotificationCenter.h"
#include "TavrinPlatform/UserNotificationCenter.h"

#include <memory>

namespace tavrin {

/// NSDistributedNotificationCenter. Its notices come with the main run loop, in a command too.
/// Background applications hear them at once.
std::unique_ptr<DistributedNotificationCenter> makeMacDistributedNotificationCenter();

/// UNUserNotificationCenter. A program outside a bundle may not even ask for it: then nothing is
/// granted and nothing shown. To be made before the launch is over.
std::unique_ptr<UserNotificationCenter> makeMacUserNotificationCenter();

} // namespace tavrin
