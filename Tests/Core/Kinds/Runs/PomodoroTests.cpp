#include "TavrinCore/Kinds/Runs/PomodoroRun.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

const Calendar berlinTime("Europe/Berlin", "de_DE");

/// 2026-03-10 09:00 in Berlin, and `seconds` later.
Date at(double seconds) {
  return berlinTime.date({2026, 3, 10, 9, 0, 0}) + seconds;
}

constexpr auto focus = PomodoroPhase::focus;
constexpr auto shortBreak = PomodoroPhase::shortBreak;
constexpr auto longBreak = PomodoroPhase::longBreak;

TEST(PomodoroSettings, LengthIsAtLeastASecond) {
  for (const double stored : {0.0, -5.0, 0.5, 1.0})
    EXPECT_EQ((PomodoroSettings{stored, stored, stored}.length(longBreak)), 1);
  EXPECT_EQ(PomodoroSettings{}.length(shortBreak), 300);
  EXPECT_EQ(title(longBreak), "Long Break");
  EXPECT_EQ(title(shortBreak), "Break");
}

TEST(PomodoroRun, Rhythm) {
  const std::pair<int, std::vector<PomodoroPhase>> cases[] = {
      {4, {shortBreak, focus, shortBreak, focus, shortBreak, focus, longBreak, focus, shortBreak}},
      {2, {shortBreak, focus, longBreak, focus, shortBreak, focus, longBreak}},
      {1, {shortBreak, focus, longBreak, focus, shortBreak, focus, longBreak}},
      {0, {shortBreak, focus, longBreak, focus, shortBreak}},
      {-3, {shortBreak, focus, longBreak, focus, shortBreak}},
      {3, {shortBreak, focus, shortBreak, focus, longBreak, focus}}};
  for (const auto& [cycles, phases] : cases) {
    PomodoroSettings settings;
    settings.cyclesBeforeLongBreak = cycles;
    auto run = PomodoroRun::fresh(at(0));
    int sessions = 0;
    for (const auto expected : phases) {
      sessions += run.phase == focus ? 1 : 0;
      EXPECT_EQ(run.nextPhase(settings), expected);
      run.advance(at(1), settings, true, berlinTime);
      EXPECT_EQ(run.phase, expected) << "cycles " << cycles;
      EXPECT_EQ(run.sessionsToday, sessions);
      EXPECT_EQ(run.isRunning(), expected != focus);
      EXPECT_EQ(run.accumulated, 0);
    }
  }
}

TEST(PomodoroRun, CycleGoesBackToZeroAfterALongBreak) {
  const PomodoroSettings settings;
  PomodoroRun run{longBreak, at(0), 0, 4, 4, at(0)};
  run.advance(at(900), settings, false, berlinTime);
  EXPECT_EQ(run, (PomodoroRun{focus, std::nullopt, 0, 0, 4, at(0)}));
}

TEST(PomodoroRun, ASkippedFocusCountsForNothing) {
  const PomodoroSettings settings;
  PomodoroRun run{focus, at(0), 10, 3, 7, at(0)};
  run.advance(at(100), settings, false, berlinTime);
  EXPECT_EQ(run, (PomodoroRun{longBreak, at(100), 0, 3, 7, at(0)}));
}

TEST(PomodoroRun, BreaksWaitWhenToldTo) {
  PomodoroSettings settings;
  settings.startsBreaksAutomatically = false;
  auto run = PomodoroRun::fresh(at(0));
  run.advance(at(100), settings, true, berlinTime);
  EXPECT_EQ(run, (PomodoroRun{shortBreak, std::nullopt, 0, 1, 1, at(0)}));
}

