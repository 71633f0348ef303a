#pragma once

#include "TavrinCore/Kinds/System/DeviceBattery.h"
#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <vector>

namespace tavrin {

/// The batteries of keyboards, mice, headphones and the like.
class ConnectedDevices {
public:
  virtual ~ConnectedDevices() = default;
  /// As last told; empty before the first `refresh` is answered.
  virtual std::vector<DeviceBattery> connected() const = 0;
  /// Asks anew, without waiting; who observes is told when the answer is there.
  virtual void refresh() = 0;
  [[nodiscard]] virtual TokenPtr observe(std::function<void()> handler) = 0;
};

} // namespace tavrin
