#include "TavrinCore/Base/Calendar.h"

#include "TavrinCore/Kinds/System/ClockFormat.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/TimeProgress.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

const Calendar german("Europe/Berlin", "de_DE");
const Calendar newYork("America/New_York", "en_US");

struct DayCase {
  const char* zone;
  DateComponents moment;
  double hours;
  int firstHour;
};

TEST(Calendar, DaysOnWhichClocksChange) {
  const DayCase cases[] = {
      {"Europe/Berlin", {2026, 3, 28, 12}, 24, 0},
      {"Europe/Berlin", {2026, 3, 29, 12}, 23, 0},
      {"Europe/Berlin", {2026, 10, 25, 1}, 25, 0},
      {"Europe/Berlin", {2026, 10, 25, 23, 59, 59}, 25, 0},
      {"America/New_York", {2026, 3, 8, 12}, 23, 0},
      {"America/Sao_Paulo", {2018, 11, 4, 12}, 23, 1}, // midnight is skipped
      {"America/Sao_Paulo", {2018, 2, 17, 12}, 25, 0}, // 23:00 comes twice
      {"America/Havana", {2026, 11, 1, 12}, 25, 0},    // midnight comes twice
      {"Australia/Lord_Howe", {2026, 4, 5, 12}, 24.5, 0},
      {"Pacific/Apia", {2011, 12, 29, 12}, 24, 0}, // the 30th never was
      {"Asia/Kathmandu", {2026, 1, 1, 0}, 24, 0},
  };
  for (const auto& [zone, moment, hours, firstHour] : cases) {
    const Calendar calendar(zone, "en_GB");
    const auto date = calendar.date(moment);
    const auto day = calendar.dateInterval(CalendarUnit::day, date);
    ASSERT_TRUE(day);
    EXPECT_EQ(day->duration() / 3600, hours) << zone << " " << moment.day;
    EXPECT_EQ(calendar.components(day->start).hour, firstHour) << zone;
    EXPECT_TRUE(day->contains(date));
    EXPECT_TRUE(calendar.isSameDay(day->start, day->end - 0.001));
    EXPECT_FALSE(calendar.isSameDay(day->start, day->end));
    EXPECT_FALSE(calendar.isSameDay(day->start, day->start - 0.001));
    EXPECT_EQ(calendar.startOfDay(date), day->start);
  }
}

TEST(Calendar, SaysDatesAndTimesAsTheLocaleDoes) {
  const Date moment = german.date({2026, 9, 9, 14, 30});
  EXPECT_EQ(german.timeOfDay(moment), "14:30");
  EXPECT_EQ(newYork.timeOfDay(moment), "8:30\u202FAM");
  EXPECT_EQ(german.fullDate(moment), "Mittwoch, 9. September 2026");
  EXPECT_EQ(newYork.fullDate(moment), "Wednesday, September 9, 2026");
}

/// Each day begins where the one before it ended, through years of changing clocks.
TEST(Calendar, DaysFollowOneAnotherWithoutGaps) {
  for (const auto* zone : {"Europe/Berlin", "America/Sao_Paulo", "Africa/Casablanca", "Asia/Gaza",
                           "Pacific/Apia", "Australia/Lord_Howe"}) {
    const Calendar calendar(zone, "en_GB");
    Date date = calendar.date({2009, 1, 1});
    for (int i = 0; i < 4000; ++i) {
      const auto day = calendar.dateInterval(CalendarUnit::day, date);
      ASSERT_TRUE(day && day->start == date && day->duration() >= 22 * 3600.0) << zone << " " << i;
      ASSERT_EQ(calendar.dateInterval(CalendarUnit::day, day->end - 1), day) << zone << " " << i;
      date = day->end;
    }
  }
}

