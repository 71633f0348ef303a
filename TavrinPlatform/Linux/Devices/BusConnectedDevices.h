#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/ConnectedDevices.h"
#include "TavrinPlatform/Linux/Devices/UPowerSources.h"

namespace tavrin {

/// The batteries UPower knows of other devices, and those that only BlueZ tells of. A device that
/// both know is listed once.
class BusConnectedDevices final : public ConnectedDevices {
public:
  /// `system` gives the system bus, or null. `upower` outlives this.
  BusConnectedDevices(std::function<Bus*()> system, UPowerSources& upower);

  std::vector<DeviceBattery> connected() const override;
  void refresh() override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override;

private:
  /// What BlueZ tells of one object.
  struct Peer {
    BusProperties device;
    BusProperties battery;
  };
  void watch();
  void readObject(sd_bus_message* message, const std::string& path);
  void changed(sd_bus_message* message);

  std::function<Bus*()> system_;
  UPowerSources& upower_;
  Bus* bus_ = nullptr;
  bool isWatching_ = false;
  HandlerList changes_;
  std::map<std::string, Peer> peers_;
  std::vector<TokenPtr> watches_;
  Lifetime alive_;
};

} // namespace tavrin
