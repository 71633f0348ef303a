#include "TavrinPlatform/Linux/Modules/CalendarInstances.h"

#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

const Calendar berlin("Europe/Berlin", "en_GB");
const DateInterval range{berlin.date({2030, 5, 6}), berlin.date({2030, 5, 13})};

ICalTimezone* zoneByName(const gchar* id, gpointer, GCancellable*, GError**) {
  return i_cal_timezone_get_builtin_timezone(id);
}

/// What an object of these lines comes to, such as "Lunch 05-07 12:00–05-07 13:00".
std::vector<std::string> shown(const std::string& lines) {
  const std::string text = "BEGIN:VEVENT\r\nUID:1\r\n" + lines + "\r\nEND:VEVENT\r\n";
  GOwned<ICalComponent> component(i_cal_component_new_from_string(text.c_str()));
  GSList list{component.get(), nullptr};
  std::vector<std::string> events;
  for (const auto& event :
       instancesOf(&list, range, std::nullopt,
                   {zoneByName, nullptr, i_cal_timezone_get_utc_timezone(), {}}))
    events.push_back(event.title + (event.isAllDay ? "* " : " ") +
                     berlin.text(event.start, "MM-dd HH:mm") + "–" +
                     berlin.text(event.end, "MM-dd HH:mm"));
  return events;
}

TEST(CalendarObjects, WhatAnObjectLacksIsMadeUpOrItIsLeftOut) {
  using Shown = std::vector<std::string>;
  const std::tuple<const char*, const char*, Shown> cases[] = {
      {"neither start nor end", "SUMMARY:A", {}},
      {"no start", "SUMMARY:A\r\nDTEND:20300507T100000Z", {"A 05-07 12:00–05-07 12:00"}},
      {"no end", "SUMMARY:A\r\nDTSTART:20300507T100000Z", {"A 05-07 12:00–05-07 12:00"}},
      {"no end of a day",
       "SUMMARY:A\r\nDTSTART;VALUE=DATE:20300507",
       {"A* 05-07 00:00–05-08 00:00"}},
      {"an end before the start",
       "SUMMARY:A\r\nDTSTART:20300507T100000Z\r\nDTEND:20300506T090000Z",
       {"A 05-07 12:00–05-07 12:00"}},
      {"a day that ends before it starts",
       "SUMMARY:A\r\nDTSTART;VALUE=DATE:20300507\r\nDTEND;VALUE=DATE:20300501",
       {"A* 05-07 00:00–05-08 00:00"}},
      {"a duration below nothing",
       "SUMMARY:A\r\nDTSTART:20300507T100000Z\r\nDURATION:-PT1H",
       {"A 05-07 12:00–05-07 12:00"}},
      {"a duration",
       "SUMMARY:A\r\nDTSTART:20300507T100000Z\r\nDURATION:PT90M",
       {"A 05-07 12:00–05-07 13:30"}},
      {"no title",
       "DTSTART:20300507T100000Z\r\nDTEND:20300507T110000Z",
       {" 05-07 12:00–05-07 13:00"}},
      {"an empty title",
       "SUMMARY:\r\nDTSTART:20300507T100000Z\r\nDTEND:20300507T110000Z",
       {" 05-07 12:00–05-07 13:00"}},
      {"control characters",
       "SUMMARY:A\x01\x7f"
       "B\r\nDTSTART:20300507T100000Z",
       {"A  B 05-07 12:00–05-07 12:00"}},
      {"a control character of two bytes",
       "SUMMARY:A\xC2\x85 B\r\nDTSTART:20300507T100000Z",
       {"A  B 05-07 12:00–05-07 12:00"}},
      {"an unknown zone",
       "SUMMARY:A\r\nDTSTART;TZID=Mars/Base:20300507T100000\r\n"
       "DTEND;TZID=Mars/Base:20300507T110000",
       {"A 05-07 12:00–05-07 13:00"}},
      {"no such date", "SUMMARY:A\r\nDTSTART:20301399T996699Z", {}},
      {"no date at all", "SUMMARY:A\r\nDTSTART:soon\r\nDTEND:later", {}},
      {"a series without an end",
       "SUMMARY:A\r\nDTSTART:20300510T100000Z\r\nRRULE:FREQ=DAILY",
       {"A 05-10 12:00–05-10 12:00", "A 05-11 12:00–05-11 12:00", "A 05-12 12:00–05-12 12:00"}},
      {"a rule that is none",
       "SUMMARY:A\r\nDTSTART:20300507T100000Z\r\nRRULE:FREQ=NEVER;COUNT=-1",
       {"A 05-07 12:00–05-07 12:00"}}};
  for (const auto& [name, lines, events] : cases)
    EXPECT_EQ(shown(lines), events) << name;
}

TEST(CalendarObjects, TextsAreNoLongerThanAnybodyReads) {
  const auto events =
      shown("SUMMARY:" + std::string(100'000, 'x') + "\r\nDTSTART:20300507T100000Z");
  ASSERT_EQ(events.size(), 1u);
  EXPECT_LT(events.front().size(), 600u);
}

TEST(CalendarObjects, ASeriesWhoseInstancesLastForYearsIsLeftOut) {
  EXPECT_TRUE(shown("DTSTART;TZID=Europe/Berlin:10130109T090000\r\n"
                    "DTEND;TZID=Europe/Berlin:20400318T100000\r\nRRULE:FREQ=WEEKLY")
                  .empty());
}

std::optional<Reminder> reminder(const std::string& lines) {
  const std::string text = "BEGIN:VTODO\r\n" + lines + "\r\nEND:VTODO\r\n";
  const GOwned<ICalComponent> component(i_cal_component_new_from_string(text.c_str()));
  return reminderFrom(component.get(), "list");
}

TEST(CalendarObjects, RemindersTakeWhatIsThere) {
  EXPECT_EQ(reminder("SUMMARY:A"), std::nullopt) << "it could not be completed";
  Reminder bare;
  bare.id = "1";
  bare.listID = "list";
  EXPECT_EQ(reminder("UID:1"), bare);
  EXPECT_EQ(reminder("UID:1\r\nDUE:whenever\r\nPRIORITY:77"), bare);
  const auto done = reminder("UID:1\r\nSTATUS:COMPLETED\r\nDUE;VALUE=DATE:20300507\r\nPRIORITY:9");
  ASSERT_TRUE(done);
  EXPECT_TRUE(done->isCompleted);
  EXPECT_EQ(done->completedAt, std::nullopt);
  EXPECT_EQ(done->due, range.start + 86'400);
  EXPECT_EQ(done->priority, 9);
}

} // namespace
} // namespace tavrin::test
