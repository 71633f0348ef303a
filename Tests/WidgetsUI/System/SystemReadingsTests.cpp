#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinWidgetsUI/System/NetworkViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/SystemServices.h"

#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct ReadingsBench {
  explicit ReadingsBench(DockWidget::Kind kind)
      : model(servicesOf(platform), DockWidget({}, "W", 1, std::move(kind), 1)) {
    model.onChange = [this] { ++changes; };
    model.onDevicesChange = [this] { ++deviceChanges; };
  }
  void setKind(DockWidget::Kind kind) {
    model.setWidget(DockWidget({}, "W", 1, std::move(kind), 1));
  }
  void cpu(std::uint64_t used, std::uint64_t idle) {
    platform.host.cpu = CPULoad{used, 0, idle, 0};
  }
  /// What the link's counters say after another sample.
  void traffic(std::uint64_t received, std::uint64_t sent, double after = 2) {
    platform.host.links = {{"lo", received * 7, 1}, {"eth0", received, sent}};
    platform.loop.advance(after);
  }

  FakePlatform platform;
  SystemWidgetModel model;
  int changes = 0;
  int deviceChanges = 0;
};

TEST(SystemReadings, UsageBetweenTwoSamples) {
  using Ticks = SystemReadings::CPUTicks;
  struct Case {
    Ticks earlier, later;
    double usage;
  };
  const Case cases[] = {{{10, 100}, {20, 120}, 0.5}, {{10, 100}, {10, 100}, 0},
                        {{10, 100}, {20, 90}, 0},    {{10, 100}, {5, 120}, 0},
                        {{0, 0}, {300, 200}, 1},     {{10, 100}, {nan, nan}, 0}};
  for (const auto& [earlier, later, usage] : cases)
    EXPECT_EQ(later.usage(earlier), usage) << later.used << "/" << later.total;
}

TEST(SystemReadings, WhatCannotBeReadIsNothing) {
  FakePlatform platform;
  const SystemReadings readings(platform.host, platform.power);
  EXPECT_EQ(readings.cpuTicks(), SystemReadings::CPUTicks());
  EXPECT_EQ(readings.memoryUsage(), 0);
  platform.host.memory = MemoryLoad{5, 0};
  EXPECT_EQ(readings.memoryUsage(), 0);
  platform.host.memory = MemoryLoad{5, 4};
  EXPECT_EQ(readings.memoryUsage(), 1);
  EXPECT_EQ(readings.networkTotals({}), SystemReadings::NetworkTotals());
  EXPECT_TRUE(readings.networkInterfaces().empty());
  EXPECT_EQ(readings.battery(), BatteryReading());
}

TEST(SystemReadings, LinksAreSummedButLoopbacks) {
  FakePlatform platform;
  platform.host.links = {
      {"lo", 1, 2}, {"lo0", 1, 2}, {"eth0", 10, 20}, {"wlan0", 100, 200}, {"eth0", 1000, 2000}};
  const SystemReadings readings(platform.host, platform.power);
  EXPECT_EQ(readings.networkTotals({}), (SystemReadings::NetworkTotals{1110, 2220}));
  EXPECT_EQ(readings.networkTotals("eth0"), (SystemReadings::NetworkTotals{1010, 2020}));
  EXPECT_EQ(readings.networkTotals("lo"), (SystemReadings::NetworkTotals{1, 2}));
  EXPECT_EQ(readings.networkTotals("eth"), SystemReadings::NetworkTotals());
  EXPECT_THAT(readings.networkInterfaces(), testing::ElementsAre("eth0", "wlan0"));
}

TEST(SystemReadings, TheFirstSourceWithCapacitiesIsTheBattery) {
  struct Case {
    std::vector<PowerSource> sources;
    BatteryReading reading;
  };
  const PowerSource noCapacity{{}, 100, true, true, 5, 5};
  const PowerSource noMaximum{50, 0, true, true, 5, 5};
  const Case cases[] = {
      {{noCapacity, noMaximum}, {}},
      {{noMaximum, {41, 100, false, false, 90, 125}}, {0.41, false, false, 125}},
      {{{41, 100, true, true, 90, 125}}, {0.41, true, true, 90}},
      {{{41, 100, false, false, 90, -1}}, {0.41, false, false, {}}},
      {{{41, 100, true, false, 0, 125}}, {0.41, false, true, {}}},
      {{{101, 100, true, false, {}, {}}, {7, 100, false, false, {}, {}}}, {1.01, false, true, {}}},
  };
  for (const auto& [sources, reading] : cases) {
    FakePlatform platform;
    platform.power.sources = sources;
    EXPECT_EQ(SystemReadings(platform.host, platform.power).battery(), reading);
  }
}

