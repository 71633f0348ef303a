#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinSlot/Controllers/Runs/PomodoroWidget.h"

#include "Tests/Support/SlotRig.h"

#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto focus = PomodoroPhase::focus;
constexpr auto shortBreak = PomodoroPhase::shortBreak;
const std::string noticeID = "dev.quellby.Tavrin.Slot3.phaseEnded";

struct PomodoroWidgetTest : testing::Test {
  SlotRig rig;
  PomodoroSettings settings;
  DockWidget widget{UUID(), "Thesis", 3, settings, 1};

  Living<PomodoroWidgetController> start() {
    return begun<PomodoroWidgetController>(rig.context(), widget);
  }
  void change(PomodoroWidgetController& controller, const PomodoroSettings& to) {
    widget.kind = to;
    controller.update(widget);
  }
  PomodoroRun stored() const {
    return decode<PomodoroRun>(rig.platform.defaults.values.at("pomodoroRun"));
  }
  void store(const PomodoroRun& run) { rig.platform.defaults.values["pomodoroRun"] = encode(run); }
  PomodoroRun running(PomodoroPhase phase, double ago) const {
    auto run = PomodoroRun::fresh(rig.now() - ago);
    run.phase = phase;
    run.startedAt = rig.now() - ago;
    return run;
  }
  const auto& notices() const { return rig.platform.notices.pending; }
  const auto& sounds() const { return rig.platform.fakeSounds.played; }
};

TEST_F(PomodoroWidgetTest, AFreshOneIsSavedDrawnAndAtRest) {
  for (const char* stored : {"", "{}", "[1]", R"({"phase":"nap"})"}) {
    rig.platform.defaults.values.clear();
    if (*stored)
      rig.platform.defaults.values["pomodoroRun"] = JSONValue::parse(stored);
    const auto controller = start();
    EXPECT_EQ(this->stored(), PomodoroRun::fresh(rig.now())) << stored;
    EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);
    EXPECT_THAT(notices(), IsEmpty());
  }
  EXPECT_GT(rig.platform.tile.displays, 0);
  EXPECT_EQ(rig.platform.tile.name, "Focus");
}

TEST_F(PomodoroWidgetTest, ARoundByThePanel) {
  const auto controller = start();
  controller->togglePanel();
  rig.press("Start");
  EXPECT_EQ(rig.platform.loop.activeTimers(), 1U);
  EXPECT_EQ(notices().at(noticeID),
            (UserNotificationRequest{noticeID, "Thesis", "Focus done, take a break", 1500}));

  rig.pass(100);
  rig.press("Pause");
  EXPECT_EQ(stored().accumulated, 100);
  EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);
  EXPECT_THAT(notices(), IsEmpty());
  const int drawn = rig.platform.tile.displays;
  rig.pass(1000);
  EXPECT_EQ(rig.platform.tile.displays, drawn);

  rig.press("Resume");
  EXPECT_EQ(rig.platform.loop.activeTimers(), 1U);
  EXPECT_EQ(notices().at(noticeID).delay, 1400);
  rig.pass(1401);
  EXPECT_EQ(stored().phase, shortBreak);
  EXPECT_TRUE(stored().isRunning());
  EXPECT_EQ(stored().sessionsToday, 1);
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
  EXPECT_EQ(rig.platform.fakeApplication.attentionRequests, 1);
  EXPECT_EQ(notices().at(noticeID).body, "Break over");
  EXPECT_EQ(rig.platform.loop.activeTimers(), 1U);

  rig.pass(300);
  EXPECT_EQ(stored().phase, focus);
  EXPECT_FALSE(stored().isRunning());
  EXPECT_THAT(sounds(), ElementsAre("Glass", "Submarine"));
  EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);
  EXPECT_THAT(notices(), IsEmpty());

  rig.press("Skip");
  EXPECT_EQ(stored().phase, shortBreak);
  EXPECT_EQ(stored().sessionsToday, 1);
  rig.pass(10);
  rig.press("Reset");
  EXPECT_EQ(stored().phase, shortBreak);
  EXPECT_FALSE(stored().hasStarted());
  EXPECT_EQ(stored().cycle, 1);
  rig.press("Reset All");
  EXPECT_EQ(stored(), PomodoroRun::fresh(rig.now()));
  rig.press("Edit Pomodoro…");
  EXPECT_EQ(rig.edits, 1);
  EXPECT_THAT(sounds(), ElementsAre("Glass", "Submarine"));
}

TEST_F(PomodoroWidgetTest, DrawsOncePerShownSecondAndAtOnceOnAChange) {
  const auto controller = start();
  controller->togglePanel();
  rig.press("Start");
  rig.pass(0.1);
  const int drawn = rig.platform.tile.displays;
  const int fired = rig.platform.loop.firings;
  rig.pass(20);
  EXPECT_EQ(rig.platform.loop.firings - fired, 80);
  EXPECT_EQ(rig.platform.tile.displays - drawn, 20);
  const int before = rig.platform.tile.displays;
  rig.press("Pause");
  rig.press("Resume");
  EXPECT_EQ(rig.platform.tile.displays - before, 2);
}

