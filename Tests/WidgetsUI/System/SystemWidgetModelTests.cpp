#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/SystemServices.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

/// 3.4 seconds past a whole minute, which is a whole quarter of an hour as well.
constexpr Date start{800'000'100 + 3.4};

ClockSettings clockWith(bool showsSeconds, bool isAnalog = false) {
  ClockSettings settings;
  settings.showsSeconds = showsSeconds;
  settings.isAnalog = isAnalog;
  return settings;
}

struct ModelBench {
  explicit ModelBench(DockWidget::Kind kind, Date now = start, StopwatchRun run = {})
      : platform(now),
        model(servicesOf(platform), DockWidget({}, "W", 1, std::move(kind), 1), std::move(run)) {
    model.isPanelShown = [this] { return isPanelShown; };
    model.onChange = [this] { changes.push_back(model.now().since(start)); };
    model.onStopwatchChange = [this] { ++stopwatchChanges; };
    model.start();
  }

  void setKind(DockWidget::Kind kind) {
    model.setWidget(DockWidget({}, "W", 1, std::move(kind), 1));
  }
  int wakeUps(double seconds) {
    const int before = platform.loop.firings;
    platform.loop.advance(seconds);
    return platform.loop.firings - before;
  }

  FakePlatform platform;
  SystemWidgetModel model;
  bool isPanelShown = false;
  /// Seconds after `start` of each change told.
  std::vector<double> changes;
  int stopwatchChanges = 0;
};

void expectNear(const std::vector<double>& found, const std::vector<double>& wanted) {
  ASSERT_EQ(found.size(), wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i)
    EXPECT_NEAR(found[i], wanted[i], 1e-3) << "change " << i;
}

TEST(SystemWidgetModel, SamplesEachKindAtItsInterval) {
  struct Case {
    DockWidget::Kind kind;
    double interval;
    double savingEnergy;
  };
  const Case cases[] = {
      {BatterySettings{}, 30, 30},
      {ActivitySettings{}, 2, 3},
      {NetworkSettings{}, 2, 3},
      {PetSettings{}, 2, 3},
      {clockWith(true), 1, 3},
      {clockWith(false), 15, 15},
      {CountdownSettings{start, true}, 1, 3},
      {TimeProgressSettings{}, 60, 60},
      {StopwatchSettings{}, 60, 60},
      {NoteSettings{}, 60, 60},
  };
  for (const auto& [kind, interval, saving] : cases) {
    ModelBench bench(kind);
    EXPECT_EQ(bench.model.interval(), interval) << kind.key();
    bench.model.setSavesEnergy(true);
    EXPECT_EQ(bench.model.interval(), saving) << kind.key();
  }
}

TEST(SystemWidgetModel, ARunningStopwatchShowsTenthsOnlyInItsPanel) {
  ModelBench bench(StopwatchSettings{}, start, {.startedAt = start, .accumulated = 0, .laps = {}});
  EXPECT_EQ(bench.model.interval(), 1);
  bench.isPanelShown = true;
  EXPECT_EQ(bench.model.interval(), 0.1);
}

TEST(SystemWidgetModel, AMinuteChangesWhenItChanges) {
  ModelBench bench(clockWith(false));
  EXPECT_EQ(bench.wakeUps(120), 8); // on the quarters of a minute
  expectNear(bench.changes, {56.6, 116.6});
}

TEST(SystemWidgetModel, AFaceWithoutSecondsGlidesInQuartersOfAMinute) {
  ModelBench bench(clockWith(false, true));
  bench.platform.loop.advance(60);
  expectNear(bench.changes, {11.6, 26.6, 41.6, 56.6});
}

TEST(SystemWidgetModel, SecondsChangeOnWholeSeconds) {
  ModelBench bench(clockWith(true));
  bench.platform.loop.advance(3);
  expectNear(bench.changes, {0.6, 1.6, 2.6});
}

TEST(SystemWidgetModel, TimeProgressTicksOnWholeMinutes) {
  ModelBench bench(TimeProgressSettings{});
  bench.platform.loop.advance(180);
  expectNear(bench.changes, {56.6, 116.6, 176.6});
}

TEST(SystemWidgetModel, ACountdownTicksWhenItsOwnSecondsChange) {
  ModelBench bench(CountdownSettings{start + 2.25, true});
  bench.platform.loop.advance(4.5);
  expectNear(bench.changes, {0.25, 1.25, 2.25, 3.25, 4.25});
}

