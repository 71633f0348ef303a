#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Base/Log.h"
#include "TavrinCore/Kinds/System/DeviceBatteries.h"
#include "TavrinPlatform/ConnectedDevices.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/ProcessRunner.h"

#include <memory>

namespace tavrin {

/// What the registry tells of the input devices' batteries. From any thread.
std::vector<DeviceBatteries::HIDService> registeredInputDevices();

/// The Bluetooth report of "system_profiler", and the registry for what it leaves out.
class MacConnectedDevices final : public ConnectedDevices {
public:
  /// A report that takes longer than this many seconds is none: on a Mac without Bluetooth the
  /// program has been seen to hang.
  static constexpr double reportLimit = 10;

  /// All outlive this.
  MacConnectedDevices(RunLoop& runLoop, ProcessRunner& processes, LogSink& log)
      : runLoop_(runLoop), processes_(processes), log_(log, "slot") {}

  std::vector<DeviceBattery> connected() const override { return devices_; }
  void refresh() override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override {
    return changes_.add(std::move(handler));
  }

private:
  void finish(const ProcessResult& result, const DeviceBatteries::HIDTable& table);

  RunLoop& runLoop_;
  ProcessRunner& processes_;
  Log log_;
  HandlerList changes_;
  std::vector<DeviceBattery> devices_;
  bool isAsking_ = false;
  TokenPtr report_;
  Lifetime alive_;
};

} // namespace tavrin
