#pragma once

#include "TavrinCore/Kinds/Runs/TimerRun.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

/// What the buttons of a wide tile do.
struct TimerActions {
  std::function<void()> toggle;
  std::function<void()> reset;
};

/// "Timer" or "Stopwatch".
QString timerModeTitle(TimerRun::Mode mode);
/// "Running"; "Done" for a countdown that ran out; "Remaining" for one that has not begun; else
/// "Paused".
QString timerStateWord(const TimerRun& run, Date now);
/// "Pause", "Resume" or "Start": what the primary button does now.
QString timerToggleTitle(const TimerRun& run, Date now);
QString timerTimeText(const TimerRun& run, Date now);

AnyView timerTileIcon(const TimerRun& run, Date now, const QColor& tint, const TileSize& size);
AnyView timerWideTile(const TimerRun& run, Date now, const QColor& tint, const TileSize& size,
                      const TimerActions& actions);

} // namespace tavrin