TEST(PomodoroRun, StartPauseReset) {
  auto run = PomodoroRun::fresh(at(0));
  EXPECT_FALSE(run.hasStarted());
  run.pause(at(5));
  EXPECT_EQ(run, PomodoroRun::fresh(at(0)));
  run.start(at(10), berlinTime);
  run.start(at(20), berlinTime);
  EXPECT_EQ(run.startedAt, at(10));
  run.pause(at(70));
  EXPECT_EQ(run.accumulated, 60);
  EXPECT_TRUE(run.hasStarted());
  EXPECT_FALSE(run.isRunning());
  run.start(at(100), berlinTime);
  EXPECT_EQ(run.elapsed(at(101)), 61);
  run.cycle = 2;
  run.sessionsToday = 3;
  run.reset();
  EXPECT_EQ(run, (PomodoroRun{focus, std::nullopt, 0, 2, 3, at(0)}));
  run.phase = longBreak;
  run.resetEverything(at(200));
  EXPECT_EQ(run, PomodoroRun::fresh(at(200)));
}

TEST(PomodoroRun, AClockSetBackTakesNothingAway) {
  const PomodoroSettings settings;
  PomodoroRun run{focus, at(1000), 300, 0, 0, at(0)};
  EXPECT_EQ(run.elapsed(at(0)), 300);
  EXPECT_EQ(run.remaining(at(0), settings), 1200);
  EXPECT_EQ(run.displayedSeconds(at(0), settings), 1200);
  run.pause(at(-5000));
  EXPECT_EQ(run.accumulated, 300);
}

TEST(PomodoroRun, WhatIsShown) {
  const PomodoroSettings settings;
  const std::tuple<double, std::int64_t, bool> cases[] = {
      {0, 1500, false},   {0.1, 1500, false}, {1, 1499, false}, {1440.8, 60, false},
      {1499.9, 1, false}, {1500, 0, true},    {9000, 0, true}};
  for (const auto& [elapsed, seconds, isFinished] : cases) {
    const PomodoroRun run{focus, std::nullopt, elapsed, 0, 0, at(0)};
    EXPECT_EQ(run.displayedSeconds(at(0), settings), seconds) << elapsed;
    EXPECT_EQ(run.isFinished(at(0), settings), isFinished) << elapsed;
    EXPECT_LE(run.progress(at(0), settings), 1);
    EXPECT_EQ(run.endDate(settings), std::nullopt);
  }
  const PomodoroRun running{focus, at(100), 500, 0, 0, at(0)};
  EXPECT_EQ(running.endDate(settings), at(1100));
  EXPECT_DOUBLE_EQ(running.progress(at(350), settings), 0.5);
  const std::pair<int, int> numbers[] = {{0, 1},  {3, 4},  {4, 4},
                                         {99, 4}, {-9, 1}, {std::numeric_limits<int>::max(), 4}};
  for (const auto& [cycle, shown] : numbers)
    EXPECT_EQ((PomodoroRun{focus, std::nullopt, 0, cycle, 0, at(0)}.displayedCycle(settings)),
              shown);
}

