#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Slot/SlotFixture.h"

namespace tavrin::test {
namespace {

using testing::Contains;
using testing::HasSubstr;

class CalendarWidgetTest : public SlotTest {
protected:
  void SetUp() override {
    SlotTest::SetUp();
    platform_.fakeClock.set(noon_);
    store().calendars.accounts = {{"home", "Home", {{"c1", "Private", "home", "Home", {}}}}};
    store().lists.accounts = {{"home", "Home", {{"l1", "Tasks", "home", "Home", {}}}}};
    store().lists.defaultID = "l1";
  }
  CalendarEvent event(const char* title, double start, double end, bool isAllDay = false) const {
    return {title, title, noon_ + start * 60, noon_ + end * 60, isAllDay, {}, {}};
  }
  void begin(const DockWidget::Kind& kind) {
    start(kind);
    platform_.loop.runPosts();
  }
  FakeCalendarStore& store() { return platform_.fakeCalendars; }
  const QString& value() {
    value_ = QString::fromStdString(platform_.tile.value);
    return value_;
  }

  const Date noon_ = Calendar().date({2026, 3, 9, 12, 0, 0, 1});
  QString value_;
};

TEST_F(CalendarWidgetTest, FollowsTheClockFromOneEventToTheNext) {
  store().allEvents = {event("Standup", -30, 30), event("Review", 90, 150),
                       event("Holiday", -720, 720, true)};
  begin(CalendarSettings{});
  EXPECT_EQ(value(), "Standup, now");
  EXPECT_EQ(store().asked.back(), std::nullopt) << "every calendar";
  platform_.loop.advance(30 * 60 + 1);
  EXPECT_EQ(value(), "Review, in 60 min");
  platform_.loop.advance(48 * 60);
  EXPECT_EQ(value(), "Review, in 12 min");
  platform_.loop.advance(13 * 60);
  EXPECT_EQ(value(), "Review, now");
  platform_.loop.advance(3600);
  EXPECT_EQ(value(), "Holiday, All day") << "after what has a time";
  const int firings = platform_.loop.firings;
  platform_.loop.advance(6 * 3600);
  EXPECT_EQ(platform_.loop.firings, firings) << "nothing changes, nothing wakes";
}

TEST_F(CalendarWidgetTest, States) {
  store().current = CalendarAccess::notAsked;
  store().onRequest = CalendarAccess::denied;
  start(CalendarSettings{});
  EXPECT_EQ(value(), "See your next events here");
  platform_.loop.runPosts();
  click();
  EXPECT_THAT(words(), Contains("Tavrin has no access to your calendars"));
  EXPECT_THAT(words(), Contains("Allow it in System Settings › Privacy & Security › Calendars."));
  store().onRequest = CalendarAccess::granted;
  button("Try Again")->click();
  platform_.loop.runPosts();
  EXPECT_THAT(words(), Contains("Nothing coming up"));
  CalendarSettings picky;
  picky.calendars.accountIDs = {"removed"};
  write(picky);
  const auto fetches = store().asked.size();
  announce();
  platform_.loop.runPosts();
  EXPECT_THAT(words(), Contains("The calendars this widget reads are gone"));
  EXPECT_THAT(words(), Contains("Pick the accounts again in the widget's settings."));
  EXPECT_EQ(store().asked.size(), fetches) << "nothing is read";
}

TEST_F(CalendarWidgetTest, AChangeInTheStoreIsReadOnceForManyNotices) {
  begin(CalendarSettings{});
  EXPECT_EQ(value(), "Nothing coming up");
  store().allEvents = {event("New", 10, 20)};
  const auto before = store().asked.size();
  for (int i = 0; i < 50; ++i)
    store().changes.call();
  platform_.loop.advance(1);
  EXPECT_EQ(value(), "New, in 10 min");
  EXPECT_EQ(store().asked.size(), before + 1);
}

TEST_F(CalendarWidgetTest, AllDayEventsGoAndDaysAheadBoundTheRange) {
  store().allEvents = {event("Holiday", -720, 720, true)};
  CalendarSettings settings;
  settings.showsAllDay = false;
  settings.daysAhead = 2;
  begin(settings);
  EXPECT_EQ(value(), "Nothing coming up");
  EXPECT_EQ(store().ranges.back().start, noon_);
  EXPECT_EQ(store().ranges.back().end, Calendar().date({2026, 3, 11, 0, 0, 0, 1}));
}

TEST_F(CalendarWidgetTest, RemindersAreDoneFromThePanel) {
  const Date today = Calendar().startOfDay(noon_);
  store().allReminders = {{"a", "l1", "Later", today + 2 * 86'400, true, false, {}, 0},
                          {"b", "l1", " ", today - 86'400, true, false, {}, 0},
                          {"c", "l1", "Far", today + 40 * 86'400, true, false, {}, 0},
                          {"d", "l1", "Undated", {}, false, false, {}, 0},
                          {"e", "l1", "Old", today - 1, true, true, today - 1000, 0}};
  ReminderSettings settings;
  settings.showsCompleted = true;
  begin(settings);
  EXPECT_EQ(value(), "3 open, next: Untitled reminder");
  EXPECT_EQ(store().askedLists.back(), "l1");
  click();
  auto* list = all<PanelList>().front();
  ASSERT_EQ(list->count(), 3);
  EXPECT_EQ(list->row(0).trailing, "Late");
  EXPECT_EQ(list->row(2).title, "Undated");
  list->onOpen(0);
  EXPECT_TRUE(list->row(0).isDone);
  EXPECT_EQ(store().completions, (std::vector<std::pair<std::string, bool>>{{"b", true}}));
  // The store refused: what it has is shown.
  platform_.loop.runPosts();
  EXPECT_FALSE(list->row(0).isDone);
}

TEST_F(CalendarWidgetTest, RemindersWithoutAccessSaySo) {
  store().current = CalendarAccess::notAsked;
  store().onRequest = CalendarAccess::denied;
  begin(ReminderSettings{});
  click();
  EXPECT_THAT(words(), Contains("Tavrin has no access to your reminders"));
  EXPECT_THAT(words(), Contains("Allow it in System Settings › Privacy & Security › Reminders."));
}

} // namespace
} // namespace tavrin::test
