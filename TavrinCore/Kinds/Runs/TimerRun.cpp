#include "TavrinCore/Kinds/Runs/TimerRun.h"

#include "TavrinCore/Kinds/Runs/RunStretch.h"
#include "TavrinCore/Text/ClockText.h"

#include <cmath>

namespace tavrin {

double TimerRun::elapsed(Date now) const {
  return elapsedTime(accumulated, startedAt, now);
}

double TimerRun::remaining(Date now) const {
  return std::max(0.0, duration - elapsed(now));
}

bool TimerRun::isFinished(Date now) const {
  return mode == Mode::countdown && duration <= elapsed(now);
}

std::optional<Date> TimerRun::endDate() const {
  if (mode != Mode::countdown || !startedAt)
    return std::nullopt;
  return *startedAt + (duration - accumulated);
}

double TimerRun::progress(Date now) const {
  if (mode == Mode::stopwatch)
    return std::fmod(elapsed(now), 60) / 60;
  return duration > 0 ? std::min(elapsed(now) / duration, 1.0) : 1;
}

std::int64_t TimerRun::displayedSeconds(Date now) const {
  return wholeSeconds(mode == Mode::countdown ? std::ceil(remaining(now))
                                              : std::floor(elapsed(now)));
}

void TimerRun::start(Date now) {
  if (isRunning())
    return;
  if (isFinished(now))
    accumulated = 0;
  startedAt = now;
}

void TimerRun::pause(Date now) {
  accumulated = elapsed(now);
  startedAt.reset();
}

void TimerRun::reset() {
  startedAt.reset();
  accumulated = 0;
}

void TimerRun::startCountdown(double seconds, Date now) {
  *this = {Mode::countdown, seconds, now, 0};
}

TimerRun TimerRun::caughtUp(Date now) const {
  TimerRun run = *this;
  if (const auto end = run.endDate(); end && *end <= now) {
    run.pause(*end);
    // Dates are coarser than lengths: rounding must not leave it a second short of its end.
    run.accumulated = std::max(run.accumulated, run.duration);
  }
  return run;
}

std::string TimerRun::format(std::int64_t seconds) {
  return clockText(seconds);
}

} // namespace tavrin
