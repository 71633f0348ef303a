#include "TavrinCore/Kinds/System/Countdown.h"

#include "TavrinCore/Text/ClockText.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

std::int64_t Countdown::displayedSeconds(const CountdownSettings& settings, Date now) {
  const double left = interval(settings, now);
  if (left > 0)
    return wholeSeconds(std::ceil(left));
  return settings.countsUpAfter ? wholeSeconds(std::floor(-left)) : 0;
}

bool Countdown::showsTimeSince(const CountdownSettings& settings, Date now) {
  return settings.countsUpAfter && interval(settings, now) <= 0;
}

double Countdown::weekShare(const CountdownSettings& settings, Date now) {
  const double left = interval(settings, now);
  return left > 0 ? std::min(1.0, left / week) * 0.88 + 0.12 : 0;
}

std::string Countdown::caption(const CountdownSettings& settings, Date now,
                               const Calendar& calendar) {
  const auto target = calendar.dateAndTime(settings.target);
  return interval(settings, now) > 0 ? translated("left until {date}", {{"date", target}})
                                     : translated("since {date}", {{"date", target}});
}

} // namespace tavrin
