#include "TavrinWidgetsUI/Runs/TimerViews.h"

#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Runs/RunViews.h"

namespace tavrin {
namespace {

std::string modeSymbol(TimerRun::Mode mode) {
  return mode == TimerRun::Mode::countdown ? "timer" : "stopwatch";
}

/// Whether it stands still in the middle.
bool isPaused(const TimerRun& run, Date now) {
  return !run.isRunning() && run.hasStarted() && !run.isFinished(now);
}

} // namespace

QString timerModeTitle(TimerRun::Mode mode) {
  return mode == TimerRun::Mode::countdown ? worded("Timer") : worded("Stopwatch");
}

QString timerStateWord(const TimerRun& run, Date now) {
  if (run.isFinished(now))
    return worded("Done");
  if (run.isRunning())
    return worded("Running");
  const bool isFresh = run.mode == TimerRun::Mode::countdown && !run.hasStarted();
  return isFresh ? worded("Remaining") : worded("Paused");
}

QString timerToggleTitle(const TimerRun& run, Date now) {
  return run.isRunning()      ? worded("Pause")
         : isPaused(run, now) ? worded("Resume")
                              : worded("Start");
}

QString timerTimeText(const TimerRun& run, Date now) {
  return QString::fromStdString(TimerRun::format(run.displayedSeconds(now)));
}

AnyView timerTileIcon(const TimerRun& run, Date now, const QColor& tint, const TileSize& size) {
  const QString time = timerTimeText(run, now);
  const bool isFinished = run.isFinished(now);
  const QColor gauge = runTint(tint, run.isRunning() || isFinished);
  TileContent content;
  content.border = TileBorder{run.progress(now), gauge};
  content.figure = time;
  content.widestFigure = widestClockText(time);
  content.mark = isPaused(run, now) ? symbol("pause.fill").colour(palette::caption())
                                    : symbol(modeSymbol(run.mode)).colour(runTint(tint, true));
  content.markRatio = 0.22;
  content.state = isFinished ? TileState::done : TileState::live;
  content.label = timerModeTitle(run.mode);
  content.value = joinedFacts({time, timerStateWord(run, now)});
  return tile(content, size);
}

AnyView timerWideTile(const TimerRun& run, Date now, const QColor& tint, const TileSize& size,
                      const TimerActions& actions) {
  const QString time = timerTimeText(run, now);
  const QString mode = timerModeTitle(run.mode);
  const QString state = timerStateWord(run, now);
  WideTileContent content;
  content.tint = runTint(tint, true);
  content.middle = wideRunText({size.span > 2 ? QStringList{mode + QStringLiteral(" · ") + state}
                                              : QStringList{mode, state}},
                               time, size);
  content.label = mode;
  content.value = joinedFacts({time, state});
  content.actions = {{{"timer.toggle", actions.toggle},
                      run.isRunning() ? "pause.fill" : "play.fill",
                      timerToggleTitle(run, now),
                      true},
                     {{"timer.reset", actions.reset}, "arrow.counterclockwise", worded("Reset")}};
  const bool isFinished = run.isFinished(now);
  return wideRunTile(std::move(content), run.progress(now), run.isRunning() || isFinished,
                     isFinished ? "checkmark" : modeSymbol(run.mode), size);
}

} // namespace tavrin
