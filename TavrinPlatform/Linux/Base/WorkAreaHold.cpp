#include "TavrinPlatform/Linux/Base/WorkAreaHold.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QCoreApplication>
#include <array>
#include <cstring>
#include <utility>

namespace tavrin {

WorkAreaHold::WorkAreaHold() {
  auto* connection = x11::connection();
  if (connection == nullptr)
    return;
  own_ = xcb_generate_id(connection);
  xcb_create_window(connection, 0, own_, x11::root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                    XCB_COPY_FROM_PARENT, 0, nullptr);
  QCoreApplication::instance()->installNativeEventFilter(this);
}

WorkAreaHold::~WorkAreaHold() {
  if (auto* application = QCoreApplication::instance())
    application->removeNativeEventFilter(this);
  if (auto* connection = x11::connection(); connection != nullptr && own_ != XCB_NONE)
    xcb_destroy_window(connection, own_);
}

bool WorkAreaHold::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY)
    return false;
  const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
  if (change->atom == x11::atom("_XSETTINGS_SETTINGS")) {
    if (!std::exchange(areSettingsUnderWay_, true))
      QMetaObject::invokeMethod(
          this, [this] { settingsAreTaken(); }, Qt::QueuedConnection);
    return false;
  }
  if (!areSettingsUnderWay_ || change->window != x11::root() ||
      change->atom != x11::atom("_NET_WORKAREA"))
    return false;
  held_ = *change;
  return true;
}

/// What the toolkit was told in the turn of the event loop before this one it has taken over.
void WorkAreaHold::settingsAreTaken() {
  areSettingsUnderWay_ = false;
  auto* connection = x11::connection();
  if (!held_ || connection == nullptr)
    return;
  // Events on the wire are this long, shorter as structures.
  std::array<char, 32> event{};
  std::memcpy(event.data(), &*held_, sizeof *held_);
  held_.reset();
  xcb_send_event(connection, 0, own_, XCB_EVENT_MASK_NO_EVENT, event.data());
  xcb_flush(connection);
}

} // namespace tavrin
