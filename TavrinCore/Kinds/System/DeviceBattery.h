#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// One battery of a connected device. Earbuds have up to three.
struct DeviceBattery {
  enum class Kind { headphones, headphonesCase, keyboard, mouse, trackpad, other };

  std::string id;
  std::string name;
  Kind kind = Kind::other;
  int percent = 0;
  bool operator==(const DeviceBattery&) const = default;
};

template <> struct EnumNames<DeviceBattery::Kind> {
  static constexpr auto names = std::to_array<std::pair<DeviceBattery::Kind, std::string_view>>(
      {{DeviceBattery::Kind::headphones, "headphones"},
       {DeviceBattery::Kind::headphonesCase, "headphonesCase"},
       {DeviceBattery::Kind::keyboard, "keyboard"},
       {DeviceBattery::Kind::mouse, "mouse"},
       {DeviceBattery::Kind::trackpad, "trackpad"},
       {DeviceBattery::Kind::other, "other"}});
};

/// The symbol drawn beside the device.
constexpr std::string_view symbolName(DeviceBattery::Kind kind) {
  switch (kind) {
  case DeviceBattery::Kind::headphones:
    return "headphones";
  case DeviceBattery::Kind::headphonesCase:
    return "airpodspro.chargingcase.wireless.fill";
  case DeviceBattery::Kind::keyboard:
    return "keyboard";
  case DeviceBattery::Kind::mouse:
    return "computermouse";
  case DeviceBattery::Kind::trackpad:
    return "rectangle.and.hand.point.up.left";
  case DeviceBattery::Kind::other:
    break;
  }
  return "dot.radiowaves.up.forward";
}

} // namespace tavrin
