#include "TavrinCore/Kinds/System/ClockFormat.h"

namespace tavrin {

ClockFormat::ClockFormat(const ClockSettings& settings, const Calendar& calendar)
    : calendar_(settings.timeZoneID ? calendar.inTimeZone(*settings.timeZoneID) : calendar),
      uses24Hour_(settings.uses24Hour ? *settings.uses24Hour : systemUses24Hour(calendar)),
      showsSeconds_(settings.showsSeconds) {}

std::string ClockFormat::time(Date date) const {
  return calendar_.text(date, uses24Hour_ ? (showsSeconds_ ? "HH:mm:ss" : "HH:mm")
                                          : (showsSeconds_ ? "h:mm:ss" : "h:mm"));
}

std::string ClockFormat::dayCaption(Date date) const {
  return calendar_.text(date, "EEEE");
}

ClockFormat::Hands ClockFormat::hands(Date date) const {
  const auto parts = calendar_.components(date);
  const double second = parts.second / 60.0;
  const double minute = (parts.minute + (showsSeconds_ ? second : 0)) / 60;
  return {(parts.hour % 12 + parts.minute / 60.0) / 12, minute, second};
}

} // namespace tavrin
