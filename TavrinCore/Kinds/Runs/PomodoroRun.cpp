#include "TavrinCore/Kinds/Runs/PomodoroRun.h"

#include "TavrinCore/Kinds/Runs/RunStretch.h"
#include "TavrinCore/Text/ClockText.h"

#include <cmath>

namespace tavrin {
namespace {

constexpr int oneMore(int count) {
  return count < std::numeric_limits<int>::max() ? count + 1 : count;
}

} // namespace

PomodoroRun PomodoroRun::fresh(Date now) {
  PomodoroRun run;
  run.day = now;
  return run;
}

double PomodoroRun::elapsed(Date now) const {
  return elapsedTime(accumulated, startedAt, now);
}

double PomodoroRun::remaining(Date now, const PomodoroSettings& settings) const {
  return std::max(0.0, length(settings) - elapsed(now));
}

bool PomodoroRun::isFinished(Date now, const PomodoroSettings& settings) const {
  return length(settings) <= elapsed(now);
}

std::optional<Date> PomodoroRun::endDate(const PomodoroSettings& settings) const {
  if (!startedAt)
    return std::nullopt;
  return *startedAt + (length(settings) - accumulated);
}

double PomodoroRun::progress(Date now, const PomodoroSettings& settings) const {
  return std::clamp(elapsed(now) / length(settings), 0.0, 1.0);
}

std::int64_t PomodoroRun::displayedSeconds(Date now, const PomodoroSettings& settings) const {
  return wholeSeconds(std::ceil(remaining(now, settings)));
}

PomodoroPhase PomodoroRun::nextPhase(const PomodoroSettings& settings) const {
  if (isBreak(phase))
    return PomodoroPhase::focus;
  return oneMore(cycle) % settings.cycles() == 0 ? PomodoroPhase::longBreak
                                                 : PomodoroPhase::shortBreak;
}

int PomodoroRun::displayedCycle(const PomodoroSettings& settings) const {
  return std::clamp(oneMore(cycle), 1, settings.cycles());
}

void PomodoroRun::start(Date now, const Calendar& calendar) {
  if (isRunning())
    return;
  rollDay(now, calendar);
  startedAt = now;
}

void PomodoroRun::pause(Date now) {
  accumulated = elapsed(now);
  startedAt.reset();
}

void PomodoroRun::reset() {
  startedAt.reset();
  accumulated = 0;
}

void PomodoroRun::resetEverything(Date now) {
  *this = fresh(now);
}

void PomodoroRun::rollDay(Date now, const Calendar& calendar) {
  if (calendar.isSameDay(day, now))
    return;
  sessionsToday = 0;
  day = now;
}

void PomodoroRun::advance(Date now, const PomodoroSettings& settings, bool counting,
                          const Calendar& calendar) {
  rollDay(now, calendar);
  const PomodoroPhase next = nextPhase(settings);
  if (phase == PomodoroPhase::longBreak) {
    cycle = 0;
  } else if (phase == PomodoroPhase::focus && counting) {
    cycle = oneMore(cycle);
    sessionsToday = oneMore(sessionsToday);
  }
  phase = next;
  reset();
  if (isBreak(phase) && settings.startsBreaksAutomatically)
    startedAt = now;
}

PomodoroRun PomodoroRun::caughtUp(Date now, const PomodoroSettings& settings,
                                  const Calendar& calendar) const {
  PomodoroRun run = *this;
  if (const auto end = run.endDate(settings); end && *end <= now) {
    run.advance(*end, settings, true, calendar);
    if (const auto next = run.endDate(settings); next && *next <= now) {
      run.pause(*next);
      // Dates are coarser than lengths: rounding must not leave it a second short of its end.
      run.accumulated = std::max(run.accumulated, run.length(settings));
    }
  }
  run.rollDay(now, calendar);
  return run;
}

std::string PomodoroRun::format(std::int64_t seconds) {
  return clockText(seconds);
}

} // namespace tavrin
