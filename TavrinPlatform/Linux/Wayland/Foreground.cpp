#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"
#include "TavrinPlatform/Workspace.h"

#include <algorithm>
#include <span>

namespace tavrin {

namespace {

/// Another program's window, as the compositor tells of it.
struct Toplevel {
  ProxyPtr<zwlr_foreign_toplevel_handle_v1> handle;
  std::string application;
  bool isActive = false;
};

Toplevel& toplevelOf(void* data) {
  return *static_cast<Toplevel*>(data);
}

void listen(Toplevel& toplevel) {
  using Handle = zwlr_foreign_toplevel_handle_v1;
  static const zwlr_foreign_toplevel_handle_v1_listener listener{
      [](void*, Handle*, const char*) {},
      [](void* data, Handle*, const char* application) {
        toplevelOf(data).application = application;
      },
      [](void*, Handle*, wl_output*) {},
      [](void*, Handle*, wl_output*) {},
      [](void* data, Handle*, wl_array* states) {
        const std::span all(static_cast<const std::uint32_t*>(states->data),
                            states->size / sizeof(std::uint32_t));
        toplevelOf(data).isActive =
            std::ranges::count(all, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) > 0;
      },
      [](void*, Handle*) {},
      [](void*, Handle*) {}};
  zwlr_foreign_toplevel_handle_v1_add_listener(toplevel.handle.get(), &listener, &toplevel);
}

/// The last part of an identifier such as "org.example.Editor".
std::string nameIn(const std::string& identifier) {
  const bool isReversed = std::ranges::count(identifier, '.') >= 2 && !identifier.ends_with('.');
  return isReversed ? identifier.substr(identifier.rfind('.') + 1) : identifier;
}

} // namespace

/// Asked anew each time: whoever listened all along would be woken by each change of a title.
std::optional<RunningApplication> foregroundApplication() {
  WaylandConnection connection;
  if (!connection.isOpen())
    return std::nullopt;
  const ProxyPtr<zwlr_foreign_toplevel_manager_v1> manager(
      connection.registry().bind<zwlr_foreign_toplevel_manager_v1>(
          zwlr_foreign_toplevel_manager_v1_interface, 1));
  if (!manager)
    return std::nullopt;
  std::vector<std::unique_ptr<Toplevel>> toplevels;
  using Manager = zwlr_foreign_toplevel_manager_v1;
  static const zwlr_foreign_toplevel_manager_v1_listener listener{
      [](void* data, Manager*, zwlr_foreign_toplevel_handle_v1* handle) {
        auto& all = *static_cast<std::vector<std::unique_ptr<Toplevel>>*>(data);
        listen(*all.emplace_back(new Toplevel{decltype(Toplevel::handle)(handle), {}, false}));
      },
      [](void*, Manager*) {}};
  zwlr_foreign_toplevel_manager_v1_add_listener(manager.get(), &listener, &toplevels);
  connection.roundTrip();
  const auto active = std::ranges::find_if(
      toplevels, [](const auto& each) { return each->isActive && !each->application.empty(); });
  if (active == toplevels.end())
    return std::nullopt;
  return RunningApplication{0, (*active)->application, nameIn((*active)->application)};
}

} // namespace tavrin

/// False where the compositor does not tell.
extern "C" __attribute__((visibility("default"))) bool
tavrinForegroundApplication(tavrin::RunningApplication& application) {
  const auto found = tavrin::foregroundApplication();
  if (found)
    application = *found;
  return found.has_value();
}
