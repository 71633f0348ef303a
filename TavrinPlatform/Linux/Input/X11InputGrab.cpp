#include "TavrinPlatform/Linux/Input/InputGrab.h"

#include "TavrinPlatform/Linux/Input/LockedModifiers.h"

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace tavrin {
namespace {

template <class T> using Reply = std::unique_ptr<T, decltype(&std::free)>;
template <class T> Reply<T> owned(T* reply) {
  return {reply, std::free};
}

constexpr std::uint16_t allMasterDevices = 1;
constexpr std::uint32_t keyEvents =
    XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
constexpr std::uint32_t pointerEvents = XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS |
                                        XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE |
                                        XCB_INPUT_XI_EVENT_MASK_MOTION;

/// Buttons 4 to 7 are the wheel's.
char typeOfButton(std::uint32_t button, bool isPress) {
  if (button == 1)
    return isPress ? 1 : 2;
  if (button == 3)
    return isPress ? 3 : 4;
  if (button >= 4 && button <= 7)
    return 22;
  return isPress ? 25 : 26;
}

class X11InputGrab final : public InputGrab {
public:
  ~X11InputGrab() override {
    if (connection_ != nullptr)
      xcb_disconnect(connection_);
  }

  Result begin(bool locksPointer) override {
    locksPointer_ = locksPointer;
    if (connection_ == nullptr && !connect())
      return Result::refused;
    const Result result = grabAll();
    if (result != Result::holding)
      release();
    return result;
  }

  /// A grab of one's own is taken again without anything happening.
  bool renew() override { return grabAll() == Result::holding; }

  std::vector<int> descriptors() const override {
    std::vector<int> all{xcb_get_file_descriptor(connection_)};
    if (locks_->descriptor() >= 0)
      all.push_back(locks_->descriptor());
    return all;
  }

  bool read(std::vector<char>& eventTypes) override {
    locks_->restore();
    while (const auto event = owned(xcb_poll_for_event(connection_)))
      if ((event->response_type & 0x7F) == XCB_GE_GENERIC)
        take(reinterpret_cast<const xcb_ge_generic_event_t&>(*event), eventTypes);
    return xcb_connection_has_error(connection_) == 0;
  }

private:
  Result grabAll() {
    const auto devices = owned(xcb_input_xi_query_device_reply(
        connection_, xcb_input_xi_query_device(connection_, allMasterDevices), nullptr));
    if (!devices)
      return Result::refused;
    bool hasKeyboard = false;
    auto device = xcb_input_xi_query_device_infos_iterator(devices.get());
    for (; device.rem > 0; xcb_input_xi_device_info_next(&device)) {
      const bool isKeyboard = device.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD;
      const bool isPointer = device.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER;
      if (!isKeyboard && !(isPointer && locksPointer_))
        continue;
      const Result result = grab(device.data->deviceid, isKeyboard ? keyEvents : pointerEvents);
      if (result != Result::holding)
        return result;
      if (isKeyboard)
        locks_->keep(device.data->deviceid);
      hasKeyboard = hasKeyboard || isKeyboard;
    }
    return hasKeyboard ? Result::holding : Result::refused;
  }

  bool connect() {
    int screen = 0;
    connection_ = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(connection_) != 0)
      return false;
    const auto* extension = xcb_get_extension_data(connection_, &xcb_input_id);
    if (extension == nullptr || extension->present == 0)
      return false;
    const auto version = owned(xcb_input_xi_query_version_reply(
        connection_, xcb_input_xi_query_version(connection_, 2, 2), nullptr));
    if (!version || version->major_version < 2)
      return false;
    auto root = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screen > 0 && root.rem > 1; --screen)
      xcb_screen_next(&root);
    root_ = root.data->root;
    locks_.emplace();
    return true;
  }

  Result grab(std::uint16_t device, std::uint32_t events) {
    const auto reply = owned(xcb_input_xi_grab_device_reply(
        connection_,
        xcb_input_xi_grab_device(connection_, root_, XCB_CURRENT_TIME, XCB_NONE, device,
                                 XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1,
                                 &events),
        nullptr));
    if (!reply)
      return Result::refused;
    if (reply->status == XCB_GRAB_STATUS_SUCCESS)
      return Result::holding;
    return reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED ||
                   reply->status == XCB_GRAB_STATUS_FROZEN
               ? Result::busy
               : Result::refused;
  }

  /// The server gives back all that a connection holds when it goes.
  void release() {
    locks_.reset();
    xcb_disconnect(connection_);
    connection_ = nullptr;
  }

  static void take(const xcb_ge_generic_event_t& event, std::vector<char>& eventTypes) {
    const auto& input = reinterpret_cast<const xcb_input_button_press_event_t&>(event);
    switch (event.event_type) {
    case XCB_INPUT_KEY_PRESS:
      return eventTypes.push_back(10);
    case XCB_INPUT_KEY_RELEASE:
      return eventTypes.push_back(11);
    case XCB_INPUT_BUTTON_PRESS:
      return eventTypes.push_back(typeOfButton(input.detail, true));
    case XCB_INPUT_BUTTON_RELEASE:
      return eventTypes.push_back(typeOfButton(input.detail, false));
    case XCB_INPUT_MOTION:
      return eventTypes.push_back(5);
    default:
      return;
    }
  }

  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = XCB_NONE;
  std::optional<LockedModifiers> locks_;
  bool locksPointer_ = false;
};

} // namespace

std::unique_ptr<InputGrab> InputGrab::x11() {
  return std::make_unique<X11InputGrab>();
}

} // namespace tavrin
