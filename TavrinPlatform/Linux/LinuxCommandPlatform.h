#pragma once

#include "TavrinPlatform/CommandPlatform.h"
#include "TavrinPlatform/Linux/Bus.h"
#include "TavrinPlatform/Linux/BusNotificationCenter.h"
#include "TavrinPlatform/Linux/LinuxDockServices.h"
#include "TavrinPlatform/Linux/LinuxFileManager.h"
#include "TavrinPlatform/Linux/LinuxMainBundle.h"
#include "TavrinPlatform/Linux/LinuxRunningApplications.h"
#include "TavrinPlatform/Linux/QtRunLoop.h"

#include <QCoreApplication>
#include <memory>

namespace tavrin {

/// The services without windows. Needs neither a display nor a bus; without a bus, notifications
/// reach nobody else and applications are told apart by their files.
///
/// Where the session has no bus, the one whose address stands in the file "session-bus" of the
/// state folder is used, and handed on to the programs that are started.
class LinuxCommandPlatform final : public CommandPlatform {
public:
  LinuxCommandPlatform();

  Clock& clock() override { return clock_; }
  FileManager& fileManager() override { return fileManager_; }
  MainBundle& mainBundle() override { return mainBundle_; }
  DistributedNotificationCenter& notifications() override;
  RunningApplications& applications() override;
  DockServices& dockServices() override;
  std::filesystem::path program() override;
  void wait(double seconds) override;
  void waitForEvent() override;
  bool ownsTerminal() override;
  int runInForeground(const std::vector<std::string>& words) override;

private:
  /// Null where there is none.
  Bus* bus();
  void startEventLoop();
  void adoptStoredBusAddress();

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
};

} // namespace tavrin
