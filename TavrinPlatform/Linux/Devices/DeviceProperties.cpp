#include "TavrinPlatform/Linux/Devices/DeviceProperties.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

using BatteryKind = DeviceBattery::Kind;

/// UPower's types of devices; below `firstDeviceType` are unknown, mains, battery and UPS.
constexpr double batteryType = 2;
constexpr double firstDeviceType = 4;
/// Of the property State.
constexpr double charging = 1;

/// Whole percent of 0...`most`.
std::optional<int> percent(const BusProperties& properties, double most) {
  const auto value = properties.number("Percentage");
  if (!value || !std::isfinite(*value))
    return std::nullopt;
  return static_cast<int>(std::lround(std::clamp(*value, 0.0, most)));
}

std::optional<int> minutes(const BusProperties& device, const char* seconds) {
  const auto value = device.number(seconds);
  if (!value || !(*value >= 0) || *value > 1e9)
    return std::nullopt;
  return static_cast<int>(*value / 60);
}

BatteryKind batteryKindOfType(double type) {
  if (type == 5)
    return BatteryKind::mouse;
  if (type == 6)
    return BatteryKind::keyboard;
  if (type == 14)
    return BatteryKind::trackpad;
  return type == 17 || type == 19 ? BatteryKind::headphones : BatteryKind::other;
}

/// BlueZ names icons of the freedesktop naming scheme.
BatteryKind batteryKindOfIcon(const std::string& icon) {
  if (icon == "audio-headset" || icon == "audio-headphones")
    return BatteryKind::headphones;
  if (icon == "input-keyboard")
    return BatteryKind::keyboard;
  if (icon == "input-mouse")
    return BatteryKind::mouse;
  return icon == "input-tablet" || icon == "input-touchpad" ? BatteryKind::trackpad
                                                            : BatteryKind::other;
}

std::string textOr(const BusProperties& properties, const char* name, std::string otherwise) {
  std::string text = properties.text(name);
  return text.empty() ? std::move(otherwise) : text;
}

} // namespace

bool upower::isOwnBattery(const BusProperties& device) {
  return device.number("Type") == batteryType && device.flag("IsPresent");
}

PowerSource upower::powerSource(const BusProperties& device, bool isOnACPower) {
  PowerSource source;
  source.currentCapacity = percent(device, 1000);
  if (source.currentCapacity)
    source.maximumCapacity = 100;
  source.isOnACPower = isOnACPower;
  source.isCharging = device.number("State") == charging;
  source.timeToFullCharge = minutes(device, "TimeToFull");
  source.timeToEmpty = minutes(device, "TimeToEmpty");
  return source;
}

std::optional<DeviceBattery> upower::deviceBattery(const std::string& path,
                                                   const BusProperties& device) {
  const double type = device.number("Type").value_or(0);
  const auto level = percent(device, 100);
  if (!(type >= firstDeviceType) || !level || !device.flag("IsPresent"))
    return std::nullopt;
  return DeviceBattery{textOr(device, "Serial", path),
                       textOr(device, "Model", device.text("NativePath")), batteryKindOfType(type),
                       *level};
}

std::optional<DeviceBattery> bluez::deviceBattery(const BusProperties& device,
                                                  const BusProperties& battery) {
  const auto level = percent(battery, 100);
  if (!level || !device.flag("Connected"))
    return std::nullopt;
  return DeviceBattery{device.text("Address"), textOr(device, "Alias", device.text("Name")),
                       batteryKindOfIcon(device.text("Icon")), *level};
}

} // namespace tavrin
