#pragma once

#include "TavrinPlatform/DockProcess.h"

#include <filesystem>

namespace tavrin {

/// The Dock as /proc lists it and psmisc's killall ends it.
class LinuxDockProcess final : public DockProcess {
public:
  explicit LinuxDockProcess(std::filesystem::path processes = "/proc",
                            std::filesystem::path killall = "/usr/bin/killall")
      : processes_(std::move(processes)), killall_(std::move(killall)) {}

  std::optional<Running> running() override;
  /// A killall that does not end within ten seconds is ended.
  KillResult killAll() override;
  double uptime() override;
  void sleep(double seconds) override;

private:
  std::optional<double> age(int process) const;

  std::filesystem::path processes_;
  std::filesystem::path killall_;
};

} // namespace tavrin
