#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/CalendarStore.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/Linux/Desktop/BusMediaPlayers.h"
#include "TavrinPlatform/Linux/Desktop/BusNotificationCenter.h"
#include "TavrinPlatform/Linux/Desktop/CanberraPlayer.h"
#include "TavrinPlatform/Linux/Desktop/LinuxNotificationCenter.h"
#include "TavrinPlatform/Linux/Desktop/LinuxWorkspace.h"
#include "TavrinPlatform/Linux/Desktop/SecretServiceKeychain.h"
#include "TavrinPlatform/POSIX/Module.h"

namespace tavrin {

/// What the user's session offers. A member is made when first asked for.
class DesktopServices {
public:
  /// All outlive the services.
  struct Environment {
    const FileManager& files;
    LogSink& log;
    Clock& clock;
    RunLoop& runLoop;
    /// May be null.
    Bus* session;
    /// Gives the system bus, or null.
    std::function<Bus*()> system;
    ModuleFolder modules;
    /// What notices start when they are due.
    std::filesystem::path executable;
    /// A notice was clicked.
    std::function<void()> show;
    /// Empty where there is no Wayland compositor.
    LinuxWorkspace::Foreground foreground;
  };

  explicit DesktopServices(Environment environment) : environment_(std::move(environment)) {}

  DistributedNotificationCenter& notifications();
  Workspace& workspace();
  UserNotificationCenter& userNotifications();
  SoundPlayer& sounds();
  CalendarStore& calendars();
  MediaPlayers& mediaPlayers();
  Keychain& keychain() { return keychain_; }

private:
  Environment environment_;
  std::unique_ptr<BusNotificationCenter> notifications_;
  std::unique_ptr<LinuxWorkspace> workspace_;
  std::unique_ptr<LinuxNotificationCenter> userNotifications_;
  std::unique_ptr<CanberraPlayer> sounds_;
  std::unique_ptr<CalendarStore> calendars_;
  std::unique_ptr<BusMediaPlayers> mediaPlayers_;
  SecretServiceKeychain keychain_;
};

} // namespace tavrin
