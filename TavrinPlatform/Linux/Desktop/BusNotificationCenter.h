#pragma once

#include "TavrinPlatform/DistributedNotificationCenter.h"
#include "TavrinPlatform/Linux/Base/Bus.h"

#include <map>
#include <memory>

namespace tavrin {

/// A post is the signal `Posted(name)` or `Posted(name, object)` of the interface
/// "dev.quellby.tavrin.Notifications" on "/dev/quellby/tavrin/Notifications". The bus hands a
/// sender its own signals back, so every observer is reached one way. Without a bus, or once it
/// is lost, posts reach the observers of this process, after the caller has returned.
class BusNotificationCenter final : public DistributedNotificationCenter {
public:
  /// `bus` may be null.
  BusNotificationCenter(Bus* bus, RunLoop& runLoop) : bus_(bus), runLoop_(runLoop) {}

  using DistributedNotificationCenter::post;
  void post(const std::string& name, const std::optional<std::string>& object) override;
  [[nodiscard]] TokenPtr observe(const std::string& name, Handler handler) override;

private:
  class Observation;

  Bus* bus_;
  RunLoop& runLoop_;
  std::shared_ptr<std::multimap<std::string, Observation*>> observations_ =
      std::make_shared<std::multimap<std::string, Observation*>>();
};

} // namespace tavrin
