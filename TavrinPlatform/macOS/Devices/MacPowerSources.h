#pragma once

#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/PowerSources.h"

#include <CoreFoundation/CoreFoundation.h>

namespace tavrin {

/// The system's own description of its power sources, read at each call. For the main thread.
class MacPowerSources final : public PowerSources {
public:
  MacPowerSources() = default;
  ~MacPowerSources() override;
  MacPowerSources(const MacPowerSources&) = delete;
  MacPowerSources& operator=(const MacPowerSources&) = delete;

  std::vector<PowerSource> list() override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override;

private:
  HandlerList changes_;
  /// There from the first observer on.
  CFRunLoopSourceRef notices_ = nullptr;
};

} // namespace tavrin
