#pragma once

#include "TavrinPlatform/Autostart.h"
#include "TavrinPlatform/Linux/Base/Bus.h"

#include <filesystem>
#include <functional>

namespace tavrin {

/// By a service of the user's systemd where that runs the session (its "graphical-session.target"
/// is active), else by an entry in the desktop's autostart folder (freedesktop.org). There is never
/// more than one of the two.
class LinuxAutostart final : public Autostart {
public:
  /// `bus` may give null. `configuration` is the user's folder of settings; `program` is started as
  /// `program start`.
  LinuxAutostart(std::filesystem::path configuration, std::filesystem::path program,
                 std::function<Bus*()> bus);

  Status status() override;
  Status set(bool isOn) override;

private:
  std::filesystem::path unit() const { return configuration_ / "systemd/user/tavrin.service"; }
  std::filesystem::path wish() const {
    return configuration_ / "systemd/user/graphical-session.target.wants/tavrin.service";
  }
  std::filesystem::path entry() const {
    return configuration_ / "autostart/dev.quellby.Tavrin.desktop";
  }
  /// Whether the user's systemd has begun a graphical session.
  bool isSessionManaged();
  void reloadManager();

  std::filesystem::path configuration_;
  std::filesystem::path program_;
  std::function<Bus*()> bus_;
};

} // namespace tavrin
