#include "TavrinCore/Text/ClockText.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {

std::string clockText(std::int64_t seconds) {
  seconds = std::max<std::int64_t>(seconds, 0);
  if (seconds < 3600)
    return fmt::format("{}:{:02}", seconds / 60, seconds % 60);
  return fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

std::int64_t wholeSeconds(double seconds) {
  if (std::isnan(seconds))
    return 0;
  return static_cast<std::int64_t>(std::clamp(seconds, -9e15, 9e15));
}

std::string durationText(std::int64_t minutes) {
  minutes = std::max<std::int64_t>(minutes, 0);
  if (minutes < 60)
    return translated("{minutes} min", {{"minutes", minutes}});
  if (minutes % 60 == 0)
    return translated("{hours} h", {{"hours", minutes / 60}});
  return translated("{hours} h {minutes} min",
                    {{"hours", minutes / 60}, {"minutes", minutes % 60}});
}

} // namespace tavrin
