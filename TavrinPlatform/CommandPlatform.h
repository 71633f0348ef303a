#pragma once

#include "TavrinPlatform/Autostart.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinCore/Desktop/DesktopReport.h"
#include "TavrinPlatform/DistributedNotificationCenter.h"
#include "TavrinPlatform/DockServices.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/MainBundle.h"
#include "TavrinPlatform/RunningApplications.h"

#include <functional>
#include <memory>

namespace tavrin {

/// The services of a program without windows. A member is made when it is first asked for, so
/// that a command that only reads a file pays for no bus.
class CommandPlatform {
public:
  virtual ~CommandPlatform() = default;

  virtual Clock& clock() = 0;
  virtual FileManager& fileManager() = 0;
  virtual MainBundle& mainBundle() = 0;
  virtual DistributedNotificationCenter& notifications() = 0;
  virtual RunningApplications& applications() = 0;
  virtual DockServices& dockServices() = 0;

  virtual Autostart& autostart() = 0;
  /// Looks at the desktop anew each time; may take a second.
  virtual DesktopReport desktopReport() = 0;

  /// Whether a program started from here can show a window.
  virtual bool showsWindows() = 0;

  /// The file this program was started from, links resolved.
  virtual std::filesystem::path program() = 0;

  /// Lets `seconds` pass, in which notifications are delivered.
  virtual void wait(double seconds) = 0;
  /// Sleeps until something was delivered, which need not be a notification.
  virtual void waitForEvent() = 0;

  /// Whether this process may use the terminal it reads from: the terminal is still there, and no
  /// shell has put this process behind it.
  virtual bool ownsTerminal() = 0;
  /// Runs a program in the foreground, on this terminal, and waits for it without limit.
  /// Gives its exit status; 127 where it could not be started.
  virtual int runInForeground(const std::vector<std::string>& words) = 0;
};

/// The services of this system; which system's is chosen with what is linked.
std::unique_ptr<CommandPlatform> makeCommandPlatform();

} // namespace tavrin
