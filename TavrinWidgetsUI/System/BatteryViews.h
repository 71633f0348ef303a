#pragma once

#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"

namespace tavrin {

/// Green, orange at 20 percent, red at 10; always green while charging.
QColor batteryTint(const BatteryReading& reading);

/// "1 h 20 min until full", "2 h 5 min left", "Charging", "On power", "On battery",
/// "No battery".
QString batteryStateText(const BatteryReading& reading);

AnyView batteryTileIcon(const BatteryReading& reading, const BatterySettings& settings,
                        const TileSize& size);
AnyView batteryWideTile(const BatteryReading& reading, const BatterySettings& settings,
                        const TileSize& size);
/// A lying battery filled by its level, a bolt in it while it is on power. Twice as wide as high.
AnyView batteryGlyph(const BatteryReading& reading, const QColor& outline, const QColor& ground);

} // namespace tavrin
