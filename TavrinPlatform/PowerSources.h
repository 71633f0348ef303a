#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <optional>
#include <vector>

namespace tavrin {

/// A battery of the computer itself, as the system describes it: any of it may be nonsense.
struct PowerSource {
  /// In the same unit; a source without them is no battery.
  std::optional<int> currentCapacity = {};
  std::optional<int> maximumCapacity = {};
  bool isOnACPower = false;
  bool isCharging = false;
  /// Minutes; below 1 while the system still estimates.
  std::optional<int> timeToFullCharge = {};
  std::optional<int> timeToEmpty = {};
  bool operator==(const PowerSource&) const = default;
};

class PowerSources {
public:
  virtual ~PowerSources() = default;
  /// As last told; empty until the system has answered, and where there is none.
  virtual std::vector<PowerSource> list() = 0;
  /// Something about the sources differs: the cable, a level, a battery that came or went.
  [[nodiscard]] virtual TokenPtr observe(std::function<void()> handler) = 0;
};

} // namespace tavrin
