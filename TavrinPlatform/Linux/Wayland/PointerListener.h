#pragma once

#include "TavrinPlatform/Linux/Wayland/Proxies.h"

namespace tavrin {

/// The events of a pointer, each with nothing to do: the compositor sends all of them. Whoever
/// wants some puts his own in their places. For pointers of version 5 or below.
inline wl_pointer_listener idlePointerListener() {
  wl_pointer_listener listener{};
  listener.enter = [](void*, wl_pointer*, std::uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t) {};
  listener.leave = [](void*, wl_pointer*, std::uint32_t, wl_surface*) {};
  listener.motion = [](void*, wl_pointer*, std::uint32_t, wl_fixed_t, wl_fixed_t) {};
  listener.button = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
                       std::uint32_t) {};
  listener.axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {};
  listener.frame = [](void*, wl_pointer*) {};
  listener.axis_source = [](void*, wl_pointer*, std::uint32_t) {};
  listener.axis_stop = [](void*, wl_pointer*, std::uint32_t, std::uint32_t) {};
  listener.axis_discrete = [](void*, wl_pointer*, std::uint32_t, std::int32_t) {};
  return listener;
}

} // namespace tavrin
