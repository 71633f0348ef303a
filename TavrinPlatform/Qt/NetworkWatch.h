#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>

namespace tavrin {

/// Calls `handler` when the computer may have come to a network while the token lives. Each
/// platform has its own.
[[nodiscard]] TokenPtr watchNetwork(std::function<void()> handler);

} // namespace tavrin
