#pragma once

#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include <QSize>
#include <array>

class QImage;

namespace tavrin {

/// A picture over another surface, whose pixels are the output's own although a point has no whole
/// number of them. Presses go to the surface below.
class PixelSurface {
public:
  /// Whether the compositor has what this takes.
  static bool isPossible(const WaylandRegistry& registry);
  /// To be destroyed before `parent`.
  PixelSurface(const WaylandRegistry& registry, wl_surface* parent);

  /// Drawn out to `points` of the parent.
  void show(const QImage& picture, QSize points);

private:
  ProxyPtr<wl_compositor> compositor_;
  ProxyPtr<wl_subcompositor> subcompositor_;
  ProxyPtr<wl_shm> memory_;
  ProxyPtr<wp_viewporter> viewporter_;
  // In the order that the protocols want them destroyed in, from the last.
  ProxyPtr<wl_surface> surface_;
  ProxyPtr<wl_subsurface> role_;
  ProxyPtr<wp_viewport> viewport_;
  /// The compositor may still read the one before.
  std::array<ProxyPtr<wl_buffer>, 2> buffers_;
};

} // namespace tavrin
