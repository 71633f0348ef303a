#include "TavrinCore/Kinds/System/DeviceBatteries.h"

#include "TavrinCore/Text/Text.h"

#include <charconv>

namespace tavrin {
namespace {

using Device = DeviceBatteries::Device;

std::optional<int> property(const Device& device, std::string_view name) {
  const auto found = device.properties.find(name);
  return found == device.properties.end() ? std::nullopt : DeviceBatteries::percent(found->second);
}

std::string text(const JSONValue::Object& properties, std::string_view name,
                 const std::string& fallback) {
  const auto found = properties.find(name);
  const auto* string = found == properties.end() ? nullptr : found->second.string();
  return string == nullptr ? fallback : *string;
}

void appendDevices(std::vector<Device>& devices, const JSONValue& list) {
  if (list.array() == nullptr)
    return;
  for (const auto& entry : *list.array()) {
    if (entry.object() == nullptr)
      continue;
    for (const auto& [name, properties] : *entry.object())
      if (const auto* object = properties.object())
        devices.push_back({name, text(*object, "device_address", name),
                           text(*object, "device_minorType", {}), *object});
  }
}

/// What a device without separate earbuds tells.
std::optional<int> mainPercent(const Device& device, const DeviceBatteries::HIDTable& table) {
  for (const std::string_view name : {"device_batteryLevelMain", "device_batteryLevel"})
    if (const auto percent = property(device, name))
      return percent;
  const auto found = table.find(DeviceBatteries::key(device.address));
  return found == table.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

std::string DeviceBatteries::key(std::string_view address) {
  std::string digits;
  for (char c : address) {
    if (c >= 'A' && c <= 'F')
      c = static_cast<char>(c - 'A' + 'a');
    if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'))
      digits.push_back(c);
  }
  return digits;
}

DeviceBatteries::HIDTable DeviceBatteries::table(const std::vector<HIDService>& services) {
  HIDTable table;
  for (const auto& service : services)
    if (service.batteryPercent && service.deviceAddress)
      table[key(*service.deviceAddress)] = *service.batteryPercent;
  return table;
}

std::vector<Device> DeviceBatteries::devices(std::string_view report) {
  std::vector<Device> devices;
  try {
    const JSONValue json = JSONValue::parse(report);
    const auto* entries = json.member("SPBluetoothDataType");
    if (entries == nullptr || entries->array() == nullptr)
      return devices;
    for (const auto& entry : *entries->array())
      if (const auto* connected = entry.member("device_connected"))
        appendDevices(devices, *connected);
  } catch (const JSONError&) {
    return {};
  }
  return devices;
}

DeviceBattery::Kind DeviceBatteries::kind(std::string_view minorType) {
  using Kind = DeviceBattery::Kind;
  if (minorType == "Headphones" || minorType == "Headset" || minorType == "Headphone")
    return Kind::headphones;
  if (minorType == "Keyboard")
    return Kind::keyboard;
  if (minorType == "Mouse")
    return Kind::mouse;
  if (minorType == "Trackpad")
    return Kind::trackpad;
  return Kind::other;
}

std::optional<int> DeviceBatteries::percent(const JSONValue& property) {
  if (const auto whole = property.integerValue())
    return *whole >= std::numeric_limits<int>::min() && *whole <= std::numeric_limits<int>::max()
               ? std::optional(static_cast<int>(*whole))
               : std::nullopt;
  const auto* string = property.string();
  if (string == nullptr)
    return std::nullopt;
  std::string_view text = trimmed(*string, "% ");
  if (text.starts_with('+') && text.size() > 1 && text[1] != '-')
    text.remove_prefix(1);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value)
                                                                  : std::nullopt;
}

std::vector<DeviceBattery> DeviceBatteries::batteries(const std::vector<Device>& devices,
                                                      const HIDTable& table) {
  std::vector<DeviceBattery> batteries;
  for (const auto& device : devices) {
    const auto kindOfDevice = kind(device.minorType);
    const auto left = property(device, "device_batteryLevelLeft");
    const auto right = property(device, "device_batteryLevelRight");
    if (left)
      batteries.push_back({device.address + "/L", device.name + " (left)", kindOfDevice, *left});
    if (right)
      batteries.push_back({device.address + "/R", device.name + " (right)", kindOfDevice, *right});
    if (!left && !right)
      if (const auto percent = mainPercent(device, table))
        batteries.push_back({device.address, device.name, kindOfDevice, *percent});
    if (const auto inCase = property(device, "device_batteryLevelCase"))
      batteries.push_back({device.address + "/case", device.name + " case",
                           DeviceBattery::Kind::headphonesCase, *inCase});
  }
  return batteries;
}

} // namespace tavrin