TEST_F(PomodoroWidgetTest, ThePanelFollowsItsPhase) {
  const auto controller = start();
  controller->togglePanel();
  rig.press("Start");
  const auto spoken = [&] {
    QStringList names;
    for (auto* child : rig.panel.rootView()->findChildren<QWidget*>())
      names << child->accessibleName();
    return names;
  };
  rig.pass(2);
  EXPECT_THAT(spoken(), testing::Contains("Focus, 24:58 left"));
  rig.pass(1500);
  EXPECT_THAT(spoken(), testing::Contains("Break, 4:58 left"));
  EXPECT_EQ(rig.platform.fakePopover.size, rig.panel.rootView()->sizeHint());
}

TEST_F(PomodoroWidgetTest, CatchesUpSilently) {
  struct Case {
    const char* what;
    double ago;
    PomodoroPhase phase;
    bool isRunning;
    double left;
    int sessions;
  } cases[] = {{"still running", 600.3, focus, true, 899.7, 0},
               {"ended", 1500, shortBreak, true, 300, 1},
               {"into the break", 1623.7, shortBreak, true, 176.3, 1},
               {"beyond the break", 3000.1, shortBreak, false, 0, 1},
               {"two hours later", 7200.9, shortBreak, false, 0, 1}};
  for (const auto& [what, ago, phase, isRunning, left, sessions] : cases) {
    store(running(focus, ago));
    const auto controller = start();
    const auto run = stored();
    EXPECT_EQ(run.phase, phase) << what;
    EXPECT_EQ(run.isRunning(), isRunning) << what;
    EXPECT_NEAR(run.remaining(rig.now(), settings), left, 1e-3) << what;
    EXPECT_EQ(run.displayedSeconds(rig.now(), settings), std::ceil(left)) << what;
    EXPECT_EQ(run.sessionsToday, sessions) << what;
    EXPECT_EQ(notices().size(), isRunning ? 1U : 0U) << what;
  }
  EXPECT_THAT(sounds(), IsEmpty());
}

TEST_F(PomodoroWidgetTest, ACaughtUpEndShowsZeroWhateverTheFractions) {
  for (int i = 0; i < 500; ++i) {
    settings.shortBreak = 60.1 + i * 0.137;
    widget.kind = settings;
    auto run = running(focus, 5000 + i * 0.731);
    run.accumulated = i * 0.137;
    store(run);
    const auto controller = start();
    ASSERT_TRUE(stored().isFinished(rig.now(), settings)) << i;
    ASSERT_EQ(stored().displayedSeconds(rig.now(), settings), 0) << i;
  }
}

TEST_F(PomodoroWidgetTest, TheNoticeIsForASlotThatIsGone) {
  store(running(focus, 1400));
  auto controller = start();
  rig.pass(99);
  EXPECT_EQ(notices().size(), 1U);
  rig.pass(0.9);
  EXPECT_THAT(notices(), IsEmpty()) << "this process is about to ring itself";
  rig.pass(0.2);
  EXPECT_EQ(notices().at(noticeID).body, "Break over");
  controller.reset();
  EXPECT_EQ(notices().size(), 1U) << "nobody else will tell";
  EXPECT_EQ(rig.platform.loop.activeTimers(), 0U);
}

TEST_F(PomodoroWidgetTest, WithoutPermissionItStillRings) {
  rig.platform.notices.grants = false;
  store(running(focus, 1499));
  const auto controller = start();
  EXPECT_THAT(notices(), IsEmpty());
  rig.pass(2);
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
}

TEST_F(PomodoroWidgetTest, RingsOnlyWhenAsked) {
  settings.ringsAtTheEnd = false;
  widget.kind = settings;
  store(running(focus, 1499));
  const auto controller = start();
  rig.pass(2);
  EXPECT_EQ(stored().phase, shortBreak);
  EXPECT_THAT(sounds(), IsEmpty());
  EXPECT_EQ(rig.platform.fakeApplication.attentionRequests, 0);
}

TEST_F(PomodoroWidgetTest, AttentionEndsWhenTheUserComes) {
  store(running(focus, 1499));
  const auto controller = start();
  rig.pass(2);
  EXPECT_EQ(rig.platform.fakeApplication.attentionCancellations, 0);
  controller->togglePanel();
  EXPECT_EQ(rig.platform.fakeApplication.attentionCancellations, 1);
  controller->togglePanel();
  controller->togglePanel();
  EXPECT_EQ(rig.platform.fakeApplication.attentionCancellations, 1);
}

