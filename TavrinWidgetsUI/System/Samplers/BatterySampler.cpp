#include "TavrinWidgetsUI/System/Samplers/BatterySampler.h"

#include <utility>

namespace tavrin {

bool BatterySampler::read(const SampleMoment&, Date) {
  const auto reading = readings_.battery();
  return std::exchange(reading_, reading) != reading;
}

void BatterySampler::setWatching(bool isWatching) {
  if (!isWatching) {
    powerWatch_.reset();
    deviceWatch_.reset();
    return;
  }
  if (powerWatch_)
    return;
  powerWatch_ = readings_.powerSources().observe([this] {
    if (onPowerChange)
      onPowerChange();
  });
  deviceWatch_ = connected_.observe([this] { devicesChanged(); });
  refreshDevices();
}

void BatterySampler::devicesChanged() {
  auto devices = connected_.connected();
  if (devices == devices_)
    return;
  devices_ = std::move(devices);
  if (onDevicesChange)
    onDevicesChange();
}

} // namespace tavrin
