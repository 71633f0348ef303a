#include "TavrinPlatform/Linux/Wayland/ClearSurface.h"

#include "TavrinPlatform/Linux/Wayland/SharedBuffer.h"

#include <QImage>
#include <algorithm>

namespace tavrin {

ClearSurface::ClearSurface(WaylandConnection& connection, wl_output* output, const Shape& shape)
    : spared_(shape.spared) {
  const auto& registry = connection.registry();
  compositor_.reset(registry.bind<wl_compositor>(wl_compositor_interface, 4));
  const ProxyPtr<zwlr_layer_shell_v1> shell(
      registry.bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, 3));
  memory_.reset(registry.bind<wl_shm>(wl_shm_interface, 1));
  viewporter_.reset(registry.bind<wp_viewporter>(wp_viewporter_interface, 1));
  if (!compositor_ || !shell || !memory_) {
    isClosed_ = true;
    return;
  }
  surface_.reset(wl_compositor_create_surface(compositor_.get()));
  if (viewporter_)
    viewport_.reset(wp_viewporter_get_viewport(viewporter_.get(), surface_.get()));
  layer_.reset(zwlr_layer_shell_v1_get_layer_surface(shell.get(), surface_.get(), output,
                                                     shape.layer, "tavrin-clear"));
  static const zwlr_layer_surface_v1_listener listener{
      [](void* self, zwlr_layer_surface_v1* sender, std::uint32_t serial, std::uint32_t width,
         std::uint32_t height) {
        zwlr_layer_surface_v1_ack_configure(sender, serial);
        static_cast<ClearSurface*>(self)->configured(width, height);
      },
      [](void* self, zwlr_layer_surface_v1*) {
        static_cast<ClearSurface*>(self)->isClosed_ = true;
      }};
  zwlr_layer_surface_v1_add_listener(layer_.get(), &listener, this);
  zwlr_layer_surface_v1_set_size(layer_.get(), shape.width, shape.height);
  zwlr_layer_surface_v1_set_anchor(layer_.get(), shape.anchor);
  zwlr_layer_surface_v1_set_exclusive_zone(layer_.get(), shape.exclusiveZone);
  if (shape.takesKeys)
    zwlr_layer_surface_v1_set_keyboard_interactivity(layer_.get(), 1);
  setInput(shape.hearsPresses);
}

void ClearSurface::setInput(bool hearsPresses) {
  const ProxyPtr<wl_region> region(wl_compositor_create_region(compositor_.get()));
  constexpr int far = 1 << 20;
  if (hearsPresses)
    wl_region_add(region.get(), 0, 0, far, far);
  for (const QRect& part : spared_)
    wl_region_subtract(region.get(), part.x(), part.y(), part.width(), part.height());
  wl_surface_set_input_region(surface_.get(), region.get());
  wl_surface_commit(surface_.get());
}

void ClearSurface::setOpen(bool isOpen) {
  if (!isClosed_)
    setInput(!isOpen);
}

ClearSurface::~ClearSurface() {
  // In this order, by the protocol.
  viewport_.reset();
  layer_.reset();
}

std::uint32_t ClearSurface::layerNumber() const {
  return layer_ ? wl_proxy_get_id(reinterpret_cast<wl_proxy*>(layer_.get())) : 0;
}

/// One clear pixel, drawn out where the compositor can do that.
void ClearSurface::configured(std::uint32_t width, std::uint32_t height) {
  const auto w = static_cast<int>(std::max(width, 1U));
  const auto h = static_cast<int>(std::max(height, 1U));
  size_ = QSize(w, h);
  const int columns = viewport_ ? 1 : w;
  const int rows = viewport_ ? 1 : h;
  QImage picture(columns, rows, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  buffer_ = sharedBuffer(memory_.get(), picture);
  if (!buffer_)
    return;
  if (viewport_)
    wp_viewport_set_destination(viewport_.get(), w, h);
  wl_surface_attach(surface_.get(), buffer_.get(), 0, 0);
  wl_surface_damage_buffer(surface_.get(), 0, 0, columns, rows);
  wl_surface_commit(surface_.get());
}

} // namespace tavrin
