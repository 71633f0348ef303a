#pragma once

#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"

namespace tavrin {

inline constexpr QColor cpuTint = palette::teal;
inline constexpr QColor memoryTint = palette::purple;

/// One gauge per reading that the settings show; with neither, the kind's symbol.
AnyView activityTileIcon(const ActivityReading& reading, const ActivitySettings& settings,
                         const TileSize& size);
AnyView activityWideTile(const ActivityReading& reading, const ActivitySettings& settings,
                         const TileSize& size);

} // namespace tavrin
