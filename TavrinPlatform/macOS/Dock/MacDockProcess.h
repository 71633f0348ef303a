#pragma once

#include "TavrinPlatform/POSIX/DockKiller.h"

namespace tavrin {

/// The Dock as the system's list of processes has it.
class MacDockProcess final : public DockKiller {
public:
  explicit MacDockProcess(std::filesystem::path killall = "/usr/bin/killall")
      : DockKiller(std::move(killall)) {}

  std::optional<Running> running() override;
};

} // namespace tavrin
