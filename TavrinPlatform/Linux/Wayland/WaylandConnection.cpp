#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>

namespace tavrin {

namespace {

/// For how long a compositor may take over an answer.
constexpr std::chrono::seconds answerLimit{2};

int millisecondsUntil(std::chrono::steady_clock::time_point end) {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count() + 1, 0));
}

} // namespace

WaylandRegistry::WaylandRegistry(wl_display* display)
    : registry_(wl_display_get_registry(display)) {
  static const wl_registry_listener listener{
      [](void* self, wl_registry*, std::uint32_t number, const char* name, std::uint32_t version) {
        static_cast<WaylandRegistry*>(self)->globals_.push_back({number, name, version});
      },
      [](void* self, wl_registry*, std::uint32_t number) {
        std::erase_if(static_cast<WaylandRegistry*>(self)->globals_,
                      [number](const Global& global) { return global.number == number; });
      }};
  wl_registry_add_listener(registry_.get(), &listener, this);
}

const WaylandRegistry::Global* WaylandRegistry::find(std::string_view interface) const {
  const auto found = std::ranges::find(globals_, interface, &Global::name);
  return found == globals_.end() ? nullptr : &*found;
}

void* WaylandRegistry::bindGlobal(const Global& global, const wl_interface& interface,
                                  std::uint32_t most) const {
  return wl_registry_bind(registry_.get(), global.number, &interface,
                          std::min(global.version, most));
}

void* WaylandRegistry::bindAny(const wl_interface& interface, std::uint32_t most) const {
  const Global* global = find(interface.name);
  return global == nullptr ? nullptr : bindGlobal(*global, interface, most);
}

std::filesystem::path sessionFile(const std::string& purpose) {
  const auto value = [](const char* name) {
    const char* text = std::getenv(name);
    return std::string(text == nullptr ? "" : text);
  };
  std::string display = value("WAYLAND_DISPLAY");
  std::ranges::replace(display, '/', '-');
  return std::filesystem::path(value("XDG_RUNTIME_DIR")) / ("tavrin-" + purpose + "-" + display);
}

WaylandConnection::WaylandConnection() : display_(wl_display_connect(nullptr)) {
  if (!display_)
    return;
  registry_ = std::make_unique<WaylandRegistry>(display_.get());
  if (!roundTrip())
    registry_.reset();
}

bool WaylandConnection::roundTrip() {
  bool isAnswered = false;
  const ProxyPtr<wl_callback> callback(wl_display_sync(display_.get()));
  static const wl_callback_listener listener{
      [](void* answered, wl_callback*, std::uint32_t) { *static_cast<bool*>(answered) = true; }};
  wl_callback_add_listener(callback.get(), &listener, &isAnswered);
  const auto end = std::chrono::steady_clock::now() + answerLimit;
  std::vector<pollfd> nobody;
  while (!isAnswered && wl_display_get_error(display_.get()) == 0) {
    const int left = millisecondsUntil(end);
    if (left == 0)
      break;
    wait(nobody, left);
  }
  return isAnswered;
}

bool WaylandConnection::flush() {
  return wl_display_flush(display_.get()) >= 0 || errno != EAGAIN;
}

void WaylandConnection::wait(std::vector<pollfd>& others, int milliseconds) {
  while (wl_display_prepare_read(display_.get()) != 0)
    if (wl_display_dispatch_pending(display_.get()) != 0)
      milliseconds = 0;
  const short wanted = flush() ? POLLIN : POLLIN | POLLOUT;
  others.push_back({descriptor(), wanted, 0});
  const int ready = ::poll(others.data(), others.size(), milliseconds);
  const short heard = ready > 0 ? others.back().revents : short{0};
  others.pop_back();
  if ((heard & (POLLIN | POLLHUP | POLLERR)) != 0)
    wl_display_read_events(display_.get());
  else
    wl_display_cancel_read(display_.get());
  if (ready <= 0)
    for (auto& other : others)
      other.revents = 0;
  wl_display_dispatch_pending(display_.get());
}

} // namespace tavrin
