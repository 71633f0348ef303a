#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/NearbyDevices.h"
#include "TavrinPlatform/POSIX/HandlerList.h"

#include <map>

namespace tavrin {

/// The devices that KDE Connect reaches, and those paired by Bluetooth that take files.
class BusNearbyDevices final : public NearbyDevices {
public:
  /// `session` may be null, `system` gives the system bus, or null. All outlive this.
  BusNearbyDevices(Bus* session, std::function<Bus*()> system, RunLoop& runLoop);

  const std::vector<NearbyDevice>& devices() const override { return devices_; }
  Advice advice() const override;
  bool isAvailable() const override { return hasConnect_ || hasBluetooth_ || asked_ > 0; }
  void refresh() override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override;
  [[nodiscard]] TokenPtr send(const NearbyDevice& device, std::vector<std::filesystem::path> files,
                              std::function<void(const SendingProgress&)> progress,
                              std::function<void(const SendingResult&)> done) override;

private:
  void watch();
  /// `wakes` starts a daemon that does not run yet.
  void askConnect(bool wakes);
  void askConnectDevice(const std::string& id);
  void askBluetooth();
  void readBluetooth(sd_bus_message* reply);
  void settle();
  TokenPtr sendByConnect(const NearbyDevice& device,
                         const std::vector<std::filesystem::path>& files,
                         std::function<void(const SendingResult&)> done);

  Bus* session_;
  std::function<Bus*()> system_;
  RunLoop& runLoop_;
  HandlerList changes_;
  std::vector<TokenPtr> watches_;
  std::map<std::string, NearbyDevice> connect_;
  std::map<std::string, NearbyDevice> bluetooth_;
  std::vector<NearbyDevice> devices_;
  bool hasConnect_ = false;
  bool hasBluetooth_ = false;
  /// Services that have not answered yet; both before the first question.
  int asked_ = 2;
  bool wasAvailable_ = true;
  TokenPtr asking_;
  Lifetime alive_;
};

} // namespace tavrin
