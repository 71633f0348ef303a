#pragma once
#include "Tests/Support/ManualRunLoop.h"
#include "Tests/macOS/Fakes/AppKitFakes.h"
#include "Tests/macOS/Fakes/InputFakes.h"
#include "Tests/macOS/Fakes/KitFakes.h"
#include "Tests/macOS/Fakes/PasteboardFakes.h"
#include "Tests/macOS/Fakes/ServiceFakes.h"
#include "Tests/macOS/Fakes/SystemFakes.h"

#include <gtest/gtest.h>

extern "C" void* objc_autoreleasePoolPush();
extern "C" void objc_autoreleasePoolPop(void* mark);

namespace tavrin::test {

using Calls = std::vector<std::string>;

/// What was called since the last look.
inline Calls called() { return std::exchange(calls, {}); }

/// Begins with fresh fakes. At its end no object may live that did not before.
class MacFakes {
public:
  MacFakes() {
    foundation = {};
    foundation.information["CFBundleIdentifier"] = @"dev.quellby.Tavrin.Slot3";
    appKit = {};
    eventKit = {};
    pasteboard = {};
    input = {};
    services = {};
    kernel = {};
    frontmost = 0;
    pool_ = objc_autoreleasePoolPush();
    (void)NSOperationQueue.mainQueue;
    for (NSNotificationCenter* center :
         {NSNotificationCenter.defaultCenter, NSWorkspace.sharedWorkspace.notificationCenter,
          (NSNotificationCenter*)[NSDistributedNotificationCenter defaultCenter]})
      observers_ += center.observers;
    (void)NSApplication.sharedApplication.dockTile;
    calls.clear();
    tavrin_snapshot();
  }
  MacFakes(const MacFakes&) = delete;
  MacFakes& operator=(const MacFakes&) = delete;
  ~MacFakes() {
    appKit = {};
    eventKit = {};
    pasteboard = {};
    notifications.asked = nil;
    notifications.pending.clear();
    services = {};
    EXPECT_EQ(kernel.streams, 0) << "streams of changes";
    EXPECT_EQ(kernel.queues, 0) << "queues";
    EXPECT_EQ(kernel.misuses, Calls{});
    kernel = {};
    foundation = {};
    NSApplication.sharedApplication.dockTile.contentView = nil;
    NSUInteger observers = 0;
    for (NSNotificationCenter* center :
         {NSNotificationCenter.defaultCenter, NSWorkspace.sharedWorkspace.notificationCenter,
          (NSNotificationCenter*)[NSDistributedNotificationCenter defaultCenter]})
      observers += center.observers;
    EXPECT_EQ(observers, observers_) << "somebody still listens";
    objc_autoreleasePoolPop(pool_);
    EXPECT_EQ(tavrin_left(), 0) << "objects were left";
  }

  /// What is made once and stays.
  void settle(void (*make)()) {
    make();
    tavrin_snapshot();
  }

  ManualClock clock_{Date{0}};
  ManualRunLoop runLoop_{clock_};

private:
  void* pool_;
  NSUInteger observers_ = 0;
};

class MacTest : public MacFakes, public testing::Test {};

} // namespace tavrin::test
