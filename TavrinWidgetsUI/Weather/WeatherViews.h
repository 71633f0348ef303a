#pragma once

#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor weatherTint{0x3A, 0x9B, 0xF0};

/// What the weather views show at one moment.
struct WeatherSnapshot {
  WeatherSettings settings;
  std::optional<WeatherReading> reading;
  bool isLoading = false;
  bool failed = false;
  /// The reading is too old to be the weather of now.
  bool isStale = false;
  Date now;

  bool hasPlace() const { return settings.latitude && settings.longitude; }
};

/// The colour of a condition's symbol on a ground.
QColor weatherInk(WeatherCondition condition, bool isDay, const QColor& ground);

AnyView weatherTileIcon(const WeatherSnapshot& weather, const TileSize& size);
AnyView weatherWideTile(const WeatherSnapshot& weather, const TileSize& size);

} // namespace tavrin
