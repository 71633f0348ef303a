#include "TavrinPlatform/Linux/Tile/StripStacking.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QCoreApplication>
#include <QTimerEvent>
#include <algorithm>

namespace tavrin {

namespace {

/// A window manager that comes says bit by bit what it does.
constexpr int managerSettling = 300;

} // namespace

StripStacking::StripStacking(std::function<xcb_window_t()> window,
                             std::function<void()> onManagerChange)
    : window_(std::move(window)), onManagerChange_(std::move(onManagerChange)) {
  if (x11::connection() != nullptr)
    QCoreApplication::instance()->installNativeEventFilter(this);
}

StripStacking::~StripStacking() {
  if (auto* application = QCoreApplication::instance())
    application->removeNativeEventFilter(this);
}

void StripStacking::begin(bool isUnmanaged) {
  if (x11::connection() == nullptr)
    return;
  isUnmanaged_ = isUnmanaged;
  watchManager();
  again();
}

bool StripStacking::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  const auto type = event->response_type & 0x7F;
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    if (change->window == x11::root())
      rootChanged(change->atom);
    else if (isUnmanaged_ && change->atom == x11::atom("_NET_WM_STATE") &&
             (change->window == active_ || change->window == filling_))
      again();
  } else if (type == XCB_CONFIGURE_NOTIFY || type == XCB_MAP_NOTIFY ||
             type == XCB_REPARENT_NOTIFY || type == XCB_DESTROY_NOTIFY) {
    // The same two fields begin all of these: whose event it is, and what it is about.
    const auto* change = reinterpret_cast<const xcb_map_notify_event_t*>(event);
    if (type == XCB_DESTROY_NOTIFY && manager_ != XCB_NONE && change->window == manager_) {
      watchManager();
      managerSettles_.start(managerSettling, this);
    }
    if (manager_ == XCB_NONE && !stackSettles_.isActive())
      again();
  }
  return false;
}

void StripStacking::rootChanged(xcb_atom_t property) {
  if (property == x11::atom("_NET_SUPPORTING_WM_CHECK") ||
      property == x11::atom("_NET_SUPPORTED")) {
    // It lays its windows over the tile's before it has said all.
    watchManager();
    managerSettles_.start(managerSettling, this);
  } else if (isUnmanaged_ && (property == x11::atom("_NET_ACTIVE_WINDOW") ||
                              property == x11::atom("_NET_CLIENT_LIST_STACKING"))) {
    again();
  }
}

void StripStacking::watchManager() {
  manager_ = x11::windowManager();
  if (manager_ != XCB_NONE) {
    x11::selectEvents(manager_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    x11::ignoreEvents(x11::root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  } else {
    x11::selectEvents(x11::root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  }
}

void StripStacking::timerEvent(QTimerEvent* event) {
  if (event->timerId() == managerSettles_.timerId()) {
    managerSettles_.stop();
    watchManager();
    onManagerChange_();
    again();
  } else {
    stackSettles_.stop();
    restack();
  }
}

void StripStacking::restack() {
  const xcb_window_t window = window_();
  if (window == XCB_NONE)
    return;
  if (manager_ == XCB_NONE) {
    if (isCovered())
      x11::restack(window, true);
  } else if (isUnmanaged_) {
    x11::restack(window, !isFilled());
  }
}

bool StripStacking::isFilled() {
  const xcb_window_t active = x11::activeWindow();
  if (active != active_ && active != XCB_NONE)
    x11::selectEvents(active, XCB_EVENT_MASK_PROPERTY_CHANGE);
  active_ = active;
  if (fills(active))
    filling_ = active;
  else if (!fills(filling_))
    filling_ = XCB_NONE;
  return filling_ != XCB_NONE;
}

bool StripStacking::fills(xcb_window_t other) const {
  if (other == XCB_NONE || !x11::isViewable(other))
    return false;
  const auto states = x11::numbers(other, "_NET_WM_STATE");
  return std::ranges::count(states, x11::atom("_NET_WM_STATE_FULLSCREEN")) > 0 &&
         x11::frame(other).intersects(x11::frame(window_()));
}

/// Menus and the like, which ask for no management, may lie over a tile; windows may not.
bool StripStacking::isCovered() const {
  const xcb_window_t window = window_();
  const auto place = x11::frame(window);
  const auto all = x11::topLevelWindows();
  auto above = std::ranges::find(all, window);
  return above != all.end() && std::any_of(above + 1, all.end(), [&](xcb_window_t other) {
           return x11::isViewable(other) && !x11::isUnmanaged(other) &&
                  x11::frame(other).intersects(place);
         });
}

} // namespace tavrin
