#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"

namespace tavrin {

/// A clock's texts and hands, in its own time zone. Keep one for as long as the settings stand: it
/// keeps what formatting needs.
class ClockFormat {
public:
  /// An unknown time zone shows that of `calendar`.
  ClockFormat(const ClockSettings& settings, const Calendar& calendar);

  /// Whether the locale of `calendar` has a 24-hour clock.
  static bool systemUses24Hour(const Calendar& calendar) { return calendar.uses24HourClock(); }

  /// Hours and minutes, with seconds when set; a 12-hour clock carries no AM or PM.
  std::string time(Date date) const;
  /// The full name of the weekday.
  std::string dayCaption(Date date) const;
  bool uses24Hour() const { return uses24Hour_; }

  /// Turns clockwise from twelve, 0 to 1, of an analog face's hands. The second hand jumps.
  struct Hands {
    double hour = 0;
    double minute = 0;
    double second = 0;
  };
  Hands hands(Date date) const;

private:
  Calendar calendar_;
  bool uses24Hour_;
  bool showsSeconds_;
};

} // namespace tavrin
