#pragma once

#include "TavrinPlatform/DockGeometry.h"

#include <CoreGraphics/CoreGraphics.h>
#include <functional>
#include <memory>

namespace tavrin {

/// Fills the rectangle with the Dock's frame; the origin is the top left of the first screen, y
/// runs down.
using DockFrameFunction = void (*)(CGRect* frame);

/// "CoreDockGetRect" of HIServices, which no header declares; null where the system has none.
/// Looked for at each call.
DockFrameFunction findDockFrameFunction();

/// NSScreen, NSEvent, the Dock's preferences and the Dock's own frame. NSScreen's coordinates are
/// those of Geometry.h.
std::unique_ptr<DockGeometry>
makeMacDockGeometry(std::function<DockFrameFunction()> find = findDockFrameFunction);

} // namespace tavrin
