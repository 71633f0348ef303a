#pragma once

#include "TavrinPlatform/Linux/Base/DesktopFacts.h"

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace tavrin {

/// Tells when the display that this process was started on ends: the Wayland compositor where there
/// is one, else the X server. Where there is neither, nothing is told.
class DisplayWatch {
public:
  explicit DisplayWatch(std::function<void()> ended);
  ~DisplayWatch();
  DisplayWatch(const DisplayWatch&) = delete;
  DisplayWatch& operator=(const DisplayWatch&) = delete;

private:
  bool watchCompositor();
  void watchServer();
  void follow(int descriptor, std::function<bool()> hasEnded);

  std::function<void()> ended_;
  int compositor_ = -1;
  DisplayConnection server_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace tavrin
