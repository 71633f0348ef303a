#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>

namespace tavrin {

/// For how many milliseconds a thread may wait that has something to do at the earlier of two
/// moments: a minute at the most, -1 (for ever) where there is neither.
inline int pollTimeout(std::optional<std::chrono::steady_clock::time_point> one,
                       std::optional<std::chrono::steady_clock::time_point> other) {
  if (!one && !other)
    return -1;
  const auto first = !one ? *other : !other ? *one : std::min(*one, *other);
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      first - std::chrono::steady_clock::now());
  return static_cast<int>(std::clamp<std::int64_t>(left.count() + 1, 0, 60'000));
}

} // namespace tavrin
