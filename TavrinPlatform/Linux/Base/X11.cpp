#include "TavrinPlatform/Linux/Base/X11.h"

#include "TavrinPlatform/Linux/Base/OwnedReply.h"
#include "TavrinPlatform/Linux/Base/XRequests.h"

#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <xcb/shape.h>
// After the toolkit's headers: it defines words such as None and Bool.
#include <X11/Xlib.h>

namespace tavrin::x11 {

namespace {

const QNativeInterface::QX11Application* toolkit() {
  const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
  return application == nullptr ? nullptr
                                : application->nativeInterface<QNativeInterface::QX11Application>();
}

/// What a tile asks for until it is shown.
constexpr std::string_view usual[] = {"MANAGER",
                                      "RESOURCE_MANAGER",
                                      "_NET_ACTIVE_WINDOW",
                                      "_NET_CLIENT_LIST",
                                      "_NET_CLIENT_LIST_STACKING",
                                      "_NET_SUPPORTED",
                                      "_NET_SUPPORTING_WM_CHECK",
                                      "_NET_WM_CM_S0",
                                      "_NET_WM_DESKTOP",
                                      "_NET_WM_STATE",
                                      "_NET_WM_STATE_SKIP_PAGER",
                                      "_NET_WM_STATE_SKIP_TASKBAR",
                                      "_NET_WM_STATE_STICKY",
                                      "_NET_WM_STRUT",
                                      "_NET_WM_STRUT_PARTIAL",
                                      "_NET_WM_WINDOW_TYPE",
                                      "_NET_WM_WINDOW_TYPE_DOCK",
                                      "_NET_WORKAREA",
                                      "_TAVRIN_STRIP",
                                      "_XSETTINGS_S0",
                                      "_XSETTINGS_SETTINGS"};

OwnedReply<xcb_get_window_attributes_reply_t> attributes(xcb_window_t window) {
  auto* x = connection();
  if (x == nullptr || window == XCB_NONE)
    return nullptr;
  return owned(xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, window), nullptr));
}

/// A message about `window` to the root, which the window manager reads.
void tellManager(xcb_window_t window, const char* type, std::array<std::uint32_t, 5> values) {
  auto* x = connection();
  if (x == nullptr || window == XCB_NONE)
    return;
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(type);
  std::copy(values.begin(), values.end(), event.data.data32);
  xcb_send_event(x, 0, root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(x);
}

xcb_window_t firstWindow(const char* property) {
  const auto values = numbers(root(), property, 1);
  return values.empty() ? xcb_window_t{XCB_NONE} : values.front();
}

} // namespace

xcb_connection_t* connection() {
  const auto* native = toolkit();
  return native == nullptr ? nullptr : native->connection();
}

void forgetAnswered() {
  // Without a display the toolkit may have the interface all the same, and nothing behind it.
  if (const auto* native = toolkit(); native != nullptr && native->display() != nullptr)
    XSync(native->display(), False);
}

