#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLock.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/PanelWords.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

using Outcome = InputBlocker::Outcome;

KeyboardLockSettings settingsWith(int minutes, bool locksPointer = true, int holdSeconds = 3) {
  KeyboardLockSettings settings;
  settings.autoUnlockMinutes = minutes;
  settings.locksPointer = locksPointer;
  settings.holdSeconds = holdSeconds;
  return settings;
}

struct LockBench {
  explicit LockBench(const KeyboardLockSettings& settings = {})
      : lock({platform.clock(), platform.loop, platform.blocker, platform.fakeSounds}, settings) {
    lock.onChange = [this] { ++changes; };
  }
  void begin(Outcome outcome = Outcome::holding) {
    lock.lock();
    if (platform.blocker.callbacks.started)
      platform.blocker.callbacks.started(outcome);
  }
  void input(int type) { platform.blocker.callbacks.input(type); }

  FakePlatform platform;
  KeyboardLock lock;
  int changes = 0;
};

TEST(KeyboardLock, HoldsOnceTheSystemAgrees) {
  LockBench bench;
  bench.lock.lock();
  EXPECT_TRUE(bench.lock.isLocking());
  EXPECT_FALSE(bench.lock.isLocked());
  EXPECT_TRUE(bench.platform.fakeSounds.played.empty());
  bench.lock.lock();
  EXPECT_EQ(bench.platform.blocker.holds, 1);
  bench.platform.blocker.callbacks.started(Outcome::holding);
  EXPECT_TRUE(bench.lock.isLocked());
  EXPECT_EQ(bench.lock.lockedSince(), bench.platform.fakeClock.now());
  EXPECT_EQ(bench.lock.unlocksAt(), bench.platform.fakeClock.now() + 120);
  EXPECT_EQ(bench.platform.fakeSounds.played, std::vector<std::string>{"Tink"});
  EXPECT_TRUE(bench.platform.blocker.locksPointer);
  bench.lock.unlock();
  EXPECT_FALSE(bench.platform.blocker.isHeld());
  EXPECT_EQ(bench.platform.loop.activeTimers(), 0U);
}

TEST(KeyboardLock, EveryRefusalSaysWhy) {
  struct Case {
    std::function<void(FakeInputBlocker&)> trouble;
    Outcome outcome;
    const char* words;
  };
  const auto nothing = [](FakeInputBlocker&) {};
  const char* const permission = "Tavrin needs the Accessibility permission to hold the keyboard.";
  const char* const password = "A password field has the keyboard, and the desktop lets nothing "
                               "hold it then. Leave the field and "
                               "lock again.";
  const Case cases[] = {
      {[](auto& blocker) { blocker.permitted = false; }, Outcome::holding, permission},
      {[](auto& blocker) { blocker.secureInput = true; }, Outcome::holding, password},
      {[](auto& blocker) { blocker.screenLocked = true; }, Outcome::holding,
       "The screen is locked, so the keyboard stays free."},
      {nothing, Outcome::notPermitted, permission},
      {nothing, Outcome::secureInput, password},
      {nothing, Outcome::refused, "The desktop refused the lock. Try again in a moment."},
  };
  for (const auto& [trouble, outcome, words] : cases) {
    LockBench bench;
    trouble(bench.platform.blocker);
    bench.begin(outcome);
    EXPECT_EQ(bench.lock.trouble(), words);
    EXPECT_FALSE(bench.lock.isLocked() || bench.lock.isLocking() ||
                 bench.platform.blocker.isHeld());
    EXPECT_TRUE(bench.platform.fakeSounds.played.empty());
    // The next try begins afresh.
    bench.platform.blocker.permitted = true;
    bench.platform.blocker.secureInput = bench.platform.blocker.screenLocked = false;
    bench.begin();
    EXPECT_TRUE(bench.lock.isLocked());
    EXPECT_EQ(bench.lock.trouble(), "");
  }
}

TEST(KeyboardLock, AsksForThePermissionItLacks) {
  LockBench bench;
  bench.platform.blocker.permitted = false;
  bench.begin();
  EXPECT_EQ(bench.platform.blocker.permissionRequests, 1);
}

