#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/PowerSources.h"

#include <map>
#include <optional>
#include <string>

namespace tavrin {

/// UPower's devices: the computer's own batteries, and for `BusConnectedDevices` those of others.
/// Asked for when first wanted, and followed by its signals from then on.
class UPowerSources final : public PowerSources {
public:
  /// `system` gives the system bus, or null.
  explicit UPowerSources(std::function<Bus*()> system) : system_(std::move(system)) {}

  std::vector<PowerSource> list() override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override;

  /// By their object paths.
  const std::map<std::string, BusProperties>& devices();

private:
  void watch();
  void forgetAll();
  void enumerate();
  void ask(const std::string& path);
  void changed(sd_bus_message* message);

  std::function<Bus*()> system_;
  Bus* bus_ = nullptr;
  HandlerList changes_;
  std::map<std::string, BusProperties> devices_;
  BusProperties daemon_;
  std::vector<TokenPtr> watches_;
  /// Answers of before a restart of the service are not for now.
  std::optional<Lifetime> round_;
};

} // namespace tavrin
