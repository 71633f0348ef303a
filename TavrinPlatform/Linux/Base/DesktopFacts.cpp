#include "TavrinPlatform/Linux/Base/DesktopFacts.h"

#include "TavrinPlatform/Linux/Base/OwnedReply.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace tavrin {

namespace {

xcb_atom_t atomNamed(xcb_connection_t* x, std::string_view name) {
  const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = owned(xcb_intern_atom_reply(x, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

struct Property {
  std::vector<std::uint32_t> numbers;
  std::string text;
};

Property read(xcb_connection_t* x, xcb_window_t window, std::string_view name) {
  constexpr std::uint32_t longest = 4096;
  const auto cookie =
      xcb_get_property(x, 0, window, atomNamed(x, name), XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
  const auto reply = owned(xcb_get_property_reply(x, cookie, nullptr));
  Property property;
  if (!reply)
    return property;
  const auto* bytes = xcb_get_property_value(reply.get());
  const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
  if (reply->format == 32)
    property.numbers.assign(static_cast<const std::uint32_t*>(bytes),
                            static_cast<const std::uint32_t*>(bytes) + length / 4);
  else if (reply->format == 8)
    property.text.assign(static_cast<const char*>(bytes), length);
  return property;
}

/// One client at a time may be asked what becomes of other clients' windows.
bool isManaged(xcb_connection_t* x, xcb_window_t root) {
  const auto reply =
      owned(xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, root), nullptr));
  return reply && (reply->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
}

} // namespace

DisplayConnection connectToDisplay(const FileManager& files) {
  const auto display = files.environment("DISPLAY");
  if (!display || display->empty())
    return nullptr;
  DisplayConnection connection(xcb_connect(display->c_str(), nullptr));
  return xcb_connection_has_error(connection.get()) == 0 ? std::move(connection) : nullptr;
}

std::optional<WindowManager> readWindowManager(xcb_connection_t* x) {
  if (x == nullptr)
    return std::nullopt;
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
  if (!isManaged(x, root))
    return std::nullopt;
  WindowManager manager;
  const auto check = read(x, root, "_NET_SUPPORTING_WM_CHECK").numbers;
  // One that has ended leaves its mark on the root; a living one also on a window of its own.
  if (check.empty() || read(x, check.front(), "_NET_SUPPORTING_WM_CHECK").numbers != check)
    return manager;
  manager.name = read(x, check.front(), "_NET_WM_NAME").text;
  const auto supported = read(x, root, "_NET_SUPPORTED").numbers;
  const auto does = [&](std::string_view name) {
    return std::ranges::count(supported, atomNamed(x, name)) > 0;
  };
  manager.knowsDocks = does("_NET_WM_WINDOW_TYPE_DOCK");
  manager.keepsStruts = does("_NET_WM_STRUT_PARTIAL");
  manager.tellsWorkArea = does("_NET_WORKAREA");
  return manager;
}

namespace {

constexpr int mostLooks = 20;
constexpr std::chrono::milliseconds betweenLooks{50};

bool isManagerKnown(const DesktopFacts& facts) {
  return facts.windowManager && !facts.windowManager->name.empty();
}

} // namespace

DesktopFacts readDisplays(const FileManager& files) {
  DesktopFacts facts;
  const auto connection = connectToDisplay(files);
  if (connection) {
    facts.hasX11 = true;
    facts.windowManager = readWindowManager(connection.get());
  }
  if (auto globals = readWaylandGlobals(files)) {
    facts.hasWayland = true;
    facts.waylandGlobals = std::move(*globals);
    // Whoever keeps the toolkit on another display has its windows there.
    const auto toolkit = files.environment("QT_QPA_PLATFORM").value_or("");
    if (!toolkit.empty() && !toolkit.starts_with("wayland"))
      std::erase(facts.waylandGlobals, layerShellGlobal);
    // Some compositors start their X server for its first client, and manage it a little later.
    const bool hasLayers = std::ranges::count(facts.waylandGlobals, layerShellGlobal) > 0;
    const bool waits = connection && !hasLayers && !isManagerKnown(facts);
    for (int i = 0; waits && i < mostLooks; ++i) {
      const bool wasKnown = isManagerKnown(facts);
      std::this_thread::sleep_for(betweenLooks);
      facts.windowManager = readWindowManager(connection.get());
      // It says its name first, and what it does after that.
      if (wasKnown)
        break;
    }
  }
  return facts;
}

bool showsWindows(const FileManager& files) {
  return files.environment("QT_QPA_PLATFORM") || connectToDisplay(files) ||
         readWaylandGlobals(files);
}

} // namespace tavrin
