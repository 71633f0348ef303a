#pragma once

#include "TavrinPlatform/Linux/Applications/LinuxRunningApplications.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Linux/Base/DesktopFacts.h"
#include "TavrinPlatform/Linux/Command/LinuxAutostart.h"
#include "TavrinPlatform/Linux/Desktop/BusNotificationCenter.h"
#include "TavrinPlatform/Linux/Dock/LinuxDockServices.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"
#include "TavrinPlatform/POSIX/TerminalPlatform.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"

#include <QCoreApplication>
#include <memory>

namespace tavrin {

/// The services without windows. Needs neither a display nor a bus; without a bus, notifications
/// reach nobody else and applications are told apart by their files.
///
/// Where the session has no bus, the one whose address stands in the file "session-bus" of the
/// state folder is used, and handed on to the programs that are started.
class LinuxCommandPlatform final : public TerminalPlatform {
public:
  LinuxCommandPlatform();

  Clock& clock() override { return clock_; }
  FileManager& fileManager() override { return fileManager_; }
  MainBundle& mainBundle() override { return mainBundle_; }
  DistributedNotificationCenter& notifications() override;
  RunningApplications& applications() override;
  DockServices& dockServices() override;
  Autostart& autostart() override;
  DesktopReport desktopReport() override;
  bool showsWindows() override { return tavrin::showsWindows(fileManager_); }
  void wait(double seconds) override;
  void waitForEvent() override;

private:
  /// Null where there is none.
  Bus* bus();
  void startEventLoop();
  void adoptStoredBusAddress();
  std::filesystem::path modulesFolder();

  SystemClock clock_;
  LinuxFileManager fileManager_;
  LinuxMainBundle mainBundle_;
  std::unique_ptr<QCoreApplication> eventLoop_;
  std::unique_ptr<QtRunLoop> runLoop_;
  bool hasLookedForBus_ = false;
  std::unique_ptr<Bus> bus_;
  std::unique_ptr<BusNotificationCenter> notifications_;
  std::unique_ptr<LinuxRunningApplications> applications_;
  std::unique_ptr<LinuxDockServices> dockServices_;
  std::unique_ptr<LinuxAutostart> autostart_;
};

} // namespace tavrin
