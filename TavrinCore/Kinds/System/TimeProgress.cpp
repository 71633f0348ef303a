#include "TavrinCore/Kinds/System/TimeProgress.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

double TimeProgress::fraction(Scope scope, Date date, const Calendar& calendar) {
  static constexpr std::array units = {CalendarUnit::day, CalendarUnit::week, CalendarUnit::month,
                                       CalendarUnit::year};
  const auto interval = calendar.dateInterval(units[static_cast<std::size_t>(scope)], date);
  if (!interval || interval->duration() <= 0)
    return 0;
  return std::clamp(date.since(interval->start) / interval->duration(), 0.0, 1.0);
}

int TimeProgress::percentLeft(Scope scope, Date date, const Calendar& calendar) {
  return static_cast<int>(std::floor((1 - fraction(scope, date, calendar)) * 100));
}

} // namespace tavrin
