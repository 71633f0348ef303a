#pragma once

#include "TavrinPlatform/DistributedNotificationCenter.h"
#include "TavrinPlatform/InputBlocker.h"

#include <memory>

namespace tavrin {

/// An event tap at the head of the session's, by leave of the Accessibility permission. A process
/// that stands still loses it by the system's own time limit, one that ends by ending.
std::unique_ptr<InputBlocker> makeMacInputBlocker(RunLoop& runLoop,
                                                  DistributedNotificationCenter& notices);

} // namespace tavrin
