#pragma once

#include "TavrinPlatform/FocusStatusProvider.h"

#include <memory>
#include <mutex>
#include <systemd/sd-bus.h>

namespace tavrin {

/// Whether notifications are held back: what the notification server itself says (its property
/// "Inhibited", or that it is paused), else the desktop's do-not-disturb setting (Xfce's, or that
/// banners are off in GNOME). Asks on a connection of its own and starts no service; an answer is
/// waited for two seconds at most.
class LinuxFocusStatusProvider final : public FocusStatusProvider {
public:
  std::optional<bool> isFocused() override;
  /// Whether there is a session bus to ask.
  bool isAuthorized() override;

private:
  struct CloseAndFree {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
  };
  sd_bus* connection();

  std::mutex lock_;
  std::unique_ptr<sd_bus, CloseAndFree> bus_;
};

} // namespace tavrin
