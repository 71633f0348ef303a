#pragma once

#include "TavrinCore/Kinds/System/Countdown.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <string>
#include <vector>

namespace tavrin {

inline constexpr QColor countdownGround{0x1E, 0x10, 0x35};
inline constexpr QColor countdownAccent{0x4C, 0x1D, 0x95};
/// The accent, light enough to be seen on the ground.
QColor countdownTint();

/// Ways to say `seconds`, the most exact first: "3d 4h", "3d", and "10y" from a
/// thousand days on; below a day "4:05:09" alone.
std::vector<std::string> countdownForms(std::int64_t seconds);

/// The time left or gone by, above the widget's name, in a border that empties over the last week.
AnyView countdownTileIcon(const std::string& name, const CountdownSettings& settings, Date now,
                          const TileSize& size);
AnyView countdownWideTile(const std::string& name, const CountdownSettings& settings, Date now,
                          const TileSize& size);

/// The panel's dial: days large, hours, minutes and seconds below them, in the week's ring.
/// Takes the largest circle offered.
AnyView countdownDial(const CountdownSettings& settings, Date now, double side);

} // namespace tavrin
