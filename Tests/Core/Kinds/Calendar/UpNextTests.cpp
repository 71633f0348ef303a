#include "TavrinCore/Kinds/Calendar/CalendarEvent.h"
#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "Tests/Core/Kinds/Calendar/BerlinNoon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double hour = 3600;

CalendarEvent event(const char* title, double start, double end, bool isAllDay = false) {
  return {title, title, noon + start, noon + end, isAllDay, {}, {}};
}
/// `days` after today; lasts for `length` days.
CalendarEvent allDay(const char* title, int days, int length = 1) {
  const Date start = berlin.addingDays(days, berlin.startOfDay(noon));
  return {title, title, start, berlin.addingDays(length, start), true, {}, {}};
}
std::vector<std::string> titles(const std::vector<CalendarEvent>& events) {
  std::vector<std::string> titles;
  for (const auto& entry : events)
    titles.push_back(entry.title);
  return titles;
}

TEST(UpNext, SelectsWhatIsNotOverInTheOrderGiven) {
  const std::vector<CalendarEvent> events = {
      event("over", -2 * hour, -hour), event("just over", -hour, -1), event("ends now", -hour, 0),
      event("going on", -hour, 1),     event("later", 5, 6),          event("sooner", 2, 3),
      event("a moment", 4, 4)};
  EXPECT_THAT(titles(UpNext::select(events, noon, 9)),
              ElementsAre("going on", "later", "sooner", "a moment"));
  EXPECT_THAT(titles(UpNext::select(events, noon, 2)), ElementsAre("going on", "later"));
  EXPECT_THAT(UpNext::select(events, noon, 0), IsEmpty());
  EXPECT_EQ(UpNext::current(events, noon)->title, "going on");
  EXPECT_EQ(UpNext::current(events, noon + 1)->title, "later");
  EXPECT_EQ(UpNext::current(events, noon + 6), std::nullopt);
  EXPECT_EQ(UpNext::current({}, noon), std::nullopt);
}

TEST(UpNext, MinutesAreRoundedUp) {
  const std::pair<double, int> cases[] = {{0, 0},     {0.5, 1},   {60, 1},       {60.5, 2},
                                          {-30, 0},   {-60, -1},  {-61, -1},     {-120, -2},
                                          {3600, 60}, {3601, 61}, {86'400, 1440}};
  for (const auto& [seconds, minutes] : cases)
    EXPECT_EQ(UpNext::minutesUntil(event("e", seconds, seconds + 1), noon), minutes) << seconds;
}

TEST(UpNext, AllDayEventsComeAfterTheTimedOnesOfTheirDay) {
  std::vector<CalendarEvent> events = {allDay("tomorrow", 1),
                                       allDay("since Friday", -3, 5),
                                       event("tonight", 11.9 * hour, 13 * hour),
                                       event("tomorrow morning", 20 * hour, 21 * hour),
                                       allDay("today", 0),
                                       event("b", hour, 2 * hour),
                                       event("a", hour, 2 * hour),
                                       event("short", hour, 1.5 * hour)};
  UpNext::sort(events, noon, berlin);
  EXPECT_THAT(titles(events), ElementsAre("short", "a", "b", "tonight", "today", "since Friday",
                                          "tomorrow morning", "tomorrow"));
}

TEST(CalendarSelection, IncludesAndResolves) {
  const CalendarChoice work{"c1", "Work", "a1", "Office", {}};
  const CalendarChoice home{"c2", "Home", "a2", "Private", {}};
  const CalendarChoice team{"c3", "Team", "a1", "Office", {}};
  const std::vector<CalendarAccount> accounts = {{"a1", "Office", {work, team}},
                                                 {"a2", "Private", {home}}};
  using IDs = std::vector<std::string>;
  struct Case {
    CalendarSelection selection;
    std::optional<IDs> resolved;
  };
  const Case cases[] = {{{}, std::nullopt},
                        {{{"a1"}, {}}, IDs{"c1", "c3"}},
                        {{{}, {"c2"}}, IDs{"c2"}},
                        {{{"a1"}, {"c2"}}, IDs{"c1", "c3", "c2"}},
                        {{{"a1"}, {"c1"}}, IDs{"c1", "c3"}},
                        {{{"gone"}, {}}, IDs{}},
                        {{{}, {"gone"}}, IDs{}},
                        {{{"c2"}, {"a1"}}, IDs{}}};
  for (const auto& [selection, resolved] : cases) {
    EXPECT_EQ(selection.resolve(choices(accounts)), resolved);
    for (const auto& choice : choices(accounts))
      EXPECT_EQ(selection.includes(choice),
                !resolved ||
                    std::find(resolved->begin(), resolved->end(), choice.id) != resolved->end())
          << choice.id;
  }
  EXPECT_EQ((CalendarSelection{{"gone"}, {}}.resolve({})), IDs{});
}

TEST(CalendarSelection, SettingAddsOnceAndRemoves) {
  const CalendarSelection none;
  const auto one = none.settingAccount("a", true).settingAccount("a", true);
  EXPECT_EQ(one, (CalendarSelection{{"a"}, {}}));
  const auto two = one.settingCalendar("c", true).settingCalendar("d", true);
  EXPECT_EQ(two, (CalendarSelection{{"a"}, {"c", "d"}}));
  EXPECT_EQ(two.settingCalendar("c", false).settingAccount("nobody", false),
            (CalendarSelection{{"a"}, {"d"}}));
  EXPECT_EQ(two.settingAccount("a", false).accountIDs, std::vector<std::string>{});
  EXPECT_EQ(none, CalendarSelection{});
}

} // namespace
} // namespace tavrin
