#pragma once

#include "TavrinPlatform/Linux/Wayland/Proxies.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <poll.h>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// What a compositor announces, and objects of that.
class WaylandRegistry {
public:
  /// On a display's default queue; `display` outlives this. Known after a round trip.
  explicit WaylandRegistry(wl_display* display);

  bool has(std::string_view interface) const { return find(interface) != nullptr; }
  /// The first global of this interface, in the least of its version and `most`; null where there
  /// is none.
  template <class Proxy> Proxy* bind(const wl_interface& interface, std::uint32_t most) const {
    return static_cast<Proxy*>(bindAny(interface, most));
  }

  /// All globals of this interface, likewise.
  template <class Proxy>
  std::vector<Proxy*> bindAll(const wl_interface& interface, std::uint32_t most) const {
    std::vector<Proxy*> all;
    for (const Global& global : globals_)
      if (global.name == interface.name)
        all.push_back(static_cast<Proxy*>(bindGlobal(global, interface, most)));
    return all;
  }

private:
  struct Global {
    std::uint32_t number;
    std::string name;
    std::uint32_t version;
  };
  const Global* find(std::string_view interface) const;
  void* bindGlobal(const Global& global, const wl_interface& interface, std::uint32_t most) const;
  void* bindAny(const wl_interface& interface, std::uint32_t most) const;

  ProxyPtr<wl_registry> registry_;
  std::vector<Global> globals_;
};

/// A file in the runtime folder for what the slots on this display have between them.
std::filesystem::path sessionFile(const std::string& purpose);

/// A connection of this process's own, beside the toolkit's. Where no compositor answers in time,
/// `isOpen` is false and nothing else may be called.
class WaylandConnection {
public:
  WaylandConnection();

  bool isOpen() const { return display_ && registry_ && wl_display_get_error(display_.get()) == 0; }
  wl_display* display() const { return display_.get(); }
  const WaylandRegistry& registry() const { return *registry_; }
  int descriptor() const { return wl_display_get_fd(display_.get()); }
  /// Sends what is waiting, and returns once the compositor has answered it; false when it did not
  /// in time.
  bool roundTrip();
  /// Sends what is waiting, as far as the compositor takes it. False when some is left.
  bool flush();
  /// Waits for what the compositor says, and for `others`, at most `milliseconds` (below zero:
  /// without end), and handles it. `others` have their results then.
  void wait(std::vector<pollfd>& others, int milliseconds);

private:
  struct Disconnect {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
  };
  std::unique_ptr<wl_display, Disconnect> display_;
  std::unique_ptr<WaylandRegistry> registry_;
};

} // namespace tavrin
