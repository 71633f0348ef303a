#include "TavrinCore/Kinds/Runs/StopwatchRun.h"
#include "TavrinCore/Kinds/Runs/TickSchedule.h"
#include "TavrinCore/Kinds/Runs/TimerRun.h"
#include "TavrinCore/Kinds/System/Countdown.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

constexpr Date zero{700'000'000};
constexpr Date momentAt(double seconds) {
  return zero + seconds;
}
constexpr auto countdown = TimerMode::countdown;
constexpr auto stopwatch = TimerMode::stopwatch;

TEST(TimerRun, Format) {
  const std::pair<std::int64_t, const char*> cases[] = {
      {0, "0:00"},          {9, "0:09"},       {60, "1:00"},
      {3599, "59:59"},      {3600, "1:00:00"}, {3725, "1:02:05"},
      {86'400, "24:00:00"}, {-5, "0:00"},      {360'000, "100:00:00"}};
  for (const auto& [seconds, text] : cases)
    EXPECT_EQ(TimerRun::format(seconds), text);
}

struct ShownCase {
  TimerRun run;
  double now;
  std::int64_t seconds;
  double progress;
  bool isFinished;
};

TEST(TimerRun, WhatIsShown) {
  const ShownCase cases[] = {
      {{countdown, 1500, std::nullopt, 0}, 99, 1500, 0, false},
      {{countdown, 60, zero, 0}, 0.8, 60, 0.8 / 60, false},
      {{countdown, 60, zero, 30}, 15, 15, 0.75, false},
      {{countdown, 60, zero, 30}, 30, 0, 1, true},
      {{countdown, 60, zero, 0}, 600, 0, 1, true},
      {{countdown, 60, momentAt(50), 10}, 0, 50, 10.0 / 60, false},
      {{countdown, 0, std::nullopt, 0}, 0, 0, 1, true},
      {{countdown, -5, zero, 0}, 0, 0, 1, true},
      {{stopwatch, 60, zero, 0}, 59.9, 59, 59.9 / 60, false},
      {{stopwatch, 60, zero, 0}, 90, 90, 0.5, false},
      {{stopwatch, 0, std::nullopt, 3725.4}, 0, 3725, 5.4 / 60, false},
  };
  for (const auto& [run, now, seconds, progress, isFinished] : cases) {
    EXPECT_EQ(run.displayedSeconds(momentAt(now)), seconds) << now;
    EXPECT_NEAR(run.progress(momentAt(now)), progress, 1e-9) << now;
    EXPECT_EQ(run.isFinished(momentAt(now)), isFinished) << now;
  }
}

TEST(TimerRun, LifeOfACountdown) {
  TimerRun run;
  EXPECT_EQ(run, (TimerRun{countdown, 1500, std::nullopt, 0}));
  run.startCountdown(300, momentAt(0));
  EXPECT_EQ(run.endDate(), momentAt(300));
  run.pause(momentAt(100));
  EXPECT_EQ(run.endDate(), std::nullopt);
  EXPECT_TRUE(run.hasStarted());
  run.pause(momentAt(150));
  EXPECT_EQ(run.accumulated, 100);
  run.start(momentAt(200));
  run.start(momentAt(250));
  EXPECT_EQ(run.endDate(), momentAt(400));
  run.pause(momentAt(401));
  EXPECT_TRUE(run.isFinished(momentAt(401)));
  run.start(momentAt(500)); // anew, from the full length
  EXPECT_EQ(run, (TimerRun{countdown, 300, momentAt(500), 0}));
  run.mode = stopwatch;
  EXPECT_EQ(run.endDate(), std::nullopt);
  run.reset();
  EXPECT_EQ(run, (TimerRun{stopwatch, 300, std::nullopt, 0}));
  run.accumulated = 400;
  run.start(momentAt(0)); // a stopwatch beyond the duration goes on
  EXPECT_EQ(run.accumulated, 400);
}

TEST(TimerRun, CatchesUpAfterARestart) {
  const std::tuple<TimerRun, double, TimerRun> cases[] = {
      {{countdown, 60, zero, 0}, 59, {countdown, 60, zero, 0}},
      {{countdown, 60, zero, 0}, 60, {countdown, 60, std::nullopt, 60}},
      {{countdown, 60, zero, 20}, 9999, {countdown, 60, std::nullopt, 60}},
      {{countdown, 60, std::nullopt, 20}, 9999, {countdown, 60, std::nullopt, 20}},
      {{countdown, 60, momentAt(100), 0}, 0, {countdown, 60, momentAt(100), 0}},
      {{stopwatch, 60, zero, 0}, 9999, {stopwatch, 60, zero, 0}}};
  for (const auto& [saved, now, expected] : cases)
    EXPECT_EQ(saved.caughtUp(momentAt(now)), expected) << now;
}

TEST(TimerRun, CodingIsStrict) {
  const TimerRun run{stopwatch, 0.1, momentAt(0.3), 1e-9};
  EXPECT_EQ(decode<TimerRun>(JSONValue::parse(encode(run).compact())), run);
  for (const auto* text :
       {"{}", R"({"mode":"countdown","duration":1})",
        R"({"mode":"hourglass","duration":1,"accumulated":0})",
        R"({"mode":"countdown","duration":null,"accumulated":0})",
        R"({"mode":"countdown","duration":1e999,"accumulated":0})",
        R"({"mode":"countdown","duration":1,"accumulated":0,"startedAt":"now"})"})
    EXPECT_THROW(decode<TimerRun>(JSONValue::parse(text)), CodingError) << text;
}

