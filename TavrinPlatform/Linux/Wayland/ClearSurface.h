#pragma once

#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include <QRect>

namespace tavrin {

/// A surface of the layer shell with nothing to be seen on it.
class ClearSurface {
public:
  struct Shape {
    std::uint32_t layer;
    /// Bits of the edges that it lies along.
    std::uint32_t anchor;
    /// 0 lets the compositor choose, for a length along an edge.
    std::uint32_t width;
    std::uint32_t height;
    std::int32_t exclusiveZone;
    /// Whether presses are this surface's, but for those on `spared`; else they go to what lies
    /// under it.
    bool hearsPresses;
    std::vector<QRect> spared;
    /// Has the keyboard to itself.
    bool takesKeys = false;
  };
  ClearSurface(WaylandConnection& connection, wl_output* output, const Shape& shape);
  ~ClearSurface();

  /// Lets the pointer and what is dragged through to what lies under it, or hears presses again.
  void setOpen(bool isOpen);
  wl_surface* surface() const { return surface_.get(); }
  /// The number of the layer's object on its connection; 0 without one.
  std::uint32_t layerNumber() const;
  bool isShown() const { return buffer_ != nullptr; }
  /// In points, once it is shown.
  QSize size() const { return size_; }
  /// The compositor has taken it away, for instance with its output.
  bool isClosed() const { return isClosed_; }

private:
  void configured(std::uint32_t width, std::uint32_t height);
  void setInput(bool hearsPresses);

  const std::vector<QRect> spared_;
  ProxyPtr<wl_compositor> compositor_;
  ProxyPtr<wl_shm> memory_;
  ProxyPtr<wp_viewporter> viewporter_;
  ProxyPtr<wl_surface> surface_;
  ProxyPtr<wp_viewport> viewport_;
  ProxyPtr<zwlr_layer_surface_v1> layer_;
  ProxyPtr<wl_buffer> buffer_;
  QSize size_;
  bool isClosed_ = false;
};

} // namespace tavrin
