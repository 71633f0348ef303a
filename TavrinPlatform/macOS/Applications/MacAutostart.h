#pragma once

#include "TavrinPlatform/Autostart.h"

#include <filesystem>

namespace tavrin {

/// By a launch agent: a property list in the user's Library/LaunchAgents, which launchd reads when
/// the session begins. The user may forbid it in System Settings, which leaves the file as it is.
class MacAutostart final : public Autostart {
public:
  /// `program` is the command, or lies in a bundle of the same tree; the command is started as
  /// `tavrin start`.
  MacAutostart(const std::filesystem::path& home, const std::filesystem::path& program);

  Status status() override;
  Status set(bool isOn) override;

private:
  std::filesystem::path agent_;
  std::filesystem::path command_;
};

} // namespace tavrin