TEST(TimerRun, AbsurdNumbersStayShowable) {
  for (const double huge : {1e300, -1e300}) {
    const TimerRun run{countdown, huge, zero, huge};
    EXPECT_FALSE(TimerRun::format(run.displayedSeconds(momentAt(0))).empty());
    EXPECT_GE(run.displayedSeconds(momentAt(0)), 0);
  }
}

TEST(StopwatchRun, LifeWithLaps) {
  StopwatchRun run;
  run.lap(momentAt(0));
  EXPECT_TRUE(run.laps.empty());
  run.toggle(momentAt(0));
  run.lap(momentAt(10));
  run.toggle(momentAt(15));
  run.lap(momentAt(20));
  run.start(momentAt(30));
  run.start(momentAt(40));
  run.lap(momentAt(31.5));
  EXPECT_EQ(run, (StopwatchRun{momentAt(30), 15, {10, 16.5}}));
  EXPECT_EQ(decode<StopwatchRun>(JSONValue::parse(encode(run).compact())), run);
  EXPECT_EQ(run.elapsed(momentAt(0)), 15); // the clock was set back
  run.reset();
  EXPECT_EQ(run, StopwatchRun{});
  EXPECT_THROW(decode<StopwatchRun>(JSONValue::parse(R"({"accumulated":1})")), CodingError);
}

TEST(StopwatchRun, Text) {
  const std::tuple<double, bool, const char*> cases[] = {
      {0, true, "00:00.0"},       {65.4, true, "01:05.4"},     {65.3, true, "01:05.3"},
      {65.4, false, "01:05"},     {0.999, true, "00:00.9"},    {-3, true, "00:00.0"},
      {3599.99, true, "59:59.9"}, {3600, true, "1:00:00"},     {3725.4, false, "1:02:05"},
      {3725.4, true, "1:02:05"},  {360'000, true, "100:00:00"}};
  for (const auto& [seconds, showsTenths, text] : cases)
    EXPECT_EQ(StopwatchRun::text(seconds, showsTenths), text) << seconds;
  for (int tenths = 0; tenths < 36'000; ++tenths)
    ASSERT_EQ(StopwatchRun::text(tenths / 10.0, true).back(), '0' + tenths % 10) << tenths;
}

TEST(Countdown, WeekShare) {
  constexpr double day = 86'400;
  const std::pair<double, double> cases[] = {{14 * day, 1},  {7 * day, 1}, {3.5 * day, 0.56},
                                             {1e-3, 0.12},   {0, 0},       {-1, 0},
                                             {-100 * day, 0}};
  for (const auto& [interval, share] : cases)
    EXPECT_NEAR(Countdown::weekShare({momentAt(interval)}, zero), share, 1e-6) << interval;
}

TEST(Countdown, ShownSeconds) {
  const std::tuple<double, bool, std::int64_t, bool> cases[] = {
      {59.2, false, 60, false}, {59.2, true, 60, false}, {0, false, 0, false},
      {0, true, 0, true},       {-0.5, true, 0, true},   {-90.9, true, 90, true},
      {-90.9, false, 0, false}};
  for (const auto& [interval, countsUp, seconds, isSince] : cases) {
    const CountdownSettings settings{momentAt(interval), countsUp};
    EXPECT_EQ(Countdown::displayedSeconds(settings, zero), seconds) << interval;
    EXPECT_EQ(Countdown::showsTimeSince(settings, zero), isSince) << interval;
  }
}

TEST(Countdown, Caption) {
  const Calendar london("Europe/London", "en_GB");
  const CountdownSettings settings{london.date({2026, 12, 24, 18, 30, 0}), false};
  EXPECT_EQ(Countdown::caption(settings, settings.target - 1, london),
            "left until 24 Dec 2026, 18:30");
  EXPECT_EQ(Countdown::caption(settings, settings.target, london), "since 24 Dec 2026, 18:30");
  EXPECT_EQ(Countdown::caption(settings, settings.target + 1, london.inTimeZone("Asia/Tokyo")),
            "since 25 Dec 2026, 03:30");
  for (const double target : {1e300, -1e300, 1e15})
    EXPECT_FALSE(Countdown::caption({Date{target}, true}, zero, london).empty());
}

TEST(TickSchedule, Entries) {
  const TickSchedule schedule(0.25);
  EXPECT_EQ(schedule.entry(0, zero), zero);
  EXPECT_EQ(schedule.entry(1'000'000, zero), momentAt(250'000));
  EXPECT_EQ(schedule.next(zero, momentAt(-5)), zero);
  EXPECT_EQ(schedule.next(zero, zero), momentAt(0.25));
  EXPECT_EQ(schedule.next(zero, momentAt(0.3)), momentAt(0.5));
  for (const auto& [still, mode] : {std::pair{TickSchedule(1, true), TickSchedule::Mode::normal},
                                    std::pair{TickSchedule(1), TickSchedule::Mode::lowFrequency}}) {
    EXPECT_EQ(still.entry(0, zero, mode), zero);
    EXPECT_EQ(still.entry(1, zero, mode), std::nullopt);
    EXPECT_EQ(still.next(zero, zero, mode), std::nullopt);
  }
  for (const double interval : {0.0, -1.0, 1.0 / 100, std::nan("")})
    EXPECT_EQ(TickSchedule(interval).interval(), 1.0 / 60);
}

} // namespace
} // namespace tavrin