TEST(KeyboardLock, UnlocksByItself) {
  struct Case {
    int minutes;
    double after;
  };
  for (const auto& [minutes, after] : {Case{1, 60}, {2, 120}, {30, 1800}, {45, 1800}}) {
    LockBench bench(settingsWith(minutes));
    bench.begin();
    bench.platform.loop.advance(after - 1);
    EXPECT_TRUE(bench.lock.isLocked()) << minutes;
    bench.platform.loop.advance(2);
    EXPECT_FALSE(bench.lock.isLocked() || bench.platform.blocker.isHeld()) << minutes;
    EXPECT_NEAR(bench.platform.blocker.longest, after, 5) << "the blocker's own limit";
  }
  for (const int minutes : {0, -1}) {
    LockBench bench(settingsWith(minutes));
    bench.begin();
    bench.platform.loop.advance(100'000);
    EXPECT_TRUE(bench.lock.isLocked());
    EXPECT_EQ(bench.platform.blocker.longest, 0);
  }
}

TEST(KeyboardLock, AHeldClickUnlocks) {
  LockBench bench;
  bench.begin();
  bench.input(1);
  bench.platform.loop.advance(2.9);
  EXPECT_TRUE(bench.lock.isLocked());
  EXPECT_NEAR(bench.lock.hold().progress(bench.platform.fakeClock.now()), 0.97, 0.02);
  bench.platform.loop.advance(0.2);
  EXPECT_FALSE(bench.lock.isLocked());
}

TEST(KeyboardLock, AHoldOfNoTimeStillUnlocks) {
  for (const int seconds : {0, -5}) {
    LockBench bench(settingsWith(0, true, seconds)); // nothing else would end it
    bench.begin();
    bench.input(1);
    bench.platform.loop.advance(1.1);
    EXPECT_FALSE(bench.lock.isLocked()) << seconds;
  }
}

TEST(KeyboardLock, AnEarlyReleaseBeginsAnew) {
  LockBench bench;
  bench.begin();
  for (int i = 0; i < 3; ++i) {
    bench.input(25);
    bench.platform.loop.advance(2);
    bench.input(26);
    EXPECT_EQ(bench.lock.hold().progress(bench.platform.fakeClock.now()), 0);
  }
  EXPECT_TRUE(bench.lock.isLocked());
  // A release that comes late, before the next look, counts as held.
  bench.input(1);
  bench.platform.fakeClock.advance(3.01);
  bench.input(2);
  EXPECT_FALSE(bench.lock.isLocked());
}

TEST(KeyboardLock, WithoutThePointerClicksUnlockNothing) {
  LockBench bench(settingsWith(2, false));
  bench.begin();
  EXPECT_FALSE(bench.platform.blocker.locksPointer);
  bench.input(1);
  bench.input(5);
  bench.input(10);
  bench.platform.loop.advance(10);
  EXPECT_TRUE(bench.lock.isLocked());
  EXPECT_FALSE(bench.lock.hold().began);
  EXPECT_EQ(bench.lock.swallowed(), (KeyboardLock::Swallowed{1, 0}));
}

TEST(KeyboardLock, CountsWhatItSwallows) {
  LockBench bench;
  bench.begin();
  for (const int type : {10, 11, 12, 14, 5, 22, 1, 2, 8, 13})
    bench.input(type);
  EXPECT_EQ(bench.lock.swallowed(), (KeyboardLock::Swallowed{4, 4}));
  bench.lock.unlock();
  bench.begin();
  EXPECT_EQ(bench.lock.swallowed(), KeyboardLock::Swallowed());
}

TEST(KeyboardLock, GivesWayToWhateverNeedsTheKeyboard) {
  const std::function<void(LockBench&)> needs[] = {
      [](LockBench& bench) { bench.platform.blocker.screenLocked = true; },
      [](LockBench& bench) { bench.platform.blocker.secureInput = true; },
      [](LockBench& bench) { bench.platform.blocker.endOfNeed.call(); },
      [](LockBench& bench) { bench.platform.blocker.callbacks.ended(); },
  };
  for (const auto& need : needs) {
    LockBench bench;
    bench.begin();
    need(bench);
    bench.platform.loop.advance(0.6);
    EXPECT_FALSE(bench.lock.isLocked() || bench.platform.blocker.isHeld());
    const bool isLost = &need == &needs[3];
    EXPECT_EQ(bench.lock.trouble(),
              isLost ? "The lock ended because the keyboard could not be held any longer." : "");
  }
  LockBench asking;
  asking.lock.lock();
  asking.platform.blocker.endOfNeed.call();
  EXPECT_FALSE(asking.lock.isLocking() || asking.platform.blocker.isHeld());
}

TEST(KeyboardLock, NewSettingsCountFromTheNextLock) {
  LockBench bench(settingsWith(2, false));
  bench.begin();
  bench.lock.setSettings(settingsWith(5, true));
  EXPECT_FALSE(bench.lock.settings().locksPointer);
  bench.lock.unlock();
  EXPECT_TRUE(bench.lock.settings().locksPointer);
  bench.begin();
  EXPECT_TRUE(bench.platform.blocker.locksPointer);
}

TEST(KeyboardLockViews, Words) {
  EXPECT_EQ(keyboardLockDescription(false), "Holds the keyboard while you clean it.");
  EXPECT_EQ(keyboardLockDescription(true),
            "Holds the keyboard and the trackpad while you clean them.");
  EXPECT_TRUE(holdHint(3).startsWith("Hold a click for 3 seconds"));
  EXPECT_TRUE(holdHint(1).startsWith("Hold a click for 1 second "));
}

TEST(KeyboardLockViews, APanelWithoutALockSaysWhereItIs) {
  LockBench bench;
  const auto name = [] { return QString("Lock"); };
  KeyboardLockPanelView panel({}, bench.lock, {name, {}, {}, {}});
  EXPECT_TRUE(shows(panel, "The keyboard is locked from Tavrin's own Dock."));
  EXPECT_FALSE(offers(panel, "Lock"));
  KeyboardLockPanelView own({}, bench.lock, {name, [] {}, [] {}, {}});
  EXPECT_FALSE(shows(own, "The keyboard is locked from Tavrin's own Dock."));
  EXPECT_TRUE(offers(own, "Lock"));
}

} // namespace
} // namespace tavrin::test
