#include "TavrinSlot/Controllers/Runs/TimerWidget.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "Tests/Support/SlotRig.h"

#include <QLabel>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Mode = TimerRun::Mode;
const std::string timerNoticeID = "dev.quellby.Tavrin.Slot3.finished";

struct TimerWidgetTest : testing::Test {
  SlotRig rig;
  DockWidget widget{UUID(), "Tea", 3, TimerSettings{}, 1};

  Living<TimerWidgetController> start() {
    return begun<TimerWidgetController>(rig.context(), widget);
  }
  Living<TimerWidgetController> startOpen() {
    auto controller = start();
    controller->togglePanel();
    return controller;
  }
  TimerRun stored() const { return decode<TimerRun>(rig.platform.defaults.values.at("timerRun")); }
  void store(const TimerRun& run) { rig.platform.defaults.values["timerRun"] = encode(run); }
  void chooseMode(int index) {
    auto* mode = rig.panel.rootView()->findChild<QWidget*>();
    for (auto* child : rig.panel.rootView()->findChildren<QWidget*>())
      if (auto* segments = dynamic_cast<PanelSegments*>(child)) {
        segments->setCurrent(index);
        segments->onChange(index);
        mode = segments;
      }
    ASSERT_NE(dynamic_cast<PanelSegments*>(mode), nullptr);
  }
  const auto& notices() const { return rig.platform.notices.pending; }
  const auto& sounds() const { return rig.platform.fakeSounds.played; }
};

TEST_F(TimerWidgetTest, AFreshOneIsSavedAndAtRest) {
  for (const char* stored : {"", "7", R"({"mode":"egg","duration":1,"accumulated":0})"}) {
    rig.platform.defaults.values.clear();
    if (*stored)
      rig.platform.defaults.values["timerRun"] = JSONValue::parse(stored);
    const auto controller = start();
    EXPECT_EQ(this->stored(), TimerRun{}) << stored;
    EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);
  }
  EXPECT_EQ(rig.platform.tile.name, "Timer");
  EXPECT_EQ(rig.platform.tile.value, "25:00, Remaining");
}

TEST_F(TimerWidgetTest, LifeOfACountdown) {
  const auto controller = startOpen();
  rig.press("5m");
  EXPECT_EQ(stored(), (TimerRun{Mode::countdown, 300, rig.now(), 0}));
  EXPECT_EQ(notices().at(timerNoticeID),
            (UserNotificationRequest{timerNoticeID, "Tea", "Time's up", 300}));
  rig.pass(100.5);
  rig.press("Pause");
  EXPECT_THAT(notices(), IsEmpty());
  EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);
  EXPECT_EQ(rig.platform.tile.value, "3:20, Paused");
  rig.press("Resume");
  EXPECT_EQ(notices().at(timerNoticeID).delay, 199.5);
  rig.pass(199.25);
  EXPECT_THAT(notices(), IsEmpty()) << "this process is about to ring itself";
  EXPECT_THAT(sounds(), IsEmpty());
  rig.pass(0.25);
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
  EXPECT_EQ(rig.platform.fakeApplication.attentionRequests, 1);
  EXPECT_FALSE(stored().isRunning());
  EXPECT_TRUE(stored().isFinished(rig.now()));
  EXPECT_EQ(rig.platform.tile.value, "0:00, Done");
  EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);

  rig.press("Start");
  EXPECT_EQ(stored(), (TimerRun{Mode::countdown, 300, rig.now(), 0})) << "again, from the start";
  rig.pass(10);
  rig.press("Reset");
  EXPECT_EQ(stored(), (TimerRun{Mode::countdown, 300, {}, 0}));
  rig.press("Edit Timer…");
  EXPECT_EQ(rig.edits, 1);
}

TEST_F(TimerWidgetTest, DrawsOncePerShownSecondAndAtOnceOnAChange) {
  const auto controller = startOpen();
  rig.press("Start");
  rig.pass(0.1);
  const int drawn = rig.platform.tile.displays;
  rig.pass(30);
  EXPECT_EQ(rig.platform.tile.displays - drawn, 30);
  const int before = rig.platform.tile.displays;
  rig.press("Pause");
  rig.press("Resume");
  EXPECT_EQ(rig.platform.tile.displays - before, 2);
  rig.press("10m");
  rig.press("15m");
  EXPECT_EQ(rig.platform.loop.activeTimers(), 1U);
}

