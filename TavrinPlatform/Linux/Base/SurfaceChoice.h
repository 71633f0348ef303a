#pragma once

#include "TavrinPlatform/Linux/Base/DesktopFacts.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// How the windows of a strip are brought to the X server.
enum class StripArrangement : std::uint8_t {
  /// Each tile is a dock window, which the window manager leaves at its place and keeps others off.
  docks,
  /// The tiles are unmanaged, and one empty window, of which the manager makes a bar, keeps the
  /// room.
  bar,
  /// No window manager is asked (override-redirect): the tiles see to their place in the stack
  /// themselves, and no room is kept.
  unmanaged,
  /// Each tile is a surface of a Wayland compositor's layer shell.
  layers,
};

struct SurfaceChoice {
  /// The row of the table, or "wish".
  std::string_view row;
  /// "strip", "tray", "picture": all that are made.
  std::vector<std::string> surfaces;
  StripArrangement arrangement = StripArrangement::docks;
  /// A sentence that says what was found and what follows.
  std::string reason;
  /// Whether the user is to be told: something less than the strip stands in for it.
  bool isMakeshift = false;
};

/// The one place where the surfaces are chosen: the first row of the table that holds on this
/// desktop, and never one in which a window manager would lay the tiles over the screen. `wish` is
/// TAVRIN_SURFACE, and overrides it.
SurfaceChoice chooseSurface(const DesktopFacts& facts, std::string_view wish);

} // namespace tavrin
