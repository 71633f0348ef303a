#include "TavrinCore/Kinds/Runs/PomodoroRun.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/StopwatchRun.h"
#include "TavrinCore/Kinds/Runs/TimerRun.h"
#include "TavrinCore/Text/ClockText.h"
#include "Tests/Fuzz/Require.h"

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace {

using namespace tavrin;

template <class Run> std::optional<Run> read(const JSONValue& json) {
  try {
    return decode<Run>(json);
  } catch (const CodingError&) {
    return std::nullopt;
  }
}

/// What was stored by anybody is counted, shown, paused and gone on with.
void use(TimerRun run, Date now) {
  run = run.caughtUp(now);
  // One that the clock was set back under, past its own beginning, ends with the first tick.
  require(!run.isRunning() || !run.isFinished(now) || *run.endDate() > now);
  require(!(run.progress(now) > 1));
  clockText(run.displayedSeconds(now));
  run.pause(now);
  run.start(now);
  run.mode = TimerMode::stopwatch;
  clockText(run.displayedSeconds(now));
}

void use(PomodoroRun run, Date now) {
  const PomodoroSettings settings;
  const Calendar calendar;
  run = run.caughtUp(now, settings, calendar);
  clockText(run.displayedSeconds(now, settings));
  run.rollDay(now, calendar);
  run.advance(now, settings, true, calendar);
  require(run.sessionsToday >= std::numeric_limits<int>::min());
  run.displayedCycle(settings);
}

void use(StopwatchRun run, Date now) {
  run.toggle(now);
  run.lap(now);
  for (const double lap : run.laps)
    StopwatchRun::text(lap, true);
  StopwatchRun::text(run.elapsed(now), true);
  StopwatchRun::text(run.elapsed(now), false);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  try {
    const auto json = JSONValue::parse({reinterpret_cast<const char*>(bytes), size});
    for (const Date now : {Date{0}, Date{800'000'000}, Date{-1e12}}) {
      if (const auto run = read<TimerRun>(json))
        use(*run, now);
      if (const auto run = read<PomodoroRun>(json))
        use(*run, now);
      if (const auto run = read<StopwatchRun>(json))
        use(*run, now);
    }
  } catch (const JSONError&) {
  }
  return 0;
}
