#pragma once

#include "TavrinCore/Dock/DockReloader.h"
#include "TavrinPlatform/DockProcess.h"

namespace tavrin {

/// Restarts the Dock by ending its process, which the system starts again.
class SystemDockReloader final : public DockReloader {
public:
  /// A Dock younger than this, in seconds, may still write its old items.
  static constexpr double settleInterval = 2.0;
  /// How long a new process may take, and how often it is looked for, in seconds.
  static constexpr double relaunchLimit = 5.0;
  static constexpr double relaunchPoll = 0.1;

  explicit SystemDockReloader(DockProcess& process) : process_(process) {}

  void waitUntilSettled() override;
  void reload() override;

private:
  DockProcess& process_;
};

} // namespace tavrin
