#include "TavrinPlatform/Linux/Tile/PressWatcher.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QSocketNotifier>
#include <cstdlib>
#include <xcb/xinput.h>

namespace tavrin {

namespace {

bool isButtonWheel(std::uint32_t button) {
  return button >= 4 && button <= 7;
}

} // namespace

PressWatcher::PressWatcher(std::function<void(QPoint)> pressed) : pressed_(std::move(pressed)) {
  connection_.reset(xcb_connect(nullptr, nullptr));
  if (xcb_connection_has_error(connection_.get()) != 0)
    return;
  select();
  const int descriptor = xcb_get_file_descriptor(connection_.get());
  notifier_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, &PressWatcher::read);
}

PressWatcher::~PressWatcher() = default;

void PressWatcher::select() {
  auto* x = connection_.get();
  const auto* data = xcb_get_extension_data(x, &xcb_input_id);
  if (data == nullptr || data->present == 0)
    return;
  extension_ = data->major_opcode;
  constexpr std::uint16_t major = 2;
  constexpr std::uint16_t minor = 2;
  std::free(
      xcb_input_xi_query_version_reply(x, xcb_input_xi_query_version(x, major, minor), nullptr));
  struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } wish{};
  wish.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
  wish.head.mask_len = 1;
  wish.mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
  xcb_input_xi_select_events(x, root, 1, &wish.head);
  xcb_flush(x);
}

void PressWatcher::read() {
  bool hasPress = false;
  while (auto* event = xcb_poll_for_event(connection_.get())) {
    const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event);
    if ((event->response_type & 0x7F) == XCB_GE_GENERIC && generic->extension == extension_ &&
        generic->event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
      const auto* press = reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event);
      hasPress |= !isButtonWheel(press->detail);
    }
    std::free(event);
  }
  if (xcb_connection_has_error(connection_.get()) != 0)
    notifier_->setEnabled(false);
  if (hasPress)
    pressed_(x11::pointer());
}

} // namespace tavrin
