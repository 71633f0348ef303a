#pragma once

#include "TavrinPlatform/FileManager.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace tavrin {

/// A connection to the X server that DISPLAY names, beside the toolkit's or before it. Null where
/// none answers.
struct CloseDisplay {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using DisplayConnection = std::unique_ptr<xcb_connection_t, CloseDisplay>;
DisplayConnection connectToDisplay(const FileManager& files);

/// What a window manager says it does (Extended Window Manager Hints).
struct WindowManager {
  /// As it calls itself; may be empty.
  std::string name;
  /// Leaves a dock window (_NET_WM_WINDOW_TYPE_DOCK) above others or in a place of its own.
  bool knowsDocks = false;
  /// Keeps other windows off a strut (_NET_WM_STRUT_PARTIAL).
  bool keepsStruts = false;
  /// Says what the struts leave (_NET_WORKAREA), as those do that let a dock stand where it wants;
  /// others make a bar of it, from one end of the screen to the other.
  bool tellsWorkArea = false;
};

/// No value where no program manages windows. One that tells nothing of itself has no name and does
/// nothing.
std::optional<WindowManager> readWindowManager(xcb_connection_t* connection);

/// The compositor's global that lets surfaces choose their place.
inline constexpr const char* layerShellGlobal = "zwlr_layer_shell_v1";

/// What of a desktop decides how the tiles can be shown on it.
struct DesktopFacts {
  bool hasX11 = false;
  /// No value where there is no X server, or nobody manages its windows.
  std::optional<WindowManager> windowManager;
  /// Whether a Wayland compositor answers: then an X server, too, is one of its clients.
  bool hasWayland = false;
  /// The compositor's globals: names of interfaces, without the layer shell where QT_QPA_PLATFORM
  /// keeps the toolkit off it.
  std::vector<std::string> waylandGlobals;
  bool hasBus = false;
  /// Whether somebody shows status notifier items.
  bool hasTrayHost = false;
};

/// Of displays alone, without asking a bus.
DesktopFacts readDisplays(const FileManager& files);

/// Whether the toolkit can show windows: a display answers, or QT_QPA_PLATFORM names what it is to
/// do without one.
bool showsWindows(const FileManager& files);

/// The globals that the compositor behind WAYLAND_DISPLAY announces; no value where none answers.
/// Speaks the few messages of the Wayland wire protocol that this takes itself.
std::optional<std::vector<std::string>> readWaylandGlobals(const FileManager& files);

} // namespace tavrin
