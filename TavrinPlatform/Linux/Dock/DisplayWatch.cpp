#include "TavrinPlatform/Linux/Dock/DisplayWatch.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace tavrin {
namespace {

/// wl_display_connect(3): a path of its own, or a name in the runtime folder.
std::string compositorSocket() {
  const char* display = std::getenv("WAYLAND_DISPLAY");
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (display == nullptr || *display == '\0')
    return {};
  const std::filesystem::path name(display);
  return name.is_absolute()  ? name.string()
         : folder == nullptr ? std::string()
                             : (std::filesystem::path(folder) / name).string();
}

} // namespace

DisplayWatch::DisplayWatch(std::function<void()> ended) : ended_(std::move(ended)) {
  if (!watchCompositor())
    watchServer();
}

DisplayWatch::~DisplayWatch() {
  notifier_.reset();
  if (compositor_ >= 0)
    ::close(compositor_);
}

void DisplayWatch::follow(int descriptor, std::function<bool()> hasEnded) {
  notifier_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated,
                   [this, hasEnded = std::move(hasEnded)] {
                     if (!hasEnded())
                       return;
                     notifier_->setEnabled(false);
                     ended_();
                   });
}

bool DisplayWatch::watchCompositor() {
  const auto path = compositorSocket();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path)
    return false;
  path.copy(address.sun_path, path.size());
  compositor_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (compositor_ < 0 ||
      ::connect(compositor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    return false;
  // A client that asks for nothing is told nothing.
  follow(compositor_, [this] {
    char byte = 0;
    return ::recv(compositor_, &byte, 1, 0) == 0;
  });
  return true;
}

void DisplayWatch::watchServer() {
  DisplayConnection connection(xcb_connect(nullptr, nullptr));
  if (xcb_connection_has_error(connection.get()) != 0)
    return;
  server_ = std::move(connection);
  follow(xcb_get_file_descriptor(server_.get()), [this] {
    while (auto* event = xcb_poll_for_event(server_.get()))
      std::free(event);
    return xcb_connection_has_error(server_.get()) != 0;
  });
}

} // namespace tavrin
