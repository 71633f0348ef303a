#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/FanHelperClient.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/POSIX/HandlerList.h"

#include <vector>

namespace tavrin {

/// The helper on the system bus. It is registered by being installed; a user approves by the
/// dialog of polkit, which the helper's call brings up.
class BusFanHelper final : public FanHelperClient {
public:
  static constexpr const char* serviceName = "dev.quellby.tavrin.fan-helper";
  static constexpr const char* path = "/dev/quellby/tavrin/FanHelper";
  static constexpr const char* interface = "dev.quellby.tavrin.FanHelper";
  /// A dialog may stand open for as long.
  static constexpr double patience = 180;

  /// `system` gives the system bus, or null.
  BusFanHelper(RunLoop& runLoop, std::function<Bus*()> system)
      : runLoop_(runLoop), system_(std::move(system)) {}

  Status status() override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override;
  void registerHelper(Reply reply) override;
  void unregisterHelper(Reply reply) override;
  void openApprovalSettings() override {}
  void setFull(bool full, Reply reply) override;

private:
  void look();
  void refuse(const Reply& reply);

  RunLoop& runLoop_;
  std::function<Bus*()> system_;
  HandlerList changes_;
  Status status_ = Status::notRegistered;
  bool hasLooked_ = false;
  Lifetime alive_;
};

} // namespace tavrin
