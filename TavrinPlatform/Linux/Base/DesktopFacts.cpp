#include "TavrinPlatform/Linux/Base/DesktopFacts.h"

#include "TavrinPlatform/Linux/Base/OwnedReply.h"
#include "TavrinPlatform/Linux/Base/XRequests.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace tavrin {

namespace {

constexpr std::uint32_t mostSupported = 4096;
constexpr std::uint32_t longestName = 256;

/// One client at a time may be asked what becomes of other clients' windows.
bool isManaged(xcb_connection_t* x, xcb_get_window_attributes_cookie_t asked) {
  const auto reply = owned(xcb_get_window_attributes_reply(x, asked, nullptr));
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
  const auto attributes = xcb_get_window_attributes(x, root);
  constexpr std::string_view names[] = {"_NET_SUPPORTING_WM_CHECK", "_NET_WM_NAME",
                                        "_NET_SUPPORTED",           "_NET_WM_WINDOW_TYPE_DOCK",
                                        "_NET_WM_STRUT_PARTIAL",    "_NET_WORKAREA"};
  enum Place : std::size_t { itsWindow, itsName, supports, docks, struts, workArea };
  const auto atoms = x11::atoms(x, names);
  if (!isManaged(x, attributes))
    return std::nullopt;
  const auto checkAsked = x11::askProperty(x, root, atoms[itsWindow], 1);
  const auto supportedAsked = x11::askProperty(x, root, atoms[supports], mostSupported);
  const auto check = x11::numbers(x, checkAsked);
  const auto supported = x11::numbers(x, supportedAsked);
  WindowManager manager;
  if (check.empty())
    return manager;
  const auto itselfAsked = x11::askProperty(x, check.front(), atoms[itsWindow], 1);
  const auto nameAsked = x11::askProperty(x, check.front(), atoms[itsName], longestName);
  const auto itself = x11::numbers(x, itselfAsked);
  std::string name = x11::text(x, nameAsked);
  // One that has ended leaves its mark on the root; a living one also on a window of its own.
  if (itself != check)
    return manager;
  manager.name = std::move(name);
  const auto does = [&](xcb_atom_t what) { return std::ranges::count(supported, what) > 0; };
  manager.knowsDocks = does(atoms[docks]);
  manager.keepsStruts = does(atoms[struts]);
  manager.tellsWorkArea = does(atoms[workArea]);
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
