#pragma once

#include "data-control.h"
#include "foreign-toplevel.h"
#include "layer-shell.h"
#include "screencopy.h"
#include "viewporter.h"

#include <memory>
#include <wayland-client.h>

namespace tavrin {

/// Ends a protocol object by the request that its interface has for that.
template <class Proxy> struct DestroyProxy;
template <class Proxy> using ProxyPtr = std::unique_ptr<Proxy, DestroyProxy<Proxy>>;

#define TAVRIN_PROXY(Type)                                                                         \
  template <> struct DestroyProxy<Type> {                                                          \
    void operator()(Type* proxy) const { Type##_destroy(proxy); }                                  \
  }
TAVRIN_PROXY(wl_registry);
TAVRIN_PROXY(wl_callback);
TAVRIN_PROXY(wl_seat);
TAVRIN_PROXY(wl_pointer);
TAVRIN_PROXY(wl_keyboard);
TAVRIN_PROXY(wl_data_device_manager);
TAVRIN_PROXY(wl_data_device);
TAVRIN_PROXY(wl_data_offer);
TAVRIN_PROXY(wl_compositor);
TAVRIN_PROXY(wl_shm);
TAVRIN_PROXY(wl_shm_pool);
TAVRIN_PROXY(wl_buffer);
TAVRIN_PROXY(wl_surface);
TAVRIN_PROXY(wl_region);
TAVRIN_PROXY(wl_subcompositor);
TAVRIN_PROXY(wl_subsurface);
TAVRIN_PROXY(wl_output);
TAVRIN_PROXY(zwlr_data_control_manager_v1);
TAVRIN_PROXY(zwlr_data_control_device_v1);
TAVRIN_PROXY(zwlr_data_control_source_v1);
TAVRIN_PROXY(zwlr_data_control_offer_v1);
TAVRIN_PROXY(zwlr_foreign_toplevel_manager_v1);
TAVRIN_PROXY(zwlr_foreign_toplevel_handle_v1);
TAVRIN_PROXY(zwlr_layer_shell_v1);
TAVRIN_PROXY(zwlr_layer_surface_v1);
TAVRIN_PROXY(zwlr_screencopy_manager_v1);
TAVRIN_PROXY(zwlr_screencopy_frame_v1);
TAVRIN_PROXY(wp_viewporter);
TAVRIN_PROXY(wp_viewport);
#undef TAVRIN_PROXY

} // namespace tavrin
