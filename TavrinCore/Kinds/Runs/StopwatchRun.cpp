#include "TavrinCore/Kinds/Runs/StopwatchRun.h"

#include "TavrinCore/Kinds/Runs/RunStretch.h"
#include "TavrinCore/Text/ClockText.h"

#include <cmath>
#include <fmt/format.h>

namespace tavrin {

double StopwatchRun::elapsed(Date now) const {
  return elapsedTime(accumulated, startedAt, now);
}

double StopwatchRun::progress(Date now) const {
  return std::fmod(elapsed(now), 60) / 60;
}

void StopwatchRun::start(Date now) {
  if (!isRunning())
    startedAt = now;
}

void StopwatchRun::pause(Date now) {
  accumulated = elapsed(now);
  startedAt.reset();
}

void StopwatchRun::toggle(Date now) {
  if (isRunning())
    pause(now);
  else
    start(now);
}

void StopwatchRun::lap(Date now) {
  if (isRunning())
    laps.push_back(elapsed(now));
}

void StopwatchRun::reset() {
  *this = {};
}

std::string StopwatchRun::text(double seconds, bool showsTenths) {
  // A thousandth of a millisecond makes up for decimals that a double holds a little too low:
  // 65.3 is 65.299999999999997.
  const std::int64_t milliseconds = wholeSeconds(std::floor(std::max(seconds, 0.0) * 1000 + 1e-3));
  const std::int64_t whole = milliseconds / 1000;
  if (whole >= 3600)
    return clockText(whole);
  auto text = fmt::format("{:02}:{:02}", whole / 60, whole % 60);
  if (showsTenths)
    text += fmt::format(".{}", milliseconds / 100 % 10);
  return text;
}

} // namespace tavrin
