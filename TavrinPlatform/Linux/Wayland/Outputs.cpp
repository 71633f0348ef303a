#include "TavrinPlatform/Linux/Wayland/Outputs.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

constexpr std::uint32_t withNames = 4;
constexpr double scaleParts = 120;

Outputs::Output& outputOf(void* data) {
  return *static_cast<Outputs::Output*>(data);
}

} // namespace

Outputs::Outputs(const WaylandRegistry& registry) {
  static const wl_output_listener listener{
      [](void* data, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
         std::int32_t, const char*, const char*,
         std::int32_t transform) { outputOf(data).transform = transform; },
      [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
         std::int32_t) {
        if ((flags & WL_OUTPUT_MODE_CURRENT) != 0)
          outputOf(data).mode = QSize(width, height);
      },
      [](void*, wl_output*) {},
      [](void*, wl_output*, std::int32_t) {},
      [](void* data, wl_output*, const char* name) { outputOf(data).name = name; },
      [](void*, wl_output*, const char*) {}};
  for (auto* proxy : registry.bindAll<wl_output>(wl_output_interface, withNames)) {
    auto& output = *outputs_.emplace_back(std::make_unique<Output>());
    output.proxy.reset(proxy);
    wl_output_add_listener(proxy, &listener, &output);
  }
}

double Outputs::Output::scale(QSize points) const {
  // A quarter turn, plain or mirrored.
  const int pixels = (transform & 1) != 0 ? mode.height() : mode.width();
  if (points.width() <= 0 || pixels <= 0)
    return 1;
  return std::round(scaleParts * pixels / points.width()) / scaleParts;
}

const Outputs::Output* Outputs::find(std::string_view name) const {
  // Some compositors name none.
  if (outputs_.size() == 1 && outputs_.front()->name.empty())
    return outputs_.front().get();
  const auto found = std::ranges::find(outputs_, name, [](const auto& each) { return each->name; });
  return found == outputs_.end() ? nullptr : found->get();
}

} // namespace tavrin
