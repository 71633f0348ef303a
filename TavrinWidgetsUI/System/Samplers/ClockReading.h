#pragma once

#include "TavrinCore/Kinds/System/ClockFormat.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"

#include <optional>
#include <string>

namespace tavrin {

/// All that a clock shows at one moment.
struct ClockReading {
  bool isAnalog = false;
  bool showsSeconds = false;
  bool uses24Hour = true;
  /// As the settings want it: "15:07", "3:07:09".
  std::string time;
  /// The same in parts: hours and minutes, and the seconds alone.
  std::string hoursAndMinutes;
  std::string seconds;
  /// The full name of the weekday, and its short form.
  std::string weekday;
  std::string shortWeekday;
  /// In the locale's order: "Wednesday, September 9", "September 9, 2026".
  std::string longDay;
  std::string date;
  /// Turns of the hands, 0 to 1.
  double hourHand = 0;
  double minuteHand = 0;
  double secondHand = 0;
  /// 6 to 18 o'clock.
  bool isDaytime = true;
  /// Only where the zone is not the system's.
  struct OtherZone {
    /// "Buenos Aires" of America/Argentina/Buenos_Aires, in the user's language.
    std::string city;
    /// Such as "Tomorrow, 7 h ahead", "Today, 30 min behind", "Today, same time".
    std::string difference;
    bool operator==(const OtherZone&) const = default;
  };
  std::optional<OtherZone> otherZone;

  bool operator==(const ClockReading&) const = default;
};

/// Reads clocks by one set of settings; keeps what formatting needs.
class ClockReader {
public:
  ClockReader(const ClockSettings& settings, const Calendar& calendar);
  ClockReading at(Date date) const;

private:
  ClockReading::OtherZone otherZone(Date date) const;

  ClockSettings settings_;
  Calendar local_;
  Calendar zoned_;
  ClockFormat format_;
  ClockFormat minutes_;
};

} // namespace tavrin
