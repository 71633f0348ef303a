#include "TavrinWidgetsUI/Runs/PomodoroViews.h"

#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Runs/RunViews.h"

#include <algorithm>

namespace tavrin {
namespace {

QString timeText(const PomodoroRun& run, const PomodoroSettings& settings, Date now) {
  return QString::fromStdString(PomodoroRun::format(run.displayedSeconds(now, settings)));
}

std::string phaseSymbol(PomodoroPhase phase) {
  switch (phase) {
  case PomodoroPhase::focus:
    return "largecircle.fill.circle";
  case PomodoroPhase::shortBreak:
    return "cup.and.saucer.fill";
  case PomodoroPhase::longBreak:
    return "moon.fill";
  }
  return {};
}

QString spoken(const PomodoroRun& run, const QString& time) {
  return run.isRunning()    ? time
         : run.hasStarted() ? worded("{time}, Paused", {{"time", time}})
                            : worded("{time}, Not started", {{"time", time}});
}

} // namespace

QColor PomodoroPalette::tint(PomodoroPhase phase) {
  switch (phase) {
  case PomodoroPhase::focus:
    return {0xF2, 0x60, 0x3C};
  case PomodoroPhase::shortBreak:
    return {0x3F, 0xBF, 0x7F};
  case PomodoroPhase::longBreak:
    return {0x2E, 0x9B, 0xD6};
  }
  return {};
}

QString pomodoroToggleTitle(const PomodoroRun& run) {
  return run.isRunning() ? worded("Pause") : run.hasStarted() ? worded("Resume") : worded("Start");
}

QString pomodoroSessionsText(int count) {
  return wordedPlural("{count} session today", "{count} sessions today", count);
}

PomodoroDots PomodoroDots::of(const PomodoroRun& run, const PomodoroSettings& settings) {
  constexpr int most = 12;
  PomodoroDots dots{std::clamp(run.cycle, 0, settings.cycles()), settings.cycles(),
                    run.phase == PomodoroPhase::focus};
  if (dots.total > most) {
    dots.done = static_cast<int>(std::int64_t(dots.done) * most / dots.total);
    dots.total = most;
  }
  return dots;
}

AnyView PomodoroDots::view(const QColor& tint, double dotSize, double room,
                           const QColor& track) const {
  constexpr double gap = 0.75; // by the circle
  const double side = std::min(dotSize, room / (total + (total - 1) * gap));
  std::vector<AnyView> circles;
  for (int i = 0; i < total; ++i) {
    const bool isCurrent = hasCurrent && i == done;
    const QColor colour = i < done ? tint : isCurrent ? mix(track, tint, 0.5) : track;
    circles.push_back(circle().fill(colour).frame(side, side));
  }
  return hstack(std::move(circles)).spacing(side * gap).accessibility({});
}

AnyView pomodoroTileIcon(const PomodoroRun& run, const PomodoroSettings& settings, Date now,
                         const TileSize& size) {
  const QColor tint = PomodoroPalette::tint(run.phase);
  const double dotSize = size.body() * 0.08;
  const QString time = timeText(run, settings, now);
  TileContent content;
  content.border = TileBorder{run.progress(now, settings), runTint(tint, run.isRunning())};
  content.figure = time;
  content.widestFigure = widestClockText(time);
  // "Long Break" has no room on a small tile; all circles being filled say the same.
  const bool isShort = run.phase == PomodoroPhase::longBreak && size.side < 80;
  content.caption = utf8(title(isShort ? PomodoroPhase::shortBreak : run.phase));
  content.mark = PomodoroDots::of(run, settings)
                     .view(tint, dotSize, size.body() * 0.56, QColor(0x4A, 0x4A, 0x50));
  content.markRatio = 0.08;
  content.isMarkBelow = true;
  content.label = utf8(title(run.phase));
  content.value = spoken(run, time);
  return tile(content, size);
}

AnyView pomodoroWideTile(const PomodoroRun& run, const PomodoroSettings& settings, Date now,
                         const TileSize& size, const PomodoroActions& actions) {
  const QString time = timeText(run, settings, now);
  const QString phase = utf8(title(run.phase));
  QString caption = phase;
  if (run.phase == PomodoroPhase::focus)
    caption += QStringLiteral(" %1/%2").arg(run.displayedCycle(settings)).arg(settings.cycles());
  WideTileContent content;
  content.tint = PomodoroPalette::tint(run.phase);
  const bool isBroken = run.phase == PomodoroPhase::longBreak && size.span == 2;
  content.middle = wideRunText({isBroken ? caption.split(u' ') : QStringList{caption}}, time, size);
  content.label = caption;
  content.value = spoken(run, time);
  content.actions = {{{"pomodoro.toggle", actions.toggle},
                      run.isRunning() ? "pause.fill" : "play.fill",
                      pomodoroToggleTitle(run),
                      true},
                     {{"pomodoro.skip", actions.skip}, "forward.end.fill", worded("Skip")}};
  return wideRunTile(std::move(content), run.progress(now, settings), run.isRunning(),
                     phaseSymbol(run.phase), size);
}

} // namespace tavrin
