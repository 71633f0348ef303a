#pragma once

#include "TavrinCore/Base/JSONValue.h"
#include "TavrinCore/Kinds/System/DeviceBattery.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// How the system's Bluetooth report and its table of input devices become device batteries.
struct DeviceBatteries {
  /// A connected device of the report.
  struct Device {
    std::string name;
    std::string address;
    std::string minorType;
    JSONValue::Object properties;
  };
  /// An input device's service, as far as it tells.
  struct HIDService {
    std::optional<int> batteryPercent;
    std::optional<std::string> deviceAddress;
  };
  /// Percent by `key` of the address.
  using HIDTable = std::map<std::string, int, std::less<>>;

  /// The address's hexadecimal digits in lower case, so that AA:BB-cc and aabbcc meet.
  static std::string key(std::string_view address);
  static HIDTable table(const std::vector<HIDService>& services);
  /// The connected devices of a report in JSON; none where it is malformed.
  static std::vector<Device> devices(std::string_view report);
  static DeviceBattery::Kind kind(std::string_view minorType);
  /// A whole number, or a text such as "85%".
  static std::optional<int> percent(const JSONValue& property);
  static std::vector<DeviceBattery> batteries(const std::vector<Device>& devices,
                                              const HIDTable& table);
};

} // namespace tavrin
