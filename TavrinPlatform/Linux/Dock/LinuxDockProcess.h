#pragma once

#include "TavrinPlatform/POSIX/DockKiller.h"

namespace tavrin {

/// The Dock as /proc lists it and psmisc's killall ends it.
class LinuxDockProcess final : public DockKiller {
public:
  explicit LinuxDockProcess(std::filesystem::path processes = "/proc",
                            std::filesystem::path killall = "/usr/bin/killall")
      : DockKiller(std::move(killall)), processes_(std::move(processes)) {}

  std::optional<Running> running() override;

private:
  std::optional<double> age(int process) const;

  std::filesystem::path processes_;
};

} // namespace tavrin
