#include "TavrinPlatform/Linux/Tile/StripBar.h"

#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Tile/StripRoom.h"

#include <QCoreApplication>
#include <QTimerEvent>
#include <array>
#include <unistd.h>
#include <xcb/xfixes.h>

namespace tavrin {

namespace {

/// Also the mark by which others tell this window from a tile.
constexpr const char* roomSelection = "_TAVRIN_ROOM";
/// The manager frames, places and shows a window in several steps.
constexpr int barSettling = 20;

xcb_window_t makeWindow(xcb_connection_t* x, const QRect& place) {
  const xcb_window_t window = xcb_generate_id(x);
  const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE,
                                            XCB_EVENT_MASK_STRUCTURE_NOTIFY};
  xcb_create_window(x, XCB_COPY_FROM_PARENT, window, x11::root(),
                    static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()),
                    static_cast<std::uint16_t>(place.width()),
                    static_cast<std::uint16_t>(place.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXMAP | XCB_CW_EVENT_MASK, values.data());
  constexpr std::array<char, 14> classes{'t', 'a', 'v', 'r', 'i', 'n', 0,
                                         'T', 'a', 'v', 'r', 'i', 'n', 0};
  xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      classes.size(), classes.data());
  x11::setNumbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                  {x11::atom("_NET_WM_WINDOW_TYPE_DOCK")});
  x11::setNumbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(getpid())});
  x11::setNumbers(window, roomSelection, XCB_ATOM_CARDINAL, {1});
  // A manager that ends leaves it above the tiles for a moment: a press goes through it to them.
  x11::setInputAreas(window, {});
  return window;
}

} // namespace

StripBar::StripBar(std::function<void()> onMove, std::function<void()> onCover)
    : onMove_(std::move(onMove)), onCover_(std::move(onCover)) {}

StripBar::~StripBar() {
  if (auto* application = QCoreApplication::instance(); application != nullptr && isWatching_)
    application->removeNativeEventFilter(this);
}

void StripBar::keep(const QRect& bar) {
  auto* x = x11::connection();
  if (x == nullptr || bar == wanted_)
    return;
  wanted_ = bar;
  if (bar.isEmpty()) {
    owner_ = XCB_NONE;
    if (own_ != XCB_NONE)
      xcb_destroy_window(x, std::exchange(own_, XCB_NONE));
    xcb_flush(x);
    return;
  }
  if (!std::exchange(isWatching_, true)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
    xcb_xfixes_select_selection_input(x, x11::root(), x11::atom(roomSelection),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  }
  if (own_ != XCB_NONE)
    shape();
  else
    contend();
}

void StripBar::contend() {
  auto* x = x11::connection();
  // Between the question and the answer nobody else may take it.
  xcb_grab_server(x);
  owner_ = x11::selectionOwner(roomSelection);
  if (owner_ == XCB_NONE) {
    own_ = makeWindow(x, wanted_);
    owner_ = own_;
    xcb_set_selection_owner(x, own_, x11::atom(roomSelection), XCB_CURRENT_TIME);
  }
  xcb_ungrab_server(x);
  if (own_ != XCB_NONE) {
    shape();
    xcb_map_window(x, own_);
  } else {
    x11::selectEvents(owner_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  }
  xcb_flush(x);
  soon_.start(barSettling, this);
}

void StripBar::shape() {
  auto* x = x11::connection();
  const QSize root = x11::frame(x11::root()).size();
  const Strut strut = strutOfTile(wanted_, StripEdge::bottom, wanted_, root);
  if (!strut.empty())
    x11::setNumbers(own_, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, strut);
  const std::array<std::uint32_t, 4> place{
      static_cast<std::uint32_t>(wanted_.x()), static_cast<std::uint32_t>(wanted_.y()),
      static_cast<std::uint32_t>(wanted_.width()), static_cast<std::uint32_t>(wanted_.height())};
  xcb_configure_window(x, own_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       place.data());
  xcb_flush(x);
}

std::optional<QRect> StripBar::frame() const {
  if (owner_ == XCB_NONE || !x11::isViewable(owner_))
    return std::nullopt;
  return x11::frame(owner_);
}

bool StripBar::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  static const auto* extension = xcb_get_extension_data(x11::connection(), &xcb_xfixes_id);
  const auto type = event->response_type & 0x7F;
  if (extension != nullptr && type == extension->first_event + XCB_XFIXES_SELECTION_NOTIFY) {
    const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    if (change->selection == x11::atom(roomSelection) && change->owner != own_ &&
        !wanted_.isEmpty())
      contend();
    return false;
  }
  const auto* about = reinterpret_cast<const xcb_map_notify_event_t*>(event);
  const bool isMove = type == XCB_CONFIGURE_NOTIFY || type == XCB_MAP_NOTIFY ||
                      type == XCB_UNMAP_NOTIFY || type == XCB_REPARENT_NOTIFY;
  if (isMove && owner_ != XCB_NONE && (about->window == owner_ || about->window == frame_)) {
    if (type == XCB_REPARENT_NOTIFY)
      followFrame();
    // A frame takes presses, whatever is in it.
    if (type != XCB_UNMAP_NOTIFY)
      onCover_();
    soon_.start(barSettling, this);
  }
  return false;
}

void StripBar::followFrame() {
  const xcb_window_t frame = x11::parent(owner_);
  if (frame != frame_ && frame != x11::root())
    x11::selectEvents(frame, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  frame_ = frame == x11::root() ? xcb_window_t{XCB_NONE} : frame;
}

void StripBar::timerEvent(QTimerEvent*) {
  soon_.stop();
  followFrame();
  onMove_();
}

} // namespace tavrin
