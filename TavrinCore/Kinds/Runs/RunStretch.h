#pragma once

#include "TavrinCore/Base/Date.h"

#include <algorithm>
#include <optional>

namespace tavrin {

/// What runs of every kind share: the time run so far, and since when it goes on.
/// `accumulated` plus, while running, the time since `startedAt`; a clock set back takes nothing
/// away.
constexpr double elapsedTime(double accumulated, std::optional<Date> startedAt, Date now) {
  return accumulated + (startedAt ? std::max(0.0, now.since(*startedAt)) : 0.0);
}

} // namespace tavrin