TEST_F(PomodoroWidgetTest, ChangedSettingsTakeEffectAtOnce) {
  store(running(focus, 600));
  const auto controller = start();
  const auto before = stored();
  settings.focus = 3600;
  change(*controller, settings);
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(notices().at(noticeID).delay, 3000);
  EXPECT_EQ(rig.platform.tile.value, "50:00");
  widget.name = "Essay";
  controller->update(widget);
  EXPECT_EQ(notices().at(noticeID).title, "Essay");

  settings.focus = 300;
  change(*controller, settings);
  EXPECT_THAT(notices(), IsEmpty());
  EXPECT_THAT(sounds(), IsEmpty());
  rig.pass(0.25);
  EXPECT_EQ(stored().phase, shortBreak);
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
}

TEST_F(PomodoroWidgetTest, ALengthOfNothingIsASecond) {
  settings.focus = 0;
  widget.kind = settings;
  const auto controller = start();
  controller->togglePanel();
  rig.press("Start");
  EXPECT_EQ(notices().at(noticeID).delay, 1);
  rig.pass(0.75);
  EXPECT_EQ(stored().phase, focus);
  rig.pass(0.25);
  EXPECT_EQ(stored().phase, shortBreak);
}

TEST_F(PomodoroWidgetTest, APhaseThatEndedAsleepEndsAtTheNextTick) {
  store(running(focus, 60));
  const auto controller = start();
  rig.platform.loop.jumpClock(9000);
  rig.platform.fakeWorkspace.wake.call();
  EXPECT_THAT(notices(), IsEmpty());
  rig.pass(0.25);
  EXPECT_EQ(stored().phase, shortBreak);
  EXPECT_EQ(stored().startedAt, rig.now());
  EXPECT_EQ(stored().sessionsToday, 1);
  EXPECT_THAT(sounds(), ElementsAre("Glass"));
}

TEST_F(PomodoroWidgetTest, AClockSetBackTakesNothingAway) {
  auto run = running(focus, 600);
  run.accumulated = 100;
  store(run);
  const auto controller = start();
  rig.platform.loop.jumpClock(-3600);
  rig.platform.fakeWorkspace.clockChange.call();
  EXPECT_EQ(rig.platform.tile.value, "23:20");
  EXPECT_EQ(notices().at(noticeID).delay, 3000 + 1400);
  EXPECT_EQ(rig.platform.loop.activeTimers(), 1U);
}

/// An hour before midnight in the zone of the tests.
Date lateEvening() {
  const Calendar calendar;
  return calendar.addingDays(1, calendar.startOfDay({800'000'000})) - 3600;
}

TEST_F(PomodoroWidgetTest, ANewDayBeginsWithNoSessions) {
  rig.platform.fakeClock.set(lateEvening());
  auto run = PomodoroRun::fresh(rig.now());
  run.sessionsToday = 5;
  run.cycle = 2;
  store(run);
  const auto controller = start();
  EXPECT_EQ(stored().sessionsToday, 5);
  rig.platform.fakeClock.advance(3600);
  rig.platform.fakeWorkspace.dayChange.call();
  EXPECT_EQ(stored().sessionsToday, 0);
  EXPECT_EQ(stored().cycle, 2);
  EXPECT_EQ(stored().day, rig.now());
  const int writes = rig.platform.defaults.writes;
  rig.platform.fakeWorkspace.dayChange.call();
  controller->togglePanel();
  EXPECT_EQ(rig.platform.defaults.writes, writes);
}

TEST_F(PomodoroWidgetTest, AFocusOverMidnightCountsForTheNewDay) {
  rig.platform.fakeClock.set(lateEvening() + 3000);
  auto run = PomodoroRun::fresh(rig.now());
  run.sessionsToday = 5;
  store(run);
  const auto controller = start();
  controller->togglePanel();
  rig.press("Start");
  rig.pass(1501);
  EXPECT_EQ(stored().sessionsToday, 1);
}

TEST_F(PomodoroWidgetTest, TheWideTileHasButtons) {
  rig.platform.tile.current = {64, 2, 1};
  const auto controller = start();
  const auto& tile = rig.platform.tile;
  const auto sweep = [&] {
    int hits = 0;
    for (int x = 0; x < 132 && hits == 0; x += 4)
      if (tile.onHover({double(x), 32}) && tile.onClick({double(x), 32}))
        ++hits;
    return hits;
  };
  EXPECT_FALSE(tile.onClick({20, 32})) << "the words are no button";
  EXPECT_EQ(sweep(), 1);
  EXPECT_TRUE(stored().isRunning());
  EXPECT_EQ(sweep(), 1);
  EXPECT_FALSE(stored().isRunning());
}

TEST_F(PomodoroWidgetTest, WithoutABundleIdentifier) {
  rig.platform.bundle.strings.clear();
  store(running(focus, 60));
  const auto controller = start();
  EXPECT_EQ(notices().begin()->first, "pomodoro.phaseEnded");
}

} // namespace
} // namespace tavrin::test
