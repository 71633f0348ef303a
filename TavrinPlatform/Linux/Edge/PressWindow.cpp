#include "TavrinPlatform/Linux/Edge/PressWindow.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QCoreApplication>
#include <QRegion>
#include <QTimer>
#include <array>

namespace tavrin {

namespace {

constexpr std::uint8_t withAlpha = 32;

/// A visual with an alpha channel; 0 without one.
xcb_visualid_t clearVisual(xcb_connection_t* x) {
  const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(x)).data;
  for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem > 0;
       xcb_depth_next(&depth))
    if (depth.data->depth == withAlpha && depth.data->visuals_len > 0)
      return xcb_depth_visuals(depth.data)->visual_id;
  return 0;
}

} // namespace

PressWindow::PressWindow(const std::vector<QRect>& spared, std::function<void()> pressed)
    : pressed_(std::move(pressed)) {
  const QRect whole = x11::frame(x11::root());
  make(whole);
  if (window_ == XCB_NONE)
    return;
  QRegion rest(whole);
  for (const QRect& part : spared)
    rest -= part;
  x11::setInputAreas(window_, {rest.begin(), rest.end()});
  xcb_map_window(x11::connection(), window_);
  xcb_flush(x11::connection());
  QCoreApplication::instance()->installNativeEventFilter(this);
}

void PressWindow::make(const QRect& whole) {
  auto* x = x11::connection();
  const xcb_visualid_t visual = clearVisual(x);
  if (visual == 0)
    return;
  colours_ = xcb_generate_id(x);
  xcb_create_colormap(x, XCB_COLORMAP_ALLOC_NONE, colours_, x11::root(), visual);
  window_ = xcb_generate_id(x);
  const std::array<std::uint32_t, 5> values{0, 0, 1, XCB_EVENT_MASK_BUTTON_PRESS, colours_};
  xcb_create_window(
      x, withAlpha, window_, x11::root(), 0, 0, static_cast<std::uint16_t>(whole.width()),
      static_cast<std::uint16_t>(whole.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK |
          XCB_CW_COLORMAP,
      values.data());
}

PressWindow::~PressWindow() {
  auto* x = x11::connection();
  if (x == nullptr || window_ == XCB_NONE)
    return;
  xcb_destroy_window(x, window_);
  xcb_free_colormap(x, colours_);
  xcb_flush(x);
}

bool PressWindow::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7F) != XCB_BUTTON_PRESS)
    return false;
  if (reinterpret_cast<const xcb_button_press_event_t*>(event)->event == window_)
    // Later: who is told ends this.
    QTimer::singleShot(0, QCoreApplication::instance(), pressed_);
  return false;
}

} // namespace tavrin
