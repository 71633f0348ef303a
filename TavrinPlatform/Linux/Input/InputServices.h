#pragma once

#include "TavrinPlatform/Linux/Input/LinuxColourSampler.h"
#include "TavrinPlatform/Linux/Input/LinuxGlobalShortcuts.h"
#include "TavrinPlatform/Linux/Input/LinuxInputBlocker.h"

namespace tavrin {

/// What reads the keyboard and the pointer. A member is made when first asked for.
class InputServices {
public:
  /// `session` may be null, `system` gives the system bus, or null. All outlive this.
  InputServices(RunLoop& runLoop, Bus* session, std::function<Bus*()> system,
                std::string identifier)
      : runLoop_(runLoop), session_(session), system_(std::move(system)),
        identifier_(std::move(identifier)) {}

  InputBlocker& blocker() {
    if (!blocker_)
      blocker_ = std::make_unique<LinuxInputBlocker>(runLoop_, session_, system_);
    return *blocker_;
  }
  ColourSampler& sampler() {
    if (!sampler_)
      sampler_ = std::make_unique<LinuxColourSampler>(session_);
    return *sampler_;
  }
  GlobalShortcuts& shortcuts() {
    if (!shortcuts_)
      shortcuts_ = std::make_unique<LinuxGlobalShortcuts>(session_, identifier_);
    return *shortcuts_;
  }

private:
  RunLoop& runLoop_;
  Bus* session_;
  std::function<Bus*()> system_;
  std::string identifier_;
  std::unique_ptr<LinuxInputBlocker> blocker_;
  std::unique_ptr<LinuxColourSampler> sampler_;
  std::unique_ptr<LinuxGlobalShortcuts> shortcuts_;
};

} // namespace tavrin
