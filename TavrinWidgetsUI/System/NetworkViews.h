#pragma once

#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"

namespace tavrin {

inline constexpr QColor downTint = palette::blue;
inline constexpr QColor upTint = palette::orange;

/// A rate of three figures at most: "0" "B/s", "1.2" "MB/s", "999" "kB/s".
struct RateText {
  QString number;
  QString unit;
  QString whole() const { return number + " " + unit; }
};
RateText rateText(double bytesPerSecond);

/// What a network tile and its panel show.
struct NetworkTrace {
  NetworkReading now;
  /// Before `now`, oldest first.
  std::vector<NetworkReading> history;
  bool operator==(const NetworkTrace&) const = default;
};

AnyView networkTileIcon(const NetworkTrace& trace, const NetworkSettings& settings,
                        const TileSize& size);
AnyView networkWideTile(const NetworkTrace& trace, const NetworkSettings& settings,
                        const TileSize& size);
/// Both rates over the last minute, on one scale.
AnyView networkChart(const NetworkTrace& trace, const QColor& ground, double lineWidth);

} // namespace tavrin
