#pragma once

#include "TavrinPlatform/DockProcess.h"

#include <filesystem>

namespace tavrin {

/// What is the same of the Dock's process on every Unix: "killall" and the clock.
class DockKiller : public DockProcess {
public:
  /// A killall that does not end within ten seconds is ended.
  KillResult killAll() override;
  double uptime() override;
  void sleep(double seconds) override;

protected:
  static constexpr const char* dockName = "Dock";

  explicit DockKiller(std::filesystem::path killall) : killall_(std::move(killall)) {}

private:
  std::filesystem::path killall_;
};

} // namespace tavrin
