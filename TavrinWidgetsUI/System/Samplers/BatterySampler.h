#pragma once

#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinPlatform/ConnectedDevices.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

#include <functional>

namespace tavrin {

/// The computer's battery, and those of the connected devices.
class BatterySampler final : public SamplerOf<BatterySettings> {
public:
  /// Both outlive it.
  BatterySampler(const SystemReadings& readings, ConnectedDevices& devices)
      : readings_(readings), connected_(devices) {}

  const BatteryReading& reading() const { return reading_; }
  const std::vector<DeviceBattery>& devices() const { return devices_; }
  /// Asks the connected devices anew.
  void refreshDevices() { connected_.refresh(); }

  /// Follows plugs, levels and devices, or does not any more.
  void setWatching(bool isWatching);
  /// A power source changed: a sample is due.
  std::function<void()> onPowerChange;
  /// `devices()` differs now.
  std::function<void()> onDevicesChange;

  double interval(const SampleMoment& moment) const override { return moment.paced(30); }
  bool read(const SampleMoment& moment, Date before) override;

private:
  void devicesChanged();

  const SystemReadings& readings_;
  ConnectedDevices& connected_;
  BatteryReading reading_;
  std::vector<DeviceBattery> devices_;
  TokenPtr powerWatch_;
  TokenPtr deviceWatch_;
};

} // namespace tavrin
