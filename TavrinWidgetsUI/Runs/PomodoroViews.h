#pragma once

#include "TavrinCore/Kinds/Runs/PomodoroRun.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

namespace PomodoroPalette {
QColor tint(PomodoroPhase phase);
}

/// What the buttons of a wide tile do.
struct PomodoroActions {
  std::function<void()> toggle;
  std::function<void()> skip;
};

/// "Start", "Pause" or "Resume": what the primary button does now.
QString pomodoroToggleTitle(const PomodoroRun& run);
/// "1 session today".
QString pomodoroSessionsText(int count);

/// The focus phases of a round: `total` circles of which `done` are filled; the one in the making,
/// if any, is half lit. At most 12 circles, which then stand for shares of the round.
struct PomodoroDots {
  int done = 0;
  int total = 4;
  bool hasCurrent = false;

  static PomodoroDots of(const PomodoroRun& run, const PomodoroSettings& settings);
  /// In a row at most `room` points long, each circle at most `dotSize` points.
  AnyView view(const QColor& tint, double dotSize, double room,
               const QColor& track = palette::track) const;
};

AnyView pomodoroTileIcon(const PomodoroRun& run, const PomodoroSettings& settings, Date now,
                         const TileSize& size);
AnyView pomodoroWideTile(const PomodoroRun& run, const PomodoroSettings& settings, Date now,
                         const TileSize& size, const PomodoroActions& actions);

} // namespace tavrin
