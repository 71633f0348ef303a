#include "TavrinPlatform/Linux/Wayland/PixelSurface.h"

#include "TavrinPlatform/Linux/Wayland/SharedBuffer.h"

#include <QImage>

namespace tavrin {

bool PixelSurface::isPossible(const WaylandRegistry& registry) {
  return registry.has(wl_subcompositor_interface.name) && registry.has(wl_shm_interface.name) &&
         registry.has(wp_viewporter_interface.name);
}

PixelSurface::PixelSurface(const WaylandRegistry& registry, wl_surface* parent)
    : compositor_(registry.bind<wl_compositor>(wl_compositor_interface, 4)),
      subcompositor_(registry.bind<wl_subcompositor>(wl_subcompositor_interface, 1)),
      memory_(registry.bind<wl_shm>(wl_shm_interface, 1)),
      viewporter_(registry.bind<wp_viewporter>(wp_viewporter_interface, 1)),
      surface_(wl_compositor_create_surface(compositor_.get())),
      role_(wl_subcompositor_get_subsurface(subcompositor_.get(), surface_.get(), parent)),
      viewport_(wp_viewporter_get_viewport(viewporter_.get(), surface_.get())) {
  // Else it would wait for what the toolkit draws.
  wl_subsurface_set_desync(role_.get());
  const ProxyPtr<wl_region> nothing(wl_compositor_create_region(compositor_.get()));
  wl_surface_set_input_region(surface_.get(), nothing.get());
}

void PixelSurface::show(const QImage& picture, QSize points) {
  std::swap(buffers_[0], buffers_[1]);
  buffers_[0] = sharedBuffer(memory_.get(), picture);
  if (!buffers_[0])
    return;
  wp_viewport_set_destination(viewport_.get(), points.width(), points.height());
  wl_surface_attach(surface_.get(), buffers_[0].get(), 0, 0);
  wl_surface_damage_buffer(surface_.get(), 0, 0, picture.width(), picture.height());
  wl_surface_commit(surface_.get());
}

} // namespace tavrin
