#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/POSIX/TerminalPlatform.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "TavrinPlatform/macOS/Applications/MacAutostart.h"
#include "TavrinPlatform/macOS/Applications/MacRunningApplications.h"
#include "TavrinPlatform/macOS/Base/MacText.h"
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

/// Whether the slots' bundles are a team's: then they bring the helper that changes fans.
bool hasTeam() {
  @autoreleasepool {
    NSURL* slot = [NSWorkspace.sharedWorkspace
        URLForApplicationWithBundleIdentifier:toNSString(DockSlot::bundleIdentifier(1))];
    NSBundle* bundle = slot != nil ? [NSBundle bundleWithURL:slot] : nil;
    id team = [bundle objectForInfoDictionaryKey:@"TavrinTeam"];
    return [team isKindOfClass:NSString.class] && ((NSString*)team).length > 0;
  }
}

/// What this system leaves to programs, and what it keeps from them.
DesktopReport reportOf(bool changesFans, bool readsFocus) {
  using enum DesktopReport::State;
  DesktopReport report;
  report.items = {{"surface", good, "The tiles are the Dock's own."},
                  {"players",
                   limited,
                   "Music and Spotify can be seen; the system has no way to other players.",
                   {},
                   {"music"}},
                  {"airdrop",
                   limited,
                   "AirDrop is one entry: the system tells no program what is near.",
                   {},
                   {"airdrop"}}};
  report.items.push_back(
      changesFans
          ? DesktopReport::Item{"fanHelper", good, "A helper can change the fans, once allowed."}
          : DesktopReport::Item{"fanHelper",
                                limited,
                                "Fans can be read, not changed: the bundles are no team's.",
                                "Build with the identifier of your signing team.",
                                {"fans"}});
  report.items.push_back(
      readsFocus ? DesktopReport::Item{"focus", good, "The Focus can be read."}
                 : DesktopReport::Item{"focus", missing,
                                       "The Focus cannot be read: the system shows it only to a "
                                       "team's programs that the user has allowed."});
  return report;
}

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
    return reportOf(hasTeam(), dockServices().focusStatus().isAuthorized());
  }

  bool showsWindows() override { return true; }

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
    if (runLoop_)
      return *runLoop_;
    // A program with windows has made its own.
    if (QCoreApplication::instance() == nullptr) {
      static int count = 1;
      static char name[] = "tavrin";
      static char* arguments[] = {name, nullptr};
      // Otherwise the toolkit makes this an application with a tile in the Dock.
      qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
      application_ = std::make_unique<QGuiApplication>(count, arguments);
      NSApplication.sharedApplication.activationPolicy = NSApplicationActivationPolicyProhibited;
    }
    runLoop_ = std::make_unique<QtRunLoop>();
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
  MacAutostart autostart_{fileManager_->homeFolder(), program()};
};

} // namespace

std::unique_ptr<CommandPlatform> makeCommandPlatform() {
  return std::make_unique<MacCommandPlatform>();
}

} // namespace tavrin
