#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct ClockSettings {
  /// A time zone identifier such as Europe/Berlin; none follows the system.
  std::optional<std::string> timeZoneID;
  bool showsSeconds = false;
  /// None follows the system.
  std::optional<bool> uses24Hour;
  bool isAnalog = false;

  static constexpr auto fields() {
    return std::tuple{optional("timeZoneID", &ClockSettings::timeZoneID).titled("Time zone"),
                      optional("showsSeconds", &ClockSettings::showsSeconds).titled("Show seconds"),
                      optional("uses24Hour", &ClockSettings::uses24Hour).titled("24-hour clock"),
                      optional("isAnalog", &ClockSettings::isAnalog).titled("Analog face")};
  }
  bool operator==(const ClockSettings&) const = default;
};

} // namespace tavrin