TEST(SystemWidgetModel, TheFirstActivitySampleIsABaseline) {
  ReadingsBench bench(ActivitySettings{});
  bench.cpu(50, 50);
  bench.platform.host.memory = MemoryLoad{1, 4};
  bench.model.start();
  EXPECT_EQ(bench.model.activity(), (ActivityReading{0, 0.25}));
  bench.cpu(80, 120);
  bench.platform.loop.advance(2);
  EXPECT_EQ(bench.model.activity(), (ActivityReading{0.3, 0.25}));
  EXPECT_EQ(bench.changes, 1);
  bench.cpu(110, 190);
  bench.platform.loop.advance(2);
  EXPECT_EQ(bench.changes, 1) << "30 percent again";
  bench.platform.loop.advance(2);
  EXPECT_EQ(bench.model.activity().cpu, 0) << "no tick passed";
}

TEST(SystemWidgetModel, TheLastMinuteOfActivityLagsByASample) {
  ReadingsBench bench(ActivitySettings{});
  bench.cpu(0, 0);
  bench.model.start();
  unsigned used = 0;
  for (unsigned i = 1; i <= 40; ++i) {
    used += i;
    bench.cpu(used, 100 * i - used);
    bench.platform.loop.advance(2);
  }
  const auto& history = bench.model.activityHistory();
  ASSERT_EQ(history.size(), 30U);
  EXPECT_NEAR(history.front().cpu, 0.1, 1e-9);
  EXPECT_NEAR(history.back().cpu, 0.39, 1e-9);
  EXPECT_NEAR(bench.model.activity().cpu, 0.4, 1e-9);
}

TEST(SystemWidgetModel, AFailedActivitySampleIsNoBaseline) {
  ReadingsBench bench(ActivitySettings{});
  bench.cpu(50, 50);
  bench.model.start();
  bench.platform.host.cpu.reset();
  bench.platform.loop.advance(2);
  EXPECT_EQ(bench.model.activity(), ActivityReading());
  bench.cpu(150, 50);
  bench.platform.loop.advance(2);
  EXPECT_EQ(bench.model.activity().cpu, 0);
}

TEST(SystemWidgetModel, OpeningThePanelMeasuresNothing) {
  ReadingsBench bench(ActivitySettings{});
  bench.cpu(50, 50);
  bench.model.start();
  bench.cpu(60, 140);
  bench.platform.loop.advance(2);
  const int reads = bench.platform.host.reads;
  bench.model.panelChanged();
  ActivitySettings rings;
  rings.style = ActivityTileStyle::rings;
  bench.setKind(rings);
  EXPECT_EQ(bench.platform.host.reads, reads);
  EXPECT_EQ(bench.model.activity().cpu, 0.1);
}

TEST(SystemWidgetModel, RatesAreDifferencesOverTime) {
  ReadingsBench bench(NetworkSettings{});
  bench.traffic(1000, 100, 0);
  bench.model.start();
  EXPECT_EQ(bench.model.network(), NetworkReading());
  bench.traffic(5000, 200);
  EXPECT_NEAR(bench.model.network().down, 2000, 1e-6);
  EXPECT_NEAR(bench.model.network().up, 50, 1e-6);
  bench.traffic(10, 300);
  EXPECT_EQ(bench.model.network().down, 0) << "the counter wrapped";
  EXPECT_NEAR(bench.model.network().up, 50, 1e-6);
  // The history lags by a sample.
  ASSERT_EQ(bench.model.networkHistory().size(), 2U);
  EXPECT_EQ(bench.model.networkHistory()[0], NetworkReading());
  EXPECT_NEAR(bench.model.networkHistory()[1].down, 2000, 1e-6);
}

TEST(SystemWidgetModel, TheHistoryHoldsThirty) {
  ReadingsBench bench(NetworkSettings{});
  bench.traffic(0, 0, 0);
  bench.model.start();
  for (std::uint64_t i = 1; i <= 40; ++i)
    bench.traffic(i * i * 1000, 0);
  const auto& history = bench.model.networkHistory();
  ASSERT_EQ(history.size(), 30U);
  EXPECT_TRUE(std::is_sorted(history.begin(), history.end(),
                             [](const auto& a, const auto& b) { return a.down < b.down; }));
  EXPECT_NEAR(history.back().down, (39.0 * 39 - 38 * 38) * 500, 1e-6);
}

TEST(SystemWidgetModel, TwoSamplesAtOnceDivideByAMillisecond) {
  ReadingsBench bench(NetworkSettings{});
  bench.traffic(0, 0, 0);
  bench.model.start();
  bench.traffic(5, 1, 0);
  bench.model.start(); // without stop clearing what was measured
  EXPECT_NEAR(bench.model.network().down, 5000, 1e-6);
}

