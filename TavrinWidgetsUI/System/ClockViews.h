#pragma once

#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/System/Samplers/ClockReading.h"

namespace tavrin {

/// A dial with hour and minute hands, and a second hand where the clock shows seconds. Takes the
/// largest circle offered. Light by day, dark by night, as it is at the clock's place.
AnyView analogClockFace(const ClockReading& clock);

/// Digits with the weekday under them, or the face.
AnyView clockTileIcon(const ClockReading& clock, const TileSize& size);
/// Time, weekday and date; the city where the clock has a zone of its own.
AnyView clockWideTile(const ClockReading& clock, const TileSize& size);

/// The colour of second hands, seconds and the clock's panel.
inline constexpr QColor clockTint = palette::orange;

} // namespace tavrin