TEST(Calendar, WeeksFollowTheLocale) {
  const std::pair<const char*, int> cases[] = {
      {"de_DE", 9}, {"en_US", 8}, {"en_GB", 9}, {"ar_EG", 7}};
  for (const auto& [locale, firstDay] : cases) {
    const Calendar calendar("Europe/Berlin", locale);
    const auto week =
        calendar.dateInterval(CalendarUnit::week, calendar.date({2026, 3, 12, 15, 0, 0}));
    ASSERT_TRUE(week);
    EXPECT_EQ(calendar.components(week->start).day, firstDay) << locale;
    EXPECT_EQ(week->duration(), 7 * 86'400.0);
  }
  const auto change = german.dateInterval(CalendarUnit::week, german.date({2026, 3, 29, 1}));
  EXPECT_EQ(change->duration(), 7 * 86'400.0 - 3600);
}

TEST(Calendar, MonthsAndYears) {
  const std::tuple<CalendarUnit, DateComponents, double> cases[] = {
      {CalendarUnit::month, {2024, 2, 29, 23}, 29},
      {CalendarUnit::month, {2026, 2, 1, 0}, 28},
      {CalendarUnit::month, {2026, 12, 31, 23, 59, 59}, 31},
      {CalendarUnit::year, {2024, 12, 31, 23}, 366},
      {CalendarUnit::year, {1900, 6, 1}, 365}};
  const Calendar utc("UTC", "en_GB");
  for (const auto& [unit, moment, days] : cases)
    EXPECT_EQ(utc.dateInterval(unit, utc.date(moment))->duration(), days * 86'400) << moment.month;
}

TEST(Calendar, DatesBeyondReach) {
  for (const double seconds : {1e300, -1e300, std::nan(""), HUGE_VAL}) {
    EXPECT_EQ(german.dateInterval(CalendarUnit::day, Date{seconds}), std::nullopt);
    EXPECT_FALSE(german.isSameDay(Date{seconds}, Date{0}));
  }
  EXPECT_TRUE(german.isSameDay(Date{1e300}, Date{1e300}));
}

TEST(Calendar, UnknownZonesAreNoticed) {
  for (const auto* zone : {"Nowhere/Invalid", "", "Europe/berlinn", "../../etc/passwd"})
    EXPECT_FALSE(Calendar::isKnownTimeZone(zone)) << zone;
  for (const auto* zone : {"Europe/Berlin", "UTC", "America/Argentina/Buenos_Aires"})
    EXPECT_TRUE(Calendar::isKnownTimeZone(zone)) << zone;
  EXPECT_EQ(newYork.inTimeZone("Nowhere/Invalid"), newYork);
  EXPECT_EQ(Calendar("Nowhere/Invalid", "en_GB").timeZoneID(), Calendar("", "en_GB").timeZoneID());
}

TEST(Calendar, AddingDaysKeepsTheTimeOfDay) {
  const auto before = german.date({2026, 3, 28, 15, 30, 12}) + 0.25;
  EXPECT_EQ(german.addingDays(1, before).since(before), 23 * 3600.0);
  EXPECT_EQ(german.addingDays(-27, before), german.date({2026, 3, 1, 15, 30, 12}) + 0.25);
}

TEST(Calendar, CopiesAreIndependent) {
  Calendar copy = german;
  copy = newYork;
  const auto date = german.date({2026, 7, 1, 12});
  EXPECT_EQ(copy.components(date).hour, 6);
  EXPECT_EQ(german.components(date).hour, 12);
  const Calendar moved = std::move(copy);
  EXPECT_EQ(moved.components(date), (DateComponents{2026, 7, 1, 6, 0, 0, 4}));
}

struct ClockCase {
  ClockSettings settings;
  const Calendar& calendar;
  const char* time;
};

TEST(ClockFormat, Time) {
  const Calendar tokyo("Asia/Tokyo", "ja_JP");
  const auto date = german.date({2026, 7, 1, 15, 7, 9});
  const ClockCase cases[] = {
      {{{}, false, {}, false}, german, "15:07"},
      {{{}, true, {}, false}, german, "15:07:09"},
      {{{}, false, false, false}, german, "3:07"},
      {{{}, false, {}, false}, newYork, "9:07"},
      {{{}, true, true, false}, newYork, "09:07:09"},
      {{"America/New_York", false, {}, false}, german, "09:07"},
      {{"Europe/Berlin", false, {}, false}, newYork, "3:07"},
      {{"Nowhere/Invalid", false, {}, false}, german, "15:07"},
      {{{}, false, {}, false}, tokyo, "22:07"},
  };
  for (const auto& [settings, calendar, time] : cases)
    EXPECT_EQ(ClockFormat(settings, calendar).time(date), time);
}

TEST(ClockFormat, WeekdayIsThatOfTheClocksZone) {
  const auto date = german.date({2026, 7, 1, 23, 30, 0});
  EXPECT_EQ(ClockFormat({}, german).dayCaption(date), "Mittwoch");
  EXPECT_EQ(ClockFormat({"Asia/Tokyo", false, {}, false}, german).dayCaption(date), "Donnerstag");
  EXPECT_EQ(ClockFormat({"Asia/Tokyo", false, {}, false}, newYork).dayCaption(date), "Thursday");
}

TEST(ClockFormat, Hands) {
  const auto hands =
      ClockFormat({{}, true, {}, true}, german).hands(german.date({2026, 7, 1, 15, 30, 45}));
  EXPECT_DOUBLE_EQ(hands.hour, 3.5 / 12);
  EXPECT_DOUBLE_EQ(hands.minute, 30.75 / 60);
  EXPECT_DOUBLE_EQ(hands.second, 0.75);
}

struct ProgressCase {
  TimeProgressScope scope;
  DateComponents moment;
  double fraction;
  int percentLeft;
};

TEST(TimeProgress, FractionAndPercentLeft) {
  using S = TimeProgressScope;
  const ProgressCase cases[] = {
      {S::day, {2026, 3, 10, 12}, 0.5, 50},
      {S::day, {2026, 3, 10, 0}, 0, 100},
      {S::day, {2026, 3, 10, 23, 59, 59}, 86'399.0 / 86'400, 0},
      {S::day, {2026, 3, 29, 12}, 11.0 / 23, 52},  // an hour less
      {S::day, {2026, 10, 25, 12}, 13.0 / 25, 48}, // an hour more
      {S::week, {2026, 3, 9, 0}, 0, 100},          // Monday
      {S::week, {2026, 3, 12, 12}, 0.5, 50},
      {S::month, {2026, 2, 15, 0}, 0.5, 50},
      {S::year, {2026, 1, 1, 0}, 0, 100},
      {S::year, {2026, 12, 31, 23, 59, 59}, 1 - 1 / (365 * 86'400.0), 0},
  };
  for (const auto& [scope, moment, fraction, percentLeft] : cases) {
    const auto date = german.date(moment);
    EXPECT_NEAR(TimeProgress::fraction(scope, date, german), fraction, 1e-9) << moment.day;
    EXPECT_EQ(TimeProgress::percentLeft(scope, date, german), percentLeft) << moment.day;
  }
  const auto almost = german.date({2026, 3, 10, 23, 59, 59}) + 0.6;
  EXPECT_LT(TimeProgress::fraction(S::day, almost, german), 1);
  EXPECT_EQ(TimeProgress::percentLeft(S::day, almost, german), 0);
  EXPECT_EQ(TimeProgress::fraction(S::year, Date{1e300}, german), 0);
}

} // namespace
} // namespace tavrin
