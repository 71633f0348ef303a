#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct ClockSettings {
  static constexpr std::string_view kindKey = "clock";

  /// A time zone identifier such as Europe/Berlin; none follows the system.
  std::optional<std::string> timeZoneID;
  bool showsSeconds = false;
  /// None follows the system.
  std::optional<bool> uses24Hour;
  bool isAnalog = false;

  static constexpr auto fields() {
    return std::tuple{optional("timeZoneID", &ClockSettings::timeZoneID)
                          .titled("Time zone")
                          .helped("Whose time is shown.")
                          .as(FieldRole::timeZone)
                          .absentAs("This computer's"),
                      optional("showsSeconds", &ClockSettings::showsSeconds)
                          .titled("Show seconds")
                          .helped("The tile is then drawn every second."),
                      optional("uses24Hour", &ClockSettings::uses24Hour)
                          .titled("24-hour clock")
                          .helped("Whether hours go from 0 to 23.")
                          .absentAs("Automatic"),
                      optional("isAnalog", &ClockSettings::isAnalog)
                          .titled("Analog face")
                          .helped("A dial with hands in place of figures.")};
  }
  bool operator==(const ClockSettings&) const = default;
};

} // namespace tavrin
