#include "TavrinCore/Kinds/Calendar/Reminder.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "Tests/Core/Kinds/Calendar/BerlinNoon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::ElementsAre;

const Date today = berlin.startOfDay(noon);
constexpr double day = 86'400;

Reminder timed(const char* title, double seconds, int priority = 0) {
  return {title, "l", title, noon + seconds, false, false, {}, priority};
}
Reminder dated(const char* title, int days) {
  return {title, "l", title, berlin.addingDays(days, today), true, false, {}, 0};
}
Reminder done(const char* title, Date at) {
  return {title, "l", title, {}, false, true, at, 0};
}
std::vector<std::string> selected(std::vector<Reminder> reminders, int daysAhead,
                                  bool showsCompleted = false) {
  ReminderSettings settings;
  settings.daysAhead = daysAhead;
  settings.showsCompleted = showsCompleted;
  std::vector<std::string> titles;
  for (const auto& entry : selectReminders(std::move(reminders), settings, noon, berlin))
    titles.push_back(entry.title);
  return titles;
}

TEST(Reminders, LateOnesFirstThenByDateThenThoseWithout) {
  const Reminder undated{"undated", "l", "undated", {}, false, false, {}, 0};
  EXPECT_THAT(
      selected({undated, dated("tomorrow", 1), timed("in an hour", 3600), dated("today", 0),
                timed("an hour late", -3600), dated("last week", -7)},
               7),
      ElementsAre("last week", "today", "an hour late", "in an hour", "tomorrow", "undated"));
  EXPECT_THAT(selected({timed("plain", 60), timed("low", 60, 9), timed("high", 60, 1)}, 7),
              ElementsAre("high", "low", "plain"));
}

TEST(Reminders, TodayIsTheFirstOfTheDaysAhead) {
  const std::vector<Reminder> all = {dated("today", 0), timed("tonight", 11.99 * 3600),
                                     timed("midnight", 12 * 3600), dated("tomorrow", 1),
                                     dated("in a week", 7)};
  EXPECT_THAT(selected(all, 1), ElementsAre("today", "tonight"));
  EXPECT_THAT(selected(all, 2).size(), 4u);
  EXPECT_THAT(selected(all, 7).size(), 4u);
  EXPECT_THAT(selected(all, 8).size(), 5u);
  EXPECT_THAT(selected(all, 0), ElementsAre("today", "tonight")) << "one day at least";
}

Reminder doneYesterday(Reminder reminder) {
  reminder.isCompleted = true;
  reminder.completedAt = today - 1;
  return reminder;
}

TEST(Reminders, CompletedOnesAreThoseOfTodayOrDueInTheDaysAheadWhereWanted) {
  const std::vector<Reminder> all = {done("yesterday", today - 1),
                                     doneYesterday(dated("was due", -1)),
                                     doneYesterday(dated("due", 6)),
                                     doneYesterday(dated("far", 7)),
                                     done("first", today),
                                     done("last", noon),
                                     dated("open", 0),
                                     {"u", "l", "unknown", {}, false, true, {}, 0}};
  EXPECT_THAT(selected(all, 7), ElementsAre("open"));
  EXPECT_THAT(selected(all, 7, true), ElementsAre("open", "last", "first", "due"));
}

TEST(Reminders, ADayIsLateFromTheNextDayOnAndATimeAtOnce) {
  EXPECT_FALSE(isOverdue(dated("d", 0), noon, berlin));
  EXPECT_FALSE(isOverdue(dated("d", 0), today + day - 1, berlin));
  EXPECT_TRUE(isOverdue(dated("d", 0), today + day, berlin));
  EXPECT_FALSE(isOverdue(timed("t", 0), noon, berlin));
  EXPECT_TRUE(isOverdue(timed("t", 0), noon + 1, berlin));
  EXPECT_FALSE(isOverdue(done("d", noon), noon + day, berlin));
  EXPECT_FALSE(isOverdue({"u", "l", "u", {}, false, false, {}, 0}, noon, berlin));
}

TEST(Reminders, AnEmptyTitleHasWords) {
  for (const auto& [title, shown] :
       {std::pair("", "Untitled reminder"), std::pair(" \t\n", "Untitled reminder"),
        std::pair(" Milk ", "Milk")})
    EXPECT_EQ(displayTitle({"r", "l", title, {}, false, false, {}, 0}), shown);
}

} // namespace
} // namespace tavrin
