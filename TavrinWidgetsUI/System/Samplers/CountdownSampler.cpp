#include "TavrinWidgetsUI/System/Samplers/CountdownSampler.h"

#include "TavrinCore/Kinds/System/Countdown.h"

namespace tavrin {

std::optional<Date> CountdownSampler::next(const SampleMoment& moment) const {
  constexpr double hour = 3600;
  constexpr double day = 86'400;
  const double left = Countdown::interval(settings_, moment.now);
  if (left <= 0 && !settings_.countsUpAfter)
    return std::nullopt;
  const bool showsDays = std::abs(left) > day;
  if (!showsDays || moment.showsPanel)
    return nextOnGrid(settings_.target, interval(moment), moment.now);
  // What is left is rounded up: 4 hours are shown until a second less than that is left.
  return nextOnGrid(left > 0 ? settings_.target + 1 : settings_.target, hour, moment.now);
}

} // namespace tavrin
