#pragma once

#include "TavrinCore/Kinds/Runs/StopwatchRun.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

inline constexpr QColor stopwatchTint{0xFF, 0xB3, 0x40};

/// What the buttons of a wide tile do.
struct StopwatchActions {
  std::function<void()> toggle;
  std::function<void()> lap;
  std::function<void()> reset;
};

/// The marks of a dial: `count` around the minute, the quarters strongest.
struct StopwatchTicks {
  int count = 60;
  QColor ink = palette::white;
  bool operator==(const StopwatchTicks&) const = default;

  AnyView view() const;
};

/// A dial in the square offered, whose hand goes round once a minute and is lit while it runs.
struct StopwatchDial {
  /// 0 to 1 of the minute.
  double progress = 0;
  bool isRunning = false;
  /// In the middle of the dial, which the hand then leaves free; empty for none.
  QString time = {};
  StopwatchTicks ticks = {};
  QColor tint = stopwatchTint;
  QColor ground = palette::ground;

  /// For a square of `side` points.
  AnyView view(double side) const;
};

/// "Start" or "Pause".
QString stopwatchToggleTitle(const StopwatchRun& run);

AnyView stopwatchTileIcon(const StopwatchRun& run, Date now, const TileSize& size);
AnyView stopwatchWideTile(const StopwatchRun& run, Date now, const TileSize& size,
                          const StopwatchActions& actions);

} // namespace tavrin
