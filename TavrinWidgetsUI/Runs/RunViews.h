#pragma once

#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <QStringList>

namespace tavrin {

/// What the tiles of the runs share.

/// The widest form of a clock text: minutes do not move it when they lose a digit.
QString widestClockText(const QString& text);

/// The tint of a run's gauge on a tile's ground: full while it runs, dimmed while it does not.
QColor runTint(const QColor& tint, bool isRunning, const QColor& ground = palette::ground);

/// What a wide tile says: the first of `captions` that fits, each a line or two of whole words,
/// above `time`.
AnyView wideRunText(const std::vector<QStringList>& captions, const QString& time,
                    const TileSize& size);

/// A wide tile whose gauge is a ring with `symbol` in it where there is room, else its border.
AnyView wideRunTile(WideTileContent content, double progress, bool isRunning,
                    const std::string& symbol, const TileSize& size);

/// A panel's large gauge: a ring of `side` points around `time`, between two smaller views.
struct PanelGauge {
  double side = 176;
  double progress = 0;
  QColor tint;
  QColor track;
  QColor ink;
  QString time;
  AnyView above;
  AnyView below;

  AnyView view() const;
};

} // namespace tavrin
