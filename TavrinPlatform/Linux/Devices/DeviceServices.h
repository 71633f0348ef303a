#pragma once

#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/Linux/Devices/BusConnectedDevices.h"
#include "TavrinPlatform/Linux/Devices/BusFanHelper.h"
#include "TavrinPlatform/Linux/Devices/BusNearbyDevices.h"
#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"
#include "TavrinPlatform/Linux/Devices/SysfsFans.h"
#include "TavrinPlatform/Linux/Devices/UPowerSources.h"

namespace tavrin {

/// The computer's own parts and what is connected to it. What costs something is made when first
/// asked for.
class DeviceServices {
public:
  /// `session` may be null, `system` gives the system bus, or null. All outlive this.
  DeviceServices(const FileManager& files, RunLoop& runLoop, Bus* session,
                 std::function<Bus*()> system)
      : files_(files), runLoop_(runLoop), session_(session), system_(std::move(system)) {}

  HostStatistics& statistics() { return statistics_; }
  PowerSources& power() { return power_; }
  ConnectedDevices& connected() { return connected_; }
  /// For reading, off the main thread. Below TAVRIN_SYSFS_ROOT, where that is set.
  SMCAccess& fans() {
    if (!fans_)
      fans_ = std::make_unique<SysfsFans>(files_.environment("TAVRIN_SYSFS_ROOT").value_or("/"));
    return *fans_;
  }
  FanHelperClient& fanHelper() {
    if (!fanHelper_)
      fanHelper_ = std::make_unique<BusFanHelper>(runLoop_, system_);
    return *fanHelper_;
  }
  NearbyDevices& nearby() {
    if (!nearby_)
      nearby_ = std::make_unique<BusNearbyDevices>(session_, system_, runLoop_);
    return *nearby_;
  }

private:
  const FileManager& files_;
  RunLoop& runLoop_;
  Bus* session_;
  std::function<Bus*()> system_;
  LinuxHostStatistics statistics_;
  UPowerSources power_{system_};
  BusConnectedDevices connected_{system_, power_};
  std::unique_ptr<SysfsFans> fans_;
  std::unique_ptr<BusFanHelper> fanHelper_;
  std::unique_ptr<BusNearbyDevices> nearby_;
};

} // namespace tavrin
