#pragma once

#include "TavrinPlatform/NearbyDevices.h"

#include <memory>

namespace tavrin {

/// AirDrop as the system shares by it. No program is told which devices are near: one entry stands
/// for all, and the system asks. A sending that is under way is the user's to call off.
std::unique_ptr<NearbyDevices> makeMacNearbyDevices(RunLoop& runLoop);

} // namespace tavrin
