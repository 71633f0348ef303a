#include "TavrinWidgetsUI/Calendar/CalendarViews.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

const Calendar german("Europe/Berlin", "de_DE");
const Calendar american("Europe/Berlin", "en_US");
const Date noon = german.date({2026, 3, 9, 12, 0, 0, 1});
constexpr double hour = 3600;

CalendarEvent event(double start, double end, bool isAllDay = false) {
  return {"e", "e", noon + start, noon + end, isAllDay, {}, {}};
}
/// The times of a locale may have a narrow space before the half of the day.
std::string plain(QString text) {
  return text.replace(QChar(0x202F), u' ').toStdString();
}

TEST(CalendarWords, WhenAnEventIs) {
  struct Case {
    CalendarEvent event;
    const Calendar& calendar;
    const char* when;
    const char* brief;
  };
  const Case cases[] = {{event(-hour, hour), german, "now", "now"},
                        {event(0, hour), german, "now", "now"},
                        {event(30, hour), german, "in 1 min", "1 min"},
                        {event(hour, 2 * hour), german, "in 60 min", "60 min"},
                        {event(hour + 60, 2 * hour), german, "13:01", "13:01"},
                        {event(3 * hour, 4 * hour), american, "3:00 PM", "3:00"},
                        {event(26 * hour, 27 * hour), german, "Di 14:00", "Di"},
                        {event(-12 * hour, 12 * hour, true), german, "All day", "All day"},
                        {event(-36 * hour, 36 * hour, true), german, "All day", "All day"},
                        {event(36 * hour, 60 * hour, true), german, "Mi", "Mi"}};
  for (const auto& [entry, calendar, when, brief] : cases) {
    EXPECT_EQ(plain(eventWhen(entry, noon, calendar)), when);
    EXPECT_EQ(plain(eventWhenBrief(entry, noon, calendar)), brief) << when;
  }
}

TEST(CalendarWords, AnEventWithoutATitleHasOne) {
  for (const char* title : {"", " ", "\n\t"}) {
    auto entry = event(0, hour);
    entry.title = title;
    EXPECT_EQ(eventTitle(entry), "Untitled event");
  }
}

TEST(CalendarWords, WhatStandsBelowAnEvent) {
  auto meeting = event(2 * hour, 3 * hour);
  meeting.location = " Room\n4 ";
  const std::pair<CalendarEvent, const char*> cases[] = {
      {meeting, "Today, 14:00–15:00 · Room 4"},
      {event(11.5 * hour, 12.5 * hour), "Today, 23:30–00:30"},
      {event(26 * hour, 27 * hour), "Tomorrow, 14:00–15:00"},
      {event(50 * hour, 51 * hour), "Mittwoch, 14:00–15:00"},
      {event(-12 * hour, 12 * hour, true), "Today, all day"},
      {event(-60 * hour, 36 * hour, true), "Today, all day"}};
  for (const auto& [entry, detail] : cases)
    EXPECT_EQ(plain(eventDetail(entry, noon, german)), detail);
}

TEST(CalendarWords, WhenAReminderIsDue) {
  const auto reminder = [](std::optional<double> due, bool isAllDay, bool isCompleted = false) {
    return Reminder{"r",      "l",         "r", due ? std::optional(noon + *due) : std::nullopt,
                    isAllDay, isCompleted, {},  0};
  };
  const std::pair<Reminder, const char*> cases[] = {{reminder({}, false), ""},
                                                    {reminder(-60, false), "Late"},
                                                    {reminder(-36 * hour, true), "Late"},
                                                    {reminder(-12 * hour, true), "Today"},
                                                    {reminder(hour, false), "13:00"},
                                                    {reminder(12 * hour, true), "Tomorrow"},
                                                    {reminder(60 * hour, true), "Donnerstag"},
                                                    {reminder(-60, false, true), "Done"}};
  for (const auto& [entry, when] : cases)
    EXPECT_EQ(plain(reminderWhen(entry, noon, german)), when);
}

} // namespace
} // namespace tavrin::test