TEST(SystemWidgetModel, AClockSetBackMakesNoRate) {
  ReadingsBench bench(NetworkSettings{});
  bench.traffic(0, 0, 0);
  bench.model.start();
  bench.platform.fakeClock.advance(-7200);
  bench.traffic(1'000'000, 0, 0);
  bench.platform.fakeWorkspace.clockChange.call();
  EXPECT_EQ(bench.model.network(), NetworkReading());
  bench.traffic(1'000'200, 0);
  EXPECT_NEAR(bench.model.network().down, 100, 1e-6);
}

TEST(SystemWidgetModel, AnotherLinkBeginsAnew) {
  ReadingsBench bench(NetworkSettings{});
  bench.traffic(0, 0, 0);
  bench.model.start();
  bench.traffic(4000, 0);
  NetworkSettings other;
  other.interface = "wlan0";
  bench.setKind(other);
  EXPECT_EQ(bench.model.network(), NetworkReading());
  EXPECT_TRUE(bench.model.networkHistory().empty());
}

TEST(SystemWidgetModel, AQuietChartIsDrawnUntilItIsFlat) {
  NetworkSettings chart;
  chart.style = NetworkTileStyle::chart;
  ReadingsBench bench(chart);
  bench.traffic(0, 0, 0);
  bench.model.start();
  bench.traffic(4000, 0);
  bench.platform.loop.advance(32 * 2);
  const int changes = bench.changes;
  EXPECT_GE(changes, 30);
  bench.platform.loop.advance(100);
  EXPECT_EQ(bench.changes, changes);
}

TEST(SystemWidgetModel, PluggingInShowsAtOnce) {
  ReadingsBench bench(BatterySettings{});
  bench.platform.power.sources = {{50, 100, false, false, {}, 60}};
  bench.model.start();
  EXPECT_EQ(bench.model.battery(), (BatteryReading{0.5, false, false, 60}));
  bench.platform.power.sources[0].isOnACPower = true;
  bench.platform.power.changes.call();
  EXPECT_EQ(bench.changes, 1);
  EXPECT_TRUE(bench.model.battery().isPluggedIn);
  bench.platform.power.changes.call();
  EXPECT_EQ(bench.changes, 1) << "nothing differs";
  bench.platform.power.sources.clear();
  bench.platform.loop.advance(30);
  EXPECT_EQ(bench.model.battery(), BatteryReading());
  bench.model.stop();
  bench.platform.power.sources = {{50, 100, false, false, {}, 60}};
  bench.platform.power.changes.call();
  EXPECT_EQ(bench.changes, 2);
}

TEST(SystemWidgetModel, DevicesAreAskedForByTheBatteryKindAlone) {
  ReadingsBench bench(ActivitySettings{});
  bench.model.start();
  EXPECT_EQ(bench.platform.devices.refreshes, 0);
  bench.setKind(BatterySettings{});
  EXPECT_EQ(bench.platform.devices.refreshes, 1);
  bench.platform.devices.batteries = {{"1", "Mouse", DeviceBattery::Kind::mouse, 5}};
  bench.platform.devices.changes.call();
  bench.platform.devices.changes.call();
  EXPECT_EQ(bench.deviceChanges, 1);
  EXPECT_EQ(bench.model.devices().size(), 1U);
}

TEST(SystemWidgetModel, RatesTickEveryThirdSecondWhileEnergyIsSaved) {
  ReadingsBench bench(ActivitySettings{});
  bench.model.start();
  bench.model.setSavesEnergy(true);
  const int reads = bench.platform.host.reads;
  bench.platform.loop.advance(30.1);
  EXPECT_EQ(bench.platform.host.reads - reads, 10);
}

TEST(NetworkViews, RatesHaveThreeFiguresAtMost) {
  const std::pair<double, const char*> cases[] = {
      {0, "0 B/s"},          {-5, "0 B/s"},        {nan, "0 B/s"},      {999, "999 B/s"},
      {999.6, "1.0 kB/s"},   {9940, "9.9 kB/s"},   {9960, "10 kB/s"},   {123'456, "123 kB/s"},
      {999'499, "999 kB/s"}, {1.24e6, "1.2 MB/s"}, {1.2e9, "1.2 GB/s"}, {5e12, "5.0 TB/s"},
      {5e18, "999 TB/s"}};
  for (const auto& [rate, wanted] : cases)
    EXPECT_EQ(rateText(rate).whole().toStdString(), wanted) << rate;
}

} // namespace
} // namespace tavrin::test