TEST(PomodoroRun, ADaysSessionsEndWithTheDay) {
  const auto beforeMidnight = berlinTime.date({2026, 3, 10, 23, 59, 59});
  const PomodoroRun yesterday{focus, std::nullopt, 0, 2, 5, beforeMidnight};
  auto started = yesterday;
  started.start(beforeMidnight + 1, berlinTime);
  EXPECT_EQ(started.sessionsToday, 0);
  EXPECT_EQ(started.day, beforeMidnight + 1);
  EXPECT_EQ(started.cycle, 2);
  auto advanced = yesterday;
  advanced.advance(beforeMidnight + 1, {}, true, berlinTime);
  EXPECT_EQ(advanced.sessionsToday, 1);
  auto same = yesterday;
  same.rollDay(beforeMidnight - 86'398, berlinTime);
  EXPECT_EQ(same, yesterday);
  // In London it is an hour earlier, and still the same day.
  same.rollDay(beforeMidnight + 1, Calendar("Europe/London", "en_GB"));
  EXPECT_EQ(same, yesterday);
}

struct CatchUpCase {
  const char* what;
  PomodoroRun saved;
  double now;
  PomodoroRun expected;
};

TEST(PomodoroRun, CatchesUpAfterARestart) {
  const PomodoroSettings settings;
  const Date day = at(0);
  const CatchUpCase cases[] = {
      {"paused stays",
       {focus, std::nullopt, 70, 1, 1, day},
       5000,
       {focus, std::nullopt, 70, 1, 1, day}},
      {"running goes on", {focus, day, 0, 1, 1, day}, 1499.5, {focus, day, 0, 1, 1, day}},
      {"ends this moment", {focus, day, 0, 0, 0, day}, 1500, {shortBreak, at(1500), 0, 1, 1, day}},
      {"break under way", {focus, day, 0, 0, 0, day}, 1700, {shortBreak, at(1500), 0, 1, 1, day}},
      {"break over too",
       {focus, day, 0, 0, 0, day},
       3000,
       {shortBreak, std::nullopt, 300, 1, 1, day}},
      {"goes no further",
       {focus, day, 0, 0, 0, day},
       30000,
       {shortBreak, std::nullopt, 300, 1, 1, day}},
      {"earlier stretches count",
       {focus, at(1000), 1400, 3, 3, day},
       1150,
       {longBreak, at(1100), 0, 4, 4, day}},
      {"a break ends", {longBreak, day, 0, 4, 4, day}, 901, {focus, std::nullopt, 0, 0, 4, day}},
      {"clock set back", {focus, at(500), 20, 1, 1, day}, 0, {focus, at(500), 20, 1, 1, day}},
  };
  for (const auto& [what, saved, now, expected] : cases)
    EXPECT_EQ(saved.caughtUp(at(now), settings, berlinTime), expected) << what;

  PomodoroSettings waiting = settings;
  waiting.startsBreaksAutomatically = false;
  EXPECT_EQ((PomodoroRun{focus, day, 0, 0, 0, day}.caughtUp(at(9000), waiting, berlinTime)),
            (PomodoroRun{shortBreak, std::nullopt, 0, 1, 1, day}));
  // Nothing left to show where the break ran out.
  EXPECT_EQ((PomodoroRun{focus, day, 0, 0, 0, day}
                 .caughtUp(at(9000), settings, berlinTime)
                 .displayedSeconds(at(9000), settings)),
            0);
}

TEST(PomodoroRun, CatchingUpOverMidnight) {
  const auto late = berlinTime.date({2026, 3, 10, 23, 50, 0});
  const PomodoroRun saved{focus, late, 0, 0, 6, late};
  const auto nextMorning = berlinTime.date({2026, 3, 11, 8, 0, 0});
  const auto run = saved.caughtUp(nextMorning, {}, berlinTime);
  EXPECT_EQ(run.sessionsToday, 1); // it ended after midnight: the new day's first
  const auto twoDaysLater = saved.caughtUp(nextMorning + 86'400, {}, berlinTime);
  EXPECT_EQ(twoDaysLater.sessionsToday, 0);
  EXPECT_EQ(twoDaysLater.day, nextMorning + 86'400);
  EXPECT_EQ(twoDaysLater.cycle, 1);
}

TEST(PomodoroRun, CodingIsStrictAndExact) {
  const PomodoroRun run{longBreak, Date{794'826'123.12345678}, 0.1 + 0.2, 3, 99, Date{-0.0}};
  EXPECT_EQ(decode<PomodoroRun>(JSONValue::parse(encode(run).compact())), run);
  auto paused = run;
  paused.startedAt.reset();
  EXPECT_EQ(encode(paused).member("startedAt"), nullptr);
  EXPECT_EQ(decode<PomodoroRun>(encode(paused)), paused);
  for (const auto* key : {"phase", "accumulated", "cycle", "sessionsToday", "day"}) {
    for (const auto& wrong : {std::optional<JSONValue>(), std::optional<JSONValue>(JSONValue()),
                              std::optional<JSONValue>(JSONValue::Array{})}) {
      auto json = encode(run);
      json.object()->erase(key);
      if (wrong)
        json.object()->emplace(key, *wrong);
      EXPECT_THROW(decode<PomodoroRun>(json), CodingError) << key;
    }
  }
}

} // namespace
} // namespace tavrin
