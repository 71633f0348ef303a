#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/Water/WaterReading.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Water/WaterTankLayerHost.h"

namespace tavrin {

inline constexpr QColor waterTint{0x0A, 0x84, 0xFF};

/// The tank that `reading` fills: by its level in a tank, by the share of the goal in a glass.
WaterTank waterTankOf(const WaterReading& reading);

/// Water in the room offered, up to the tank's level.
AnyView waterTankView(const WaterTank& tank);
/// A tapered glass in the middle of the room offered; `outline` is its rim and sides.
AnyView waterGlassView(const WaterTank& tank, const QColor& outline);

/// `tank` is what is drawn of `reading` now, which may lag behind while it moves.
AnyView waterTileIcon(const WaterReading& reading, const WaterTank& tank, const TileSize& size);
AnyView waterWideTile(const WaterReading& reading, const WaterTank& tank, const TileSize& size,
                      const std::function<void()>& drink);

/// The colours bars stand in; those of a tile where nothing else is given.
struct WaterBarColours {
  QColor bar = QColor(0x3B, 0x9E, 0xFF);
  QColor today = QColor(0x5B, 0xE2, 0xC0);
  QColor track = QColor(0xFF, 0xFF, 0xFF, 34);
  QColor label = {};
};
/// Seven bars, each a day's total by the goal, in the room offered; with weekday letters below
/// where a calendar is given.
AnyView waterWeekBars(const WaterReading& reading, const WaterBarColours& colours,
                      const Calendar* labels = nullptr);

} // namespace tavrin
