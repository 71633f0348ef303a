#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Devices/SMCConnection.h"
#import "TavrinPlatform/macOS/FanHelper/FanDaemon.h"

#include <IOKit/IOMessage.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

using namespace tavrin;

/// Tells the daemon of sleep, and the system that it may go on.
class SleepWatch {
public:
  explicit SleepWatch(TavrinFanDaemon* daemon) : daemon_(daemon) {
    root_ = IORegisterForSystemPower(this, &port_, told, &notifier_);
    if (root_ != IO_OBJECT_NULL && port_ != nullptr)
      CFRunLoopAddSource(CFRunLoopGetMain(), IONotificationPortGetRunLoopSource(port_),
                         kCFRunLoopCommonModes);
  }
  ~SleepWatch() {
    if (root_ == IO_OBJECT_NULL)
      return;
    IODeregisterForSystemPower(&notifier_);
    IOServiceClose(root_);
    if (port_ != nullptr)
      IONotificationPortDestroy(port_);
  }
  SleepWatch(const SleepWatch&) = delete;
  SleepWatch& operator=(const SleepWatch&) = delete;

private:
  static void told(void* context, io_service_t, std::uint32_t message, void* argument) {
    auto* self = static_cast<SleepWatch*>(context);
    if (message == kIOMessageSystemWillSleep)
      [self->daemon_ sleepChanged:YES];
    if (message == kIOMessageSystemHasPoweredOn)
      [self->daemon_ sleepChanged:NO];
    // Unanswered, the computer waits for half a minute.
    if (message == kIOMessageSystemWillSleep || message == kIOMessageCanSystemSleep)
      IOAllowPowerChange(self->root_, reinterpret_cast<intptr_t>(argument));
  }

  TavrinFanDaemon* daemon_;
  io_connect_t root_ = IO_OBJECT_NULL;
  IONotificationPortRef port_ = nullptr;
  io_object_t notifier_ = IO_OBJECT_NULL;
};

volatile std::sig_atomic_t isOver = 0;

void stop(int) {
  isOver = 1;
}

} // namespace

/// TavrinFanHelper application-identifier team-identifier: as its property list for launchd says.
int main(int count, char** words) {
  @autoreleasepool {
    const auto requirement =
        count == 3 ? FanHelperService::clientRequirement(words[1], words[2]) : std::nullopt;
    if (!requirement || words[2][0] == '\0') {
      std::fprintf(stderr, "usage: TavrinFanHelper application-identifier team-identifier\n");
      return EXIT_FAILURE;
    }
    SMCConnection smc;
    FanControl control(smc, [](double seconds) {
      std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    });
    TavrinFanDaemon* daemon = [[TavrinFanDaemon alloc] initWithControl:&control];
    [daemon begin];
    const SleepWatch sleep(daemon);
    NSXPCListener* listener = [[NSXPCListener alloc]
        initWithMachServiceName:toNSString(FanHelperService::name(words[1]))];
    [listener setConnectionCodeSigningRequirement:toNSString(*requirement)];
    listener.delegate = daemon;
    [listener activate];
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
      std::signal(number, stop);
    constexpr double look = 0.5;
    while (isOver == 0)
      @autoreleasepool {
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, look, false);
      }
    [listener invalidate];
    [daemon end];
  }
  return EXIT_SUCCESS;
}
