#pragma once

#include "TavrinCore/Kinds/System/DeviceBattery.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/PowerSources.h"

/// What the properties of UPower's and BlueZ's objects say. Nonsense is bounded or gives no value,
/// never an exception.
namespace tavrin {

namespace upower {

/// A battery that supplies the computer itself, and is there.
bool isOwnBattery(const BusProperties& device);
PowerSource powerSource(const BusProperties& device, bool isOnACPower);
/// The battery of another device, such as a mouse; none for the computer's own and for those that
/// are not there.
std::optional<DeviceBattery> deviceBattery(const std::string& path, const BusProperties& device);

} // namespace upower

namespace bluez {

/// None where it is not connected or tells no level.
std::optional<DeviceBattery> deviceBattery(const BusProperties& device,
                                           const BusProperties& battery);

} // namespace bluez
} // namespace tavrin
