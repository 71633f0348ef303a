#pragma once

#include "TavrinCore/Kinds/System/TimeProgress.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <array>
#include <string>

namespace tavrin {

/// One period as it stands.
struct TimeProgressReading {
  TimeProgressScope scope = TimeProgressScope::day;
  double fraction = 0;
  int percentLeft = 100;
  /// What is left in words: "9 h 12 min", "24 days".
  std::string left;

  static TimeProgressReading at(Date now, TimeProgressScope scope, const Calendar& calendar);
  bool operator==(const TimeProgressReading&) const = default;
};

inline constexpr std::array<TimeProgressScope, 4> allTimeProgressScopes = {
    TimeProgressScope::day, TimeProgressScope::week, TimeProgressScope::month,
    TimeProgressScope::year};

/// Each period has its own tint, so that two of them are told apart without words.
QColor timeProgressTint(TimeProgressScope scope);

/// A ring filled by what has passed, around the percentage left.
AnyView timeProgressTileIcon(const TimeProgressReading& reading, const TileSize& size);
AnyView timeProgressWideTile(const TimeProgressReading& reading, const TileSize& size);
/// The panel's ring, `side` points across.
AnyView timeProgressRing(const TimeProgressReading& reading, double side, const QColor& ground,
                         const QColor& ink, const QColor& quiet);

} // namespace tavrin
