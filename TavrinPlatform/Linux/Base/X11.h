#pragma once

#include <QRect>
#include <cstdint>
#include <span>
#include <string>
#include <vector>
#include <xcb/xcb.h>

/// The X server through the toolkit's own connection. Without one all questions have empty answers.
namespace tavrin::x11 {

/// Null when the toolkit shows its windows elsewhere.
xcb_connection_t* connection();
/// The toolkit sends some requests through Xlib, which keeps a note of each until it waits for an
/// answer itself: it does so here, and the notes go.
void forgetAnswered();
xcb_window_t root();
/// Asked of the server once for each name; those that a tile starts with all together.
xcb_atom_t atom(const char* name);

/// At most `longest` items of a property of 32-bit items.
std::vector<std::uint32_t> numbers(xcb_window_t window, const char* property,
                                   std::uint32_t longest = 64);
/// The same of each of `windows`, in one round trip.
std::vector<std::vector<std::uint32_t>> numbers(std::span<const xcb_window_t> windows,
                                                const char* property, std::uint32_t longest = 64);
/// A property of bytes, whatever its encoding is called, of at most `longest` times four.
std::string text(xcb_window_t window, const char* property, std::uint32_t longest = 1024);
void setNumbers(xcb_window_t window, const char* property, xcb_atom_t type,
                const std::vector<std::uint32_t>& values);

/// Asks the window manager to put a state of EWMH, such as "_NET_WM_STATE_ABOVE", on a window that
/// is shown, or to take it back.
void setState(xcb_window_t window, const char* state, bool isOn);

/// None when nobody has the selection.
xcb_window_t selectionOwner(const char* selection);
/// Events of a window beside those that are selected already; they come to the toolkit's native
/// event filters.
void selectEvents(xcb_window_t window, std::uint32_t mask);
/// The opposite.
void ignoreEvents(xcb_window_t window, std::uint32_t mask);
bool hasCompositor();
/// The window by which a living window manager can be told; none where there is none.
xcb_window_t windowManager();
bool hasWindowManager();
/// The window that the user is in, as the window manager tells; none when it does not.
xcb_window_t activeWindow();
/// The window that gets the keys.
xcb_window_t focusWindow();
/// Asks the window manager to bring `window` to the user.
void requestActive(xcb_window_t window);
void setFocus(xcb_window_t window);
/// In pixels of the root window; empty when there is no such window.
QRect frame(xcb_window_t window);
bool isViewable(xcb_window_t window);
/// Whether the window has asked that no window manager cares for it.
bool isUnmanaged(xcb_window_t window);
/// The root window, or the frame that a manager has put round the window.
xcb_window_t parent(xcb_window_t window);
/// The children of the root window, the lowest first.
std::vector<xcb_window_t> topLevelWindows();
/// Above all windows beside it, or below.
void restack(xcb_window_t window, bool isAbove);
/// Makes clicks outside of `areas`, in pixels of the window, go to what lies under it.
void setInputAreas(xcb_window_t window, const std::vector<QRect>& areas);
/// The pointer in pixels of the root window.
QPoint pointer();

} // namespace tavrin::x11
