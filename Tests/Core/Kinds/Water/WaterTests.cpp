#include "TavrinCore/Kinds/Water/WaterReading.h"
#include "TavrinCore/Kinds/Water/WaterSettings.h"

#include <gtest/gtest.h>
#include <limits>

namespace tavrin {
namespace {

const Calendar berlin("Europe/Berlin", "en_GB");

Date at(int year, int month, int day, int hour = 12, int minute = 0) {
  return berlin.date({year, month, day, hour, minute, 0, 1});
}
constexpr auto maximum = std::numeric_limits<int>::max();

TEST(WaterLog, PoursOnADayWithoutAnEntryStandInOrder) {
  WaterLog log;
  log.add(250, at(2026, 3, 9), berlin);
  log.add(100, at(2026, 3, 7), berlin);
  log.add(250, at(2026, 3, 9, 13), berlin);
  EXPECT_EQ(log.days, (std::vector<WaterDay>{{"2026-03-07", 100}, {"2026-03-09", 500}}));
  EXPECT_EQ(log.lastPour, at(2026, 3, 9, 13));
  log.clear(at(2026, 3, 7, 23, 59), berlin);
  EXPECT_EQ(log.days.size(), 1u);
  EXPECT_EQ(log.total(at(2026, 3, 7), berlin), 0);
}

TEST(WaterLog, The61stDayDropsTheOldest) {
  WaterLog log;
  for (int day = 0; day < 61; ++day)
    log.add(250, berlin.addingDays(day, at(2026, 1, 1)), berlin);
  EXPECT_EQ(log.days.size(), 60u);
  EXPECT_EQ(log.days.front().day, "2026-01-02");
  EXPECT_EQ(log.days.back().day, "2026-03-02");
}

TEST(WaterLog, TotalsStayWithinBoundsAndTakingBackIsNoPour) {
  struct Case {
    int before, change, after;
    bool isPour;
  };
  const Case cases[] = {{100, -250, 0, false},
                        {500, -250, 250, false},
                        {0, -250, 0, false},
                        {0, 0, 0, false},
                        {0, 1, 1, true},
                        {maximum, maximum, maximum, true},
                        {500, -maximum - 1, 0, false}};
  for (const auto& [before, change, after, isPour] : cases) {
    WaterLog log{{{"2026-03-09", before}}, at(2026, 3, 9, 8)};
    log.add(change, at(2026, 3, 9), berlin);
    EXPECT_EQ(log.total(at(2026, 3, 9), berlin), after) << before << " " << change;
    EXPECT_EQ(*log.lastPour == at(2026, 3, 9), isPour) << before << " " << change;
  }
  WaterLog log;
  log.add(100, at(2026, 3, 9), berlin);
  log.remove(250, at(2026, 3, 9, 14), berlin);
  EXPECT_EQ(log, (WaterLog{{{"2026-03-09", 0}}, at(2026, 3, 9)}));
}

TEST(WaterLog, AWeekEndsWithItsDayAcrossAClockChange) {
  WaterLog log{{{"2026-03-24", 100}, {"2026-03-29", 700}, {"2026-03-31", 900}}, std::nullopt};
  const auto week = log.week(at(2026, 3, 30, 0, 30), berlin);
  const int totals[] = {100, 0, 0, 0, 0, 700, 0};
  for (std::size_t i = 0; i < week.size(); ++i)
    EXPECT_EQ(week[i].millilitres, totals[i]) << week[i].day;
  EXPECT_EQ(week.front().day, "2026-03-24");
  EXPECT_EQ(week.back().day, "2026-03-30");
}

TEST(WaterLog, TheTankDrainsOverTheRefillTime) {
  struct Case {
    int total;
    double minutes;
    WaterSettings settings;
    double level;
    std::optional<double> minutesToNext;
  };
  const WaterSettings plain;
  WaterSettings goalless;
  goalless.goal = 0;
  WaterSettings hasty;
  hasty.refillMinutes = 0;
  const Case cases[] = {
      {250, 0, plain, 1, 45},
      {250, 40, plain, 1 - 40.0 / 45, 5},
      {250, 45, plain, 0, {}},
      {250, 300, plain, 0, {}},
      {0, 5, plain, 0, {}},
      {2000, 40, plain, 1, {}},
      {2000, 300, plain, 1, {}},
      {1999, 300, plain, 0, {}},
      {9000, 15, goalless, 2 / 3., 30},
      {250, 0.5, hasty, 0.5, 0.5},
      {250, -10, plain, 1, 55},
  };
  const Date now = at(2026, 3, 9, 18);
  for (const auto& [total, minutes, settings, level, toNext] : cases) {
    const WaterLog log{{{"2026-03-09", total}}, now - minutes * 60};
    EXPECT_NEAR(log.tankLevel(now, settings, berlin), level, 1e-9) << total << " " << minutes;
    const auto next = log.nextGlass(now, settings, berlin);
    ASSERT_EQ(next.has_value(), toNext.has_value()) << total << " " << minutes;
    if (next) {
      EXPECT_NEAR(next->since(now) / 60, *toNext, 1e-9);
    }
  }
}

TEST(WaterLog, AfterMidnightTheTankIsEmpty) {
  WaterLog log;
  log.add(250, at(2026, 3, 9, 23, 59), berlin);
  EXPECT_GT(log.tankLevel(at(2026, 3, 9, 23, 59), {}, berlin), 0.9);
  EXPECT_EQ(log.tankLevel(at(2026, 3, 10, 0, 0), {}, berlin), 0);
  EXPECT_EQ(log.nextGlass(at(2026, 3, 10, 0, 0), {}, berlin), std::nullopt);
  // An entry of today with yesterday's pour, as another zone may leave it.
  log.days.push_back({"2026-03-10", 250});
  EXPECT_EQ(log.tankLevel(at(2026, 3, 10, 0, 1), {}, berlin), 0);
}

TEST(WaterLog, AFileWrittenElsewhereIsPutInOrder) {
  WaterLog log{{{"2026-03-09", -5}, {"2026-03-07", 3}, {"2026-03-09", 70}}, std::nullopt};
  log.tidy();
  EXPECT_EQ(log.days, (std::vector<WaterDay>{{"2026-03-07", 3}, {"2026-03-09", 0}}));
}

TEST(WaterReading, CountsGlasses) {
  struct Case {
    int total, goal, glass;
    const char* count;
    double fill;
  };
  const Case cases[] = {{0, 2000, 300, "0/7", 0},     {0, 2000, 0, "0/1", 0},
                        {500, 0, 250, "2/1", 0},      {749, 2000, 250, "2/8", 749 / 2000.0},
                        {2600, 2000, 250, "10/8", 1}, {5, -3, -1, "0/1", 0}};
  for (const auto& [total, goal, glass, count, fill] : cases) {
    WaterReading reading;
    reading.millilitres = total;
    reading.settings.goal = goal;
    reading.settings.glass = glass;
    EXPECT_EQ(reading.count(), count);
    EXPECT_DOUBLE_EQ(reading.fill(), fill) << count;
  }
}

TEST(WaterReading, TimeLeftIsRoundedUpAndAtLeastAMinute) {
  const std::pair<double, const char*> cases[] = {
      {0, "1 min"},          {1, "1 min"},  {60, "1 min"},       {61, "2 min"},
      {44.5 * 60, "45 min"}, {3600, "1 h"}, {3601, "1 h 1 min"}, {180 * 60, "3 h"}};
  for (const auto& [seconds, text] : cases) {
    WaterReading reading;
    reading.next = Date{} + seconds;
    EXPECT_EQ(reading.timeLeft(), text);
  }
  EXPECT_EQ(WaterReading{}.timeLeft(), std::nullopt);
}

TEST(WaterUnit, Formats) {
  EXPECT_EQ(format(WaterUnit::ounces, 500), "16.9 oz");
  EXPECT_EQ(format(WaterUnit::ounces, 0), "0.0 oz");
  EXPECT_EQ(format(WaterUnit::millilitres, 2250), "2250 ml");
}

} // namespace
} // namespace tavrin
