#include "TavrinPlatform/Linux/Edge/StripSensor.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QCoreApplication>
#include <array>

namespace tavrin {

namespace {

/// How long the pointer stays before it is not just passing; milliseconds.
constexpr int stayLength = 120;
/// The version of drag and drop between X clients.
constexpr std::uint32_t dragVersion = 5;

} // namespace

StripSensor::StripSensor(std::function<void()> touched) : touched_(std::move(touched)) {}

StripSensor::~StripSensor() {
  if (auto* application = QCoreApplication::instance();
      application != nullptr && window_ != XCB_NONE)
    application->removeNativeEventFilter(this);
}

void StripSensor::make() {
  auto* x = x11::connection();
  window_ = xcb_generate_id(x);
  const std::array<std::uint32_t, 3> values{
      1, XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW,
      // A press is nobody else's: the desktop below would show its menu.
      XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE};
  xcb_create_window(x, XCB_COPY_FROM_PARENT, window_, x11::root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_DONT_PROPAGATE,
                    values.data());
  x11::setNumbers(window_, "XdndAware", XCB_ATOM_ATOM, {dragVersion});
  QCoreApplication::instance()->installNativeEventFilter(this);
}

void StripSensor::put(const QRect& place) {
  auto* x = x11::connection();
  if (x == nullptr || place == place_)
    return;
  const bool wasThere = !place_.isEmpty();
  place_ = place;
  stays_.stop();
  if (place.isEmpty()) {
    xcb_unmap_window(x, window_);
    xcb_flush(x);
    return;
  }
  if (window_ == XCB_NONE)
    make();
  const std::array<std::uint32_t, 4> numbers{
      static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y()),
      static_cast<std::uint32_t>(place.width()), static_cast<std::uint32_t>(place.height())};
  xcb_configure_window(x, window_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       numbers.data());
  if (!wasThere)
    xcb_map_window(x, window_);
  xcb_flush(x);
}

void StripSensor::pointerMoved(bool isInside) {
  if (!isInside)
    stays_.stop();
  else if (!stays_.isActive())
    stays_.start(stayLength, this);
}

void StripSensor::timerEvent(QTimerEvent*) {
  stays_.stop();
  touched_();
}

bool StripSensor::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  const auto type = event->response_type & 0x7F;
  if (type == XCB_ENTER_NOTIFY || type == XCB_LEAVE_NOTIFY) {
    const auto* crossing = reinterpret_cast<const xcb_enter_notify_event_t*>(event);
    if (crossing->event == window_)
      pointerMoved(type == XCB_ENTER_NOTIFY && !place_.isEmpty());
  } else if (type == XCB_CLIENT_MESSAGE) {
    const auto* told = reinterpret_cast<const xcb_client_message_event_t*>(event);
    if (told->window == window_)
      answerDrag(*told);
  }
  return false;
}

/// Nothing can be dropped here; the tile that comes is asked anew.
void StripSensor::answerDrag(const xcb_client_message_event_t& message) {
  if (message.type == x11::atom("XdndLeave")) {
    stays_.stop();
  } else if (message.type == x11::atom("XdndPosition")) {
    pointerMoved(!place_.isEmpty());
    xcb_client_message_event_t answer{};
    answer.response_type = XCB_CLIENT_MESSAGE;
    answer.format = 32;
    answer.window = message.data.data32[0];
    answer.type = x11::atom("XdndStatus");
    answer.data.data32[0] = window_;
    xcb_send_event(x11::connection(), 0, answer.window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&answer));
    xcb_flush(x11::connection());
  }
}

} // namespace tavrin
