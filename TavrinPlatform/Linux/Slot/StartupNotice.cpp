#include "TavrinPlatform/Linux/Slot/StartupNotice.h"

#include "TavrinPlatform/Linux/Base/OwnedReply.h"
#include "TavrinPlatform/Linux/Base/XRequests.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>
#include <memory>
#include <optional>
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace tavrin {
namespace {

constexpr int answerMilliseconds = 300;
constexpr std::size_t messageRoom = 20;
constexpr std::size_t longestMessage = 4000;
constexpr std::size_t longestValue = 500;

/// A connection with a window that messages can be sent from.
class NoticeConnection {
public:
  explicit NoticeConnection(const std::string& display)
      : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (display.empty() || xcb_connection_has_error(connection_) != 0)
      return;
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    window_ = xcb_generate_id(connection_);
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, root_, -100, -100, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  }
  ~NoticeConnection() { xcb_disconnect(connection_); }
  NoticeConnection(const NoticeConnection&) = delete;
  NoticeConnection& operator=(const NoticeConnection&) = delete;

  bool isOpen() const { return window_ != XCB_NONE; }

  /// The server's time in milliseconds, as the events of just now carry it.
  std::optional<xcb_timestamp_t> time() {
    xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window_, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(connection_);
    pollfd descriptor{xcb_get_file_descriptor(connection_), POLLIN, 0};
    while (xcb_connection_has_error(connection_) == 0) {
      while (const auto event = OwnedReply<xcb_generic_event_t>(xcb_poll_for_event(connection_)))
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY)
          return reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
      if (::poll(&descriptor, 1, answerMilliseconds) <= 0)
        break;
    }
    return std::nullopt;
  }

  /// In pieces of twenty bytes, the last one ended by a zero.
  void send(std::string message) {
    message.resize(std::min(message.size(), longestMessage));
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = window_;
    constexpr std::string_view names[] = {"_NET_STARTUP_INFO_BEGIN", "_NET_STARTUP_INFO"};
    const auto atoms = x11::atoms(connection_, names);
    event.type = atoms[0];
    for (std::size_t place = 0; place <= message.size(); place += messageRoom) {
      std::memset(event.data.data8, 0, messageRoom);
      const auto size = std::min(messageRoom, message.size() - place);
      std::memcpy(event.data.data8, message.data() + place, size);
      xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_PROPERTY_CHANGE,
                     reinterpret_cast<const char*>(&event));
      event.type = atoms[1];
    }
    // The server has them all before the connection goes.
    const OwnedReply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }

private:
  xcb_connection_t* connection_;
  xcb_window_t root_ = XCB_NONE;
  xcb_window_t window_ = XCB_NONE;
};

} // namespace

std::string quotedNoticeValue(const std::string& value) {
  std::string quoted = "\"";
  for (const char c : value) {
    if (c == '"' || c == '\\')
      quoted.push_back('\\');
    if (c != '\0')
      quoted.push_back(c);
  }
  return quoted + "\"";
}

std::string beginStartupNotice(const std::string& display, const StartupNotice& notice) {
  NoticeConnection connection(display);
  const auto time = connection.isOpen() ? connection.time() : std::nullopt;
  if (!time)
    return {};
  static std::atomic<int> count = 0;
  const std::string id = fmt::format("tavrin-{}-{}_TIME{}", ::getpid(), ++count, *time);
  std::string message = "new: ID=" + quotedNoticeValue(id) + " SCREEN=0";
  const auto add = [&](const char* key, const std::string& value) {
    if (!value.empty() && value.size() <= longestValue)
      message += fmt::format(" {}={}", key, quotedNoticeValue(value));
  };
  add("NAME", notice.name);
  add("BIN", notice.binary);
  add("ICON", notice.icon);
  add("WMCLASS", notice.windowClass);
  add("APPLICATION_ID", notice.file);
  connection.send(message);
  return id;
}

void endStartupNotice(const std::string& display, const std::string& id) {
  if (id.empty())
    return;
  if (NoticeConnection connection(display); connection.isOpen())
    connection.send("remove: ID=" + quotedNoticeValue(id));
}

} // namespace tavrin
