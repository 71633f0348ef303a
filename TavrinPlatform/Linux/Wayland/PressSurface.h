#pragma once

#include "TavrinPlatform/Linux/Wayland/ClearSurface.h"
#include "TavrinPlatform/Linux/Wayland/Outputs.h"

#include <QSocketNotifier>
#include <functional>
#include <map>

namespace tavrin {

/// A clear surface over each output, on a connection of its own, that hears of the next press of a
/// button on whatever lies under it. The press goes no further. What this process drags passes
/// through to what lies under it.
class PressSurface {
public:
  /// `spared` are parts of outputs by their names, in their points, whose presses are left to
  /// others.
  PressSurface(const std::map<std::string, std::vector<QRect>>& spared,
               std::function<void()> pressed);
  ~PressSurface();

private:
  void listen();
  void listenToDrags();
  void read();
  void letDragThrough();

  std::function<void()> pressed_;
  WaylandConnection connection_;
  std::unique_ptr<Outputs> outputs_;
  std::vector<std::unique_ptr<ClearSurface>> surfaces_;
  ProxyPtr<wl_seat> seat_;
  ProxyPtr<wl_pointer> pointer_;
  std::unique_ptr<QSocketNotifier> notifier_;
  ProxyPtr<wl_data_device> drags_;
  ProxyPtr<wl_data_offer> offer_;
  bool isPressed_ = false;
  bool isDragged_ = false;
};

} // namespace tavrin