TEST(SystemWidgetModel, APassedCountdownThatDoesNotCountUpRests) {
  ModelBench bench(CountdownSettings{start + 1.5, false});
  bench.platform.loop.advance(2);
  expectNear(bench.changes, {0.5, 1.5});
  EXPECT_EQ(bench.wakeUps(100'000), 0);
}

TEST(SystemWidgetModel, DaysAndHoursTickByTheHourUntilThePanelOpens) {
  // 3 days and 4 hours are shown until a second less than that is left.
  ModelBench bench(CountdownSettings{start + 3 * 86'400 + 4 * 3600 + 100, false});
  EXPECT_EQ(bench.wakeUps(2 * 3600), 2);
  expectNear(bench.changes, {101, 3701});

  bench.isPanelShown = true;
  bench.model.panelChanged();
  EXPECT_EQ(bench.wakeUps(10), 10);
  bench.isPanelShown = false;
  bench.model.panelChanged();
  EXPECT_LE(bench.wakeUps(600), 1);
}

TEST(SystemWidgetModel, ACountdownGoesFromHoursToSecondsOnItsLastDay) {
  ModelBench bench(CountdownSettings{start + 86'400 + 10, false});
  bench.platform.loop.advance(13.5);
  // "1d 0h" until 11 seconds from now, "23:59:59" then, and by the second from there on.
  expectNear(bench.changes, {11, 12, 13});
}

TEST(SystemWidgetModel, AnAbsurdTargetIsLookedAtOnceAnHourAtMost) {
  for (const double target : {1e300, -1e300}) {
    ModelBench bench(CountdownSettings{{target}, true});
    EXPECT_LE(bench.wakeUps(86'400 * 3), 72) << target;
  }
}

TEST(SystemWidgetModel, AStoppedStopwatchCausesNoWakeUps) {
  ModelBench bench(StopwatchSettings{});
  EXPECT_EQ(bench.wakeUps(100'000), 0);
}

TEST(SystemWidgetModel, AStopwatchTicksOnItsOwnSeconds) {
  ModelBench bench(StopwatchSettings{});
  bench.platform.loop.advance(0.3);
  bench.model.toggleStopwatch();
  EXPECT_EQ(bench.stopwatchChanges, 1);
  bench.changes.clear();
  bench.platform.loop.advance(2.5);
  expectNear(bench.changes, {1.3, 2.3});

  bench.model.toggleStopwatch(); // 2.5 s run
  EXPECT_EQ(bench.wakeUps(1000), 0);
  bench.model.toggleStopwatch();
  bench.changes.clear();
  bench.platform.loop.advance(1);
  expectNear(bench.changes, {1003.3}); // the 3rd second ends half a second later
  EXPECT_NEAR(bench.model.stopwatch().elapsed(bench.platform.fakeClock.now()), 3.5, 1e-3);
}

TEST(SystemWidgetModel, TenthsStopWithThePanel) {
  ModelBench bench(StopwatchSettings{}, start, {.startedAt = start, .accumulated = 0, .laps = {}});
  bench.isPanelShown = true;
  bench.model.panelChanged();
  EXPECT_EQ(bench.wakeUps(1.05), 10);
  bench.isPanelShown = false;
  // Even if nobody tells: the next tenth finds the panel closed.
  EXPECT_LE(bench.wakeUps(3), 4);
}

TEST(SystemWidgetModel, LapsAndResetAreToldToBeKept) {
  ModelBench bench(StopwatchSettings{});
  bench.model.lapStopwatch(); // stopped: nothing to add
  EXPECT_TRUE(bench.model.stopwatch().laps.empty());
  bench.model.toggleStopwatch();
  bench.platform.loop.advance(1.5);
  bench.model.lapStopwatch();
  ASSERT_EQ(bench.model.stopwatch().laps.size(), 1U);
  EXPECT_NEAR(bench.model.stopwatch().laps[0], 1.5, 1e-3);
  bench.model.resetStopwatch();
  EXPECT_EQ(bench.model.stopwatch(), StopwatchRun{});
  EXPECT_EQ(bench.stopwatchChanges, 4);
}

TEST(SystemWidgetModel, SavingEnergyFollowsTheDesktop) {
  ModelBench bench(clockWith(true));
  bench.platform.fakeWorkspace.lowPower = true;
  bench.platform.fakeWorkspace.lowPowerChange.call();
  EXPECT_TRUE(bench.model.savesEnergy());
  EXPECT_EQ(bench.wakeUps(30), 10);
  bench.platform.fakeWorkspace.lowPower = false;
  bench.platform.fakeWorkspace.lowPowerChange.call();
  EXPECT_EQ(bench.wakeUps(30), 30);
}

TEST(SystemWidgetModel, AClockThatIsSetShowsAtOnce) {
  ModelBench bench(clockWith(false));
  for (auto* event : {&bench.platform.fakeWorkspace.clockChange, &bench.platform.fakeWorkspace.wake,
                      &bench.platform.fakeWorkspace.dayChange}) {
    bench.changes.clear();
    bench.platform.fakeClock.advance(7200);
    event->call();
    ASSERT_EQ(bench.changes.size(), 1U);
    EXPECT_EQ(bench.model.now(), bench.platform.fakeClock.now());
  }
}

TEST(SystemWidgetModel, AnotherZoneIsReadAtTheClockChange) {
  const std::string before = std::getenv("TZ") ? std::getenv("TZ") : "";
  ::setenv("TZ", "Europe/Berlin", 1);
  ModelBench bench(clockWith(false));
  const auto berlin = bench.model.clock().hoursAndMinutes;
  ::setenv("TZ", "Asia/Tokyo", 1);
  bench.platform.fakeWorkspace.clockChange.call();
  EXPECT_EQ(bench.model.calendar().timeZoneID(), "Asia/Tokyo");
  EXPECT_NE(bench.model.clock().hoursAndMinutes, berlin);
  ::setenv("TZ", before.c_str(), 1);
}

TEST(SystemWidgetModel, AnotherKindTicksAsItsOwn) {
  ModelBench bench(clockWith(true));
  bench.setKind(StopwatchSettings{});
  EXPECT_EQ(bench.wakeUps(100), 0);
  bench.setKind(NoteSettings{}); // has no reading: nothing to wake for
  EXPECT_EQ(bench.wakeUps(100), 0);
  bench.setKind(TimeProgressSettings{});
  EXPECT_EQ(bench.wakeUps(120), 2);
}

TEST(SystemWidgetModel, StoppedItHoldsNoTimerAndHearsNothing) {
  ModelBench bench(clockWith(true));
  bench.model.stop();
  EXPECT_EQ(bench.platform.loop.activeTimers(), 0U);
  bench.platform.fakeWorkspace.clockChange.call();
  bench.model.setSavesEnergy(true);
  EXPECT_TRUE(bench.changes.empty());
  EXPECT_EQ(bench.platform.loop.activeTimers(), 0U);
}

} // namespace
} // namespace tavrin::test