TEST_F(TimerWidgetTest, CatchesUpSilently) {
  for (int i = 0; i < 300; ++i) {
    store({Mode::countdown, 300.3 + i * 0.171, rig.now() - (900 + i * 0.213), i * 0.137});
    const auto controller = start();
    ASSERT_FALSE(stored().isRunning()) << i;
    ASSERT_TRUE(stored().isFinished(rig.now())) << i;
    ASSERT_EQ(rig.platform.tile.value, "0:00, Done") << i;
  }
  EXPECT_THAT(sounds(), IsEmpty());
  EXPECT_THAT(notices(), IsEmpty());

  const TimerRun running{Mode::countdown, 300, rig.now() - 100, 20};
  store(running);
  const auto controller = start();
  EXPECT_EQ(stored(), running);
  EXPECT_EQ(notices().at(timerNoticeID).delay, 180);
  EXPECT_EQ(rig.platform.loop.activeTimers(), 1U);
}

TEST_F(TimerWidgetTest, AStopwatchCountsUpAndNeverEnds) {
  const auto controller = startOpen();
  chooseMode(1);
  EXPECT_EQ(stored().mode, Mode::stopwatch);
  EXPECT_EQ(rig.platform.tile.name, "Stopwatch");
  rig.press("Start");
  rig.pass(7200);
  EXPECT_EQ(rig.platform.tile.value, "2:00:00, Running");
  EXPECT_THAT(notices(), IsEmpty());
  EXPECT_THAT(sounds(), IsEmpty());
  EXPECT_EQ(stored().duration, 1500) << "kept for the countdown";
}

TEST_F(TimerWidgetTest, ALookAtTheCountdownTakesNothingFromALongerRun) {
  const auto controller = startOpen();
  chooseMode(1);
  rig.press("Start");
  rig.pass(1560);
  const auto running = stored();
  chooseMode(0);
  EXPECT_EQ(stored(), (TimerRun{Mode::countdown, 1500, running.startedAt, 0}));
  chooseMode(1);
  EXPECT_EQ(stored(), running) << "there and back";
  EXPECT_EQ(rig.platform.tile.value, "26:00, Running");
  // Longer than a moment, and the countdown is over; its time is still all there.
  chooseMode(0);
  rig.pass(0.25);
  EXPECT_EQ(rig.platform.tile.value, "0:00, Done");
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
  chooseMode(1);
  EXPECT_EQ(rig.platform.tile.value, "26:00, Paused");
  rig.press("Resume");
  rig.pass(60);
  EXPECT_EQ(rig.platform.tile.value, "27:00, Running");
  // A paused one is looked at without a sound.
  rig.press("Pause");
  chooseMode(0);
  rig.pass(10);
  chooseMode(1);
  EXPECT_EQ(rig.platform.tile.value, "27:00, Paused");
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
}

TEST_F(TimerWidgetTest, WhatAnUpdateDrewIsWhatTheNextMomentIsHeldAgainst) {
  store({Mode::countdown, 300, rig.now() - 100.1, 0});
  const auto controller = start();
  rig.pass(0.5);
  ASSERT_EQ(rig.platform.tile.value, "3:20, Running");
  rig.platform.loop.jumpClock(1);
  controller->update(widget);
  ASSERT_EQ(rig.platform.tile.value, "3:19, Running");
  rig.platform.loop.jumpClock(-1);
  rig.platform.fakeWorkspace.clockChange.call();
  EXPECT_EQ(rig.platform.tile.value, "3:20, Running");
}

TEST_F(TimerWidgetTest, SwitchingTheModeKeepsTheTime) {
  const auto controller = startOpen();
  rig.press("Start");
  rig.pass(60);
  const auto before = stored();
  chooseMode(1);
  EXPECT_THAT(notices(), IsEmpty());
  EXPECT_EQ(rig.platform.tile.value, "1:00, Running");
  chooseMode(0);
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(notices().at(timerNoticeID).delay, 1440);
}

TEST_F(TimerWidgetTest, ACountdownOfNothingEndsAtTheNextTick) {
  widget.kind = TimerSettings{.presets = {0, -5}};
  const auto controller = startOpen();
  rig.press("0m");
  EXPECT_THAT(notices(), IsEmpty());
  rig.pass(0.25);
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
  EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);
}

TEST_F(TimerWidgetTest, ChangedPresetsAreOfferedAtOnce) {
  const auto controller = startOpen();
  widget.kind = TimerSettings{.presets = {90, 30}};
  controller->update(widget);
  rig.press("30s");
  EXPECT_EQ(stored().duration, 30);
  rig.press("1m");
  EXPECT_EQ(stored().duration, 90);
}

TEST_F(TimerWidgetTest, SleepAndAClockSetBack) {
  store({Mode::countdown, 600, rig.now() - 60, 0});
  const auto controller = start();
  rig.platform.loop.jumpClock(-1000);
  rig.platform.fakeWorkspace.clockChange.call();
  EXPECT_EQ(rig.platform.tile.value, "10:00, Running");
  rig.platform.loop.jumpClock(9000);
  EXPECT_THAT(sounds(), IsEmpty());
  rig.pass(0.25);
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
  EXPECT_EQ(rig.platform.tile.value, "0:00, Done");
}

} // namespace
} // namespace tavrin::test
