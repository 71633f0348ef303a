#pragma once

#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include <QRect>
#include <string>

namespace tavrin {

/// The outputs of a connection by their names.
class NamedOutputs {
public:
  explicit NamedOutputs(WaylandConnection& connection);
  struct Output {
    ProxyPtr<wl_output> proxy;
    std::string name;
  };
  const std::vector<std::unique_ptr<Output>>& all() const { return outputs_; }
  /// Null where there is none of this name.
  wl_output* find(std::string_view name) const;

private:
  std::vector<std::unique_ptr<Output>> outputs_;
};

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
  };
  ClearSurface(WaylandConnection& connection, wl_output* output, const Shape& shape);
  ~ClearSurface();

  wl_surface* surface() const { return surface_.get(); }
  /// The number of the layer's object on its connection; 0 without one.
  std::uint32_t layerNumber() const;
  bool isShown() const { return buffer_ != nullptr; }
  /// The compositor has taken it away, for instance with its output.
  bool isClosed() const { return isClosed_; }

private:
  void configured(std::uint32_t width, std::uint32_t height);

  ProxyPtr<wl_shm> memory_;
  ProxyPtr<wp_viewporter> viewporter_;
  ProxyPtr<wl_surface> surface_;
  ProxyPtr<wp_viewport> viewport_;
  ProxyPtr<zwlr_layer_surface_v1> layer_;
  ProxyPtr<wl_buffer> buffer_;
  bool isClosed_ = false;
};

} // namespace tavrin
