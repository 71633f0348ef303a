#pragma once

#include "TavrinCore/Base/Geometry.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

struct ScreenFrames {
  Rect frame;
  /// The frame less what panels and bars reserve.
  Rect visibleFrame;
};

/// "com.apple.dock" as far as tiles need it; the defaults stand in for missing entries.
struct DockPreferences {
  static constexpr double leastTileSize = 16;
  static constexpr double largestTileSize = 256;

  std::string orientation = "bottom";
  double tileSize = 48;
  bool magnification = false;
  /// The Dock is away until the pointer comes to its edge.
  bool autohide = false;

  /// Takes an entry "tilesize" as the Dock does: within its bounds, and none that is no number.
  void setTileSize(double entry) {
    if (entry == entry)
      tileSize = std::clamp(entry, leastTileSize, largestTileSize);
  }
};

/// Where the Dock, the pointer and the screens are, asked anew at each call.
class DockGeometry {
public:
  virtual ~DockGeometry() = default;
  /// The Dock's frame; no value where it is unknown.
  virtual std::optional<Rect> dockFrame() const = 0;
  /// The centre of this process's own tile, where the platform knows it.
  virtual std::optional<Point> ownTileCenter() const { return std::nullopt; }
  virtual DockPreferences preferences() const = 0;
  virtual Point pointer() const = 0;
  /// All screens, the one with the menu bar first; may be empty.
  virtual std::vector<ScreenFrames> screens() const = 0;
  /// The screen with the keyboard focus.
  virtual std::optional<ScreenFrames> mainScreen() const = 0;
};

} // namespace tavrin