xcb_window_t root() {
  auto* x = connection();
  if (x == nullptr)
    return XCB_NONE;
  return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

xcb_atom_t atom(const char* name) {
  static std::map<std::string, xcb_atom_t, std::less<>> known;
  if (const auto found = known.find(name); found != known.end())
    return found->second;
  auto* x = connection();
  if (x == nullptr)
    return XCB_ATOM_NONE;
  std::vector<std::string_view> names{name};
  if (known.empty())
    names.insert(names.end(), std::begin(usual), std::end(usual));
  const auto numbers = atoms(x, names);
  for (std::size_t i = 0; i < names.size(); ++i)
    known.emplace(names[i], numbers[i]);
  return numbers.front();
}

std::vector<std::uint32_t> numbers(xcb_window_t window, const char* name, std::uint32_t longest) {
  return numbers(std::span(&window, 1), name, longest).front();
}

std::vector<std::vector<std::uint32_t>> numbers(std::span<const xcb_window_t> windows,
                                                const char* name, std::uint32_t longest) {
  std::vector<std::vector<std::uint32_t>> all(windows.size());
  auto* x = connection();
  if (x == nullptr)
    return all;
  const auto property = atom(name);
  std::vector<std::optional<xcb_get_property_cookie_t>> asked;
  for (const auto window : windows)
    asked.push_back(window == XCB_NONE ? std::nullopt
                                       : std::optional(askProperty(x, window, property, longest)));
  for (std::size_t i = 0; i < windows.size(); ++i)
    if (asked[i])
      all[i] = numbers(x, *asked[i]);
  return all;
}

std::string text(xcb_window_t window, const char* name, std::uint32_t longest) {
  auto* x = connection();
  if (x == nullptr || window == XCB_NONE)
    return {};
  return text(x, askProperty(x, window, atom(name), longest));
}

void setNumbers(xcb_window_t window, const char* name, xcb_atom_t type,
                const std::vector<std::uint32_t>& values) {
  if (auto* x = connection())
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void setState(xcb_window_t window, const char* state, bool isOn) {
  constexpr std::uint32_t fromApplication = 1;
  tellManager(window, "_NET_WM_STATE", {isOn ? 1U : 0U, atom(state), 0, fromApplication});
}

xcb_window_t selectionOwner(const char* selection) {
  auto* x = connection();
  if (x == nullptr)
    return XCB_NONE;
  const auto cookie = xcb_get_selection_owner(x, atom(selection));
  const auto reply = owned(xcb_get_selection_owner_reply(x, cookie, nullptr));
  return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

void selectEvents(xcb_window_t window, std::uint32_t mask) {
  if (auto* x = connection()) {
    if (const auto known = attributes(window))
      mask |= known->your_event_mask;
    xcb_change_window_attributes(x, window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(x);
  }
}

void ignoreEvents(xcb_window_t window, std::uint32_t mask) {
  const auto known = attributes(window);
  if (!known || (known->your_event_mask & mask) == 0)
    return;
  const std::uint32_t rest = known->your_event_mask & ~mask;
  xcb_change_window_attributes(connection(), window, XCB_CW_EVENT_MASK, &rest);
  xcb_flush(connection());
}

bool hasCompositor() {
  return selectionOwner("_NET_WM_CM_S0") != XCB_NONE;
}

xcb_window_t windowManager() {
  const xcb_window_t check = firstWindow("_NET_SUPPORTING_WM_CHECK");
  // A dead window manager leaves its mark on the root; a living one also on its own window.
  const auto itself = numbers(check, "_NET_SUPPORTING_WM_CHECK", 1);
  return !itself.empty() && itself.front() == check ? check : xcb_window_t{XCB_NONE};
}

bool hasWindowManager() {
  return windowManager() != XCB_NONE;
}

xcb_window_t activeWindow() {
  return firstWindow("_NET_ACTIVE_WINDOW");
}

xcb_window_t focusWindow() {
  auto* x = connection();
  if (x == nullptr)
    return XCB_NONE;
  const auto reply = owned(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
  return reply ? reply->focus : xcb_window_t{XCB_NONE};
}

void requestActive(xcb_window_t window) {
  constexpr std::uint32_t fromPager = 2;
  tellManager(window, "_NET_ACTIVE_WINDOW", {fromPager, XCB_CURRENT_TIME});
}

void setFocus(xcb_window_t window) {
  if (auto* x = connection()) {
    xcb_set_input_focus(x, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_flush(x);
  }
}

QRect frame(xcb_window_t window) {
  auto* x = connection();
  if (x == nullptr || window == XCB_NONE)
    return {};
  const auto sizeCookie = xcb_get_geometry(x, window);
  const auto placeCookie = xcb_translate_coordinates(x, window, root(), 0, 0);
  const auto size = owned(xcb_get_geometry_reply(x, sizeCookie, nullptr));
  const auto place = owned(xcb_translate_coordinates_reply(x, placeCookie, nullptr));
  if (!size || !place)
    return {};
  return {place->dst_x, place->dst_y, size->width, size->height};
}

bool isViewable(xcb_window_t window) {
  const auto reply = attributes(window);
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool isUnmanaged(xcb_window_t window) {
  const auto reply = attributes(window);
  return reply && reply->override_redirect != 0;
}

xcb_window_t parent(xcb_window_t window) {
  auto* x = connection();
  if (x == nullptr || window == XCB_NONE)
    return XCB_NONE;
  const auto reply = owned(xcb_query_tree_reply(x, xcb_query_tree(x, window), nullptr));
  return reply ? reply->parent : xcb_window_t{XCB_NONE};
}

std::vector<xcb_window_t> topLevelWindows() {
  auto* x = connection();
  if (x == nullptr)
    return {};
  const auto reply = owned(xcb_query_tree_reply(x, xcb_query_tree(x, root()), nullptr));
  if (!reply)
    return {};
  const auto* windows = xcb_query_tree_children(reply.get());
  return {windows, windows + xcb_query_tree_children_length(reply.get())};
}

void restack(xcb_window_t window, bool isAbove) {
  auto* x = connection();
  if (x == nullptr)
    return;
  const std::uint32_t mode = isAbove ? XCB_STACK_MODE_ABOVE : XCB_STACK_MODE_BELOW;
  xcb_configure_window(x, window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
  xcb_flush(x);
}

void setInputAreas(xcb_window_t window, const std::vector<QRect>& areas) {
  auto* x = connection();
  if (x == nullptr)
    return;
  std::vector<xcb_rectangle_t> rectangles;
  for (const QRect& area : areas)
    rectangles.push_back({static_cast<std::int16_t>(area.x()), static_cast<std::int16_t>(area.y()),
                          static_cast<std::uint16_t>(area.width()),
                          static_cast<std::uint16_t>(area.height())});
  xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window,
                       0, 0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

QPoint pointer() {
  auto* x = connection();
  if (x == nullptr)
    return {};
  const auto reply = owned(xcb_query_pointer_reply(x, xcb_query_pointer(x, root()), nullptr));
  return reply ? QPoint(reply->root_x, reply->root_y) : QPoint();
}

} // namespace tavrin::x11
