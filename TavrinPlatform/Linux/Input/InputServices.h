#pragma once

#include "TavrinPlatform/Linux/Input/LinuxColourSampler.h"
#include "TavrinPlatform/Linux/Input/LinuxGlobalShortcuts.h"
#include "TavrinPlatform/Linux/Input/LinuxInputBlocker.h"

namespace tavrin {

/// What reads the keyboard and the pointer. A member is made when first asked for.
class InputServices {
public:
  /// All outlive the services.
  struct Environment {
    RunLoop& runLoop;
    /// May be null.
    Bus* session;
    /// Gives the system bus, or null.
    std::function<Bus*()> system;
    std::string identifier;
    /// Whether a Wayland compositor has the keys and the screen.
    bool isOnCompositor;
    LinuxColourSampler::ScreenPick pickOnScreen;
  };
  explicit InputServices(Environment environment) : environment_(std::move(environment)) {}

  InputBlocker& blocker() {
    if (!blocker_)
      blocker_ = std::make_unique<LinuxInputBlocker>(environment_.runLoop, environment_.session,
                                                     environment_.system);
    return *blocker_;
  }
  ColourSampler& sampler() {
    if (!sampler_)
      sampler_ =
          std::make_unique<LinuxColourSampler>(environment_.session, environment_.pickOnScreen);
    return *sampler_;
  }
  GlobalShortcuts& shortcuts() {
    if (!shortcuts_)
      shortcuts_ = std::make_unique<LinuxGlobalShortcuts>(
          environment_.session, environment_.identifier, environment_.isOnCompositor);
    return *shortcuts_;
  }

private:
  Environment environment_;
  std::unique_ptr<LinuxInputBlocker> blocker_;
  std::unique_ptr<LinuxColourSampler> sampler_;
  std::unique_ptr<LinuxGlobalShortcuts> shortcuts_;
};

} // namespace tavrin
