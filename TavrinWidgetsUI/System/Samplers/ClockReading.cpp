#include "TavrinWidgetsUI/System/Samplers/ClockReading.h"
#include "TavrinCore/Base/TimeZone.h"
#include "TavrinCore/Text/Texts.h"

#include "TavrinCore/Kinds/System/ClockSettings.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

ClockSettings withoutSeconds(ClockSettings settings) {
  settings.showsSeconds = false;
  return settings;
}

/// "7 h", "30 min", "5 h 45 min"
std::string hoursAndMinutes(int minutes) {
  const int hours = minutes / 60;
  const int rest = minutes % 60;
  if (hours == 0)
    return translated("{minutes} min", {{"minutes", rest}});
  return rest == 0 ? translated("{hours} h", {{"hours", hours}})
                   : translated("{hours} h {minutes} min", {{"hours", hours}, {"minutes", rest}});
}

} // namespace

ClockReader::ClockReader(const ClockSettings& settings, const Calendar& calendar)
    : settings_(settings), local_(calendar),
      zoned_(settings.timeZoneID ? calendar.inTimeZone(*settings.timeZoneID) : calendar),
      format_(settings, calendar), minutes_(withoutSeconds(settings), calendar) {}

ClockReading ClockReader::at(Date date) const {
  const auto hands = format_.hands(date);
  const auto parts = zoned_.components(date);
  ClockReading reading;
  reading.isAnalog = settings_.isAnalog;
  reading.showsSeconds = settings_.showsSeconds;
  reading.uses24Hour = format_.uses24Hour();
  reading.time = format_.time(date);
  reading.hoursAndMinutes = minutes_.time(date);
  reading.weekday = format_.dayCaption(date);
  reading.shortWeekday = zoned_.text(date, "EEE");
  reading.longDay = zoned_.localText(date, "EEEEMMMMd");
  reading.date = zoned_.localText(date, "yMMMMd");
  reading.hourHand = hands.hour;
  reading.minuteHand = hands.minute;
  if (settings_.showsSeconds) {
    reading.seconds = fmt::format("{:02}", parts.second);
    reading.secondHand = hands.second;
  } else if (settings_.isAnalog) {
    // The minute hand glides in quarters of a minute.
    reading.minuteHand += std::floor(parts.second / 15.0) / 240;
  }
  reading.isDaytime = parts.hour >= 6 && parts.hour < 18;
  if (zoned_.timeZoneID() != local_.timeZoneID())
    reading.otherZone = otherZone(date);
  return reading;
}

ClockReading::OtherZone ClockReader::otherZone(Date date) const {
  // Both wall clocks read as if they were of one zone.
  const Calendar common("UTC", local_.localeID());
  const Date there = common.date(zoned_.components(date));
  const Date here = common.date(local_.components(date));
  const int minutes = static_cast<int>(std::lround(there.since(here) / 60));
  const auto day = translation(common.isSameDay(there, here) ? marked("Today")
                               : there > here                ? marked("Tomorrow")
                                                             : marked("Yesterday"));
  if (minutes == 0)
    return {localCityOf(zoned_.timeZoneID()), translated("Today, same time")};
  const auto difference = hoursAndMinutes(std::abs(minutes));
  return {localCityOf(zoned_.timeZoneID()),
          minutes > 0 ? translated("{day}, {time} ahead", {{"day", day}, {"time", difference}})
                      : translated("{day}, {time} behind", {{"day", day}, {"time", difference}})};
}

} // namespace tavrin
