#include "TavrinPlatform/POSIX/TerminalPlatform.h"
#include "TavrinPlatform/POSIX/UnavailableServices.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "TavrinPlatform/macOS/Applications/MacRunningApplications.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"
#include "TavrinPlatform/macOS/Dock/MacDockServices.h"
#include "TavrinPlatform/macOS/Slot/MacFileManager.h"
#include "TavrinPlatform/macOS/Slot/MacMainBundle.h"

#import <AppKit/AppKit.h>

#include <QEventLoop>
#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <thread>

namespace tavrin {
namespace {

/// The services without windows. The toolkit's event loop is made only for what needs keys of the
/// whole desktop; everything else is served by the system's loop, which is the same one.
class MacCommandPlatform final : public TerminalPlatform {
public:
  Clock& clock() override { return clock_; }
  FileManager& fileManager() override { return *fileManager_; }
  MainBundle& mainBundle() override { return *mainBundle_; }
  DistributedNotificationCenter& notifications() override {
    if (!notifications_)
      notifications_ = makeMacDistributedNotificationCenter();
    return *notifications_;
  }
  RunningApplications& applications() override {
    if (!applications_)
      applications_ = makeMacRunningApplications(*fileManager_);
    return *applications_;
  }
  DockServices& dockServices() override {
    if (!dockServices_)
      dockServices_ =
          std::make_unique<MacDockServices>([this]() -> RunLoop& { return eventLoop(); });
    return *dockServices_;
  }

  Autostart& autostart() override { return autostart_; }
  DesktopReport desktopReport() override {
    return {{{"surface", DesktopReport::State::good, "The tiles are the Dock's own."}}};
  }

  void wait(double seconds) override {
    using Moment = std::chrono::steady_clock;
    const auto end = Moment::now() + std::chrono::duration<double>(seconds);
    for (double left = seconds; left > 0;) {
      runLoop(left);
      left = std::chrono::duration<double>(end - Moment::now()).count();
    }
  }
  void waitForEvent() override {
    constexpr double anHour = 3600;
    runLoop(anHour);
  }

private:
  /// Returns after one event, or after `seconds`.
  static void runLoop(double seconds) {
    constexpr double nap = 0.1;
    @autoreleasepool {
      // A loop without any source returns at once, again and again.
      if (CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, true) == kCFRunLoopRunFinished)
        std::this_thread::sleep_for(std::chrono::duration<double>(std::min(seconds, nap)));
    }
  }

  RunLoop& eventLoop() {
    if (!application_) {
      static int count = 1;
      static char name[] = "tavrin";
      static char* arguments[] = {name, nullptr};
      // Otherwise the toolkit makes this an application with a tile in the Dock.
      qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
      application_ = std::make_unique<QGuiApplication>(count, arguments);
      NSApplication.sharedApplication.activationPolicy = NSApplicationActivationPolicyProhibited;
      runLoop_ = std::make_unique<QtRunLoop>();
    }
    return *runLoop_;
  }

  SystemClock clock_;
  std::unique_ptr<FileManager> fileManager_ = makeMacFileManager();
  std::unique_ptr<MainBundle> mainBundle_ = makeMacMainBundle();
  std::unique_ptr<QGuiApplication> application_;
  std::unique_ptr<QtRunLoop> runLoop_;
  std::unique_ptr<DistributedNotificationCenter> notifications_;
  std::unique_ptr<RunningApplications> applications_;
  std::unique_ptr<DockServices> dockServices_;
  UnavailableAutostart autostart_;
};

} // namespace

std::unique_ptr<CommandPlatform> makeCommandPlatform() {
  return std::make_unique<MacCommandPlatform>();
}

} // namespace tavrin
