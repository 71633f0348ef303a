#include "TavrinPlatform/Linux/Modules/EDSCalendarStore.h"

#include "Tests/Linux/Services/LoopTest.h"
#include "Tests/Platform/CalendarStoreContract.h"

#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Entity = CalendarStore::Entity;

const Calendar berlin("Europe/Berlin", "en_GB");

/// Another program at the same calendars.
class OtherProgram {
public:
  OtherProgram() : registry_(e_source_registry_new_sync(nullptr, nullptr)) {}

  ECalClient* calendar() { return open("system-calendar", E_CAL_CLIENT_SOURCE_TYPE_EVENTS); }
  ECalClient* tasks() { return open("system-task-list", E_CAL_CLIENT_SOURCE_TYPE_TASKS); }

  static std::string add(ECalClient* client, const std::string& text) {
    ICalComponent* component = i_cal_component_new_from_string(text.c_str());
    GError* error = nullptr;
    gchar* uid = nullptr;
    e_cal_client_create_object_sync(client, component, E_CAL_OPERATION_FLAG_NONE, &uid, nullptr,
                                    &error);
    EXPECT_EQ(error, nullptr) << (error != nullptr ? error->message : "");
    const std::string made = uid != nullptr ? uid : "";
    g_free(uid);
    g_object_unref(component);
    return made;
  }
  static std::string event(const std::string& lines) {
    return "BEGIN:VEVENT\r\n" + lines + "\r\nEND:VEVENT\r\n";
  }
  /// One instance of a series.
  static void change(ECalClient* client, const std::string& text) {
    const GOwned<ICalComponent> component(i_cal_component_new_from_string(text.c_str()));
    GError* error = nullptr;
    e_cal_client_modify_object_sync(client, component.get(), E_CAL_OBJ_MOD_THIS,
                                    E_CAL_OPERATION_FLAG_NONE, nullptr, &error);
    EXPECT_EQ(error, nullptr) << (error != nullptr ? error->message : "");
  }
  static void addAll(ECalClient* client, int count, const std::function<std::string(int)>& lines) {
    GSList* components = nullptr;
    for (int i = 0; i < count; ++i)
      components =
          g_slist_prepend(components, i_cal_component_new_from_string(event(lines(i)).c_str()));
    GSList* uids = nullptr;
    GError* error = nullptr;
    e_cal_client_create_objects_sync(client, components, E_CAL_OPERATION_FLAG_NONE, &uids, nullptr,
                                     &error);
    EXPECT_EQ(error, nullptr) << (error != nullptr ? error->message : "");
    g_slist_free_full(uids, g_free);
    g_slist_free_full(components, g_object_unref);
  }

private:
  ECalClient* open(const char* uid, ECalClientSourceType type) {
    const GOwned<ESource> source(e_source_registry_ref_source(registry_.get(), uid));
    return E_CAL_CLIENT(
        e_cal_client_connect_sync(source.get(), type, static_cast<guint32>(-1), nullptr, nullptr));
  }
  GOwned<ESourceRegistry> registry_;
};

double mainThreadMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

class EDSCalendarStoreTest : public LoopTest {
protected:
  void SetUp() override {
    const auto access = answerOf<CalendarAccess>(
        [&](auto answer) { return store_.requestAccess(Entity::events, answer); });
    ASSERT_EQ(access, CalendarAccess::granted);
  }
  std::vector<CalendarEvent> events(int month, int day, int days = 1) {
    const Date start = berlin.date({2030, month, day, 0, 0, 0, 1});
    return answerOf<std::vector<CalendarEvent>>([&](auto answer) {
             return store_.events({start, berlin.addingDays(days, start)}, std::nullopt, answer);
           })
        .value_or(std::vector<CalendarEvent>{});
  }
  std::vector<std::string> shown(int month, int day, int days = 1) {
    std::vector<std::string> lines;
    for (const auto& event : events(month, day, days))
      lines.push_back(event.title + (event.isAllDay ? " all day " : " ") +
                      berlin.text(event.start, "MM-dd HH:mm") + "–" +
                      berlin.text(event.end, "MM-dd HH:mm"));
    return lines;
  }

  EDSCalendarStore store_{loop_};
  OtherProgram other_;
};

TEST_F(EDSCalendarStoreTest, ListsAccountsWithCalendarsAndTaskLists) {
  for (const auto& [entity, uid] : {std::pair(Entity::events, "system-calendar"),
                                    std::pair(Entity::reminders, "system-task-list")}) {
    const auto found = answerOf<CalendarStore::Accounts>(
        [&, asked = entity](auto answer) { return store_.accounts(asked, answer); });
    ASSERT_TRUE(found);
    EXPECT_EQ(found->defaultID, uid);
    const auto all = choices(found->accounts);
    const auto mine = std::find_if(all.begin(), all.end(),
                                   [&, id = uid](const auto& choice) { return choice.id == id; });
    ASSERT_NE(mine, all.end());
    EXPECT_FALSE(mine->title.empty());
    EXPECT_FALSE(mine->accountName.empty());
    EXPECT_EQ(mine->colorHex.value_or("").size(), 7u);
  }
}

TEST_F(EDSCalendarStoreTest, ReadsEveryShapeOfEvent) {
  auto* calendar = other_.calendar();
  const auto add = [&](const std::string& lines) {
    OtherProgram::add(calendar, OtherProgram::event(lines));
  };
  add("UID:weekly\r\nSUMMARY:Weekly\r\nDTSTART;TZID=Europe/Berlin:20300318T090000\r\n"
      "DTEND;TZID=Europe/Berlin:20300318T100000\r\nRRULE:FREQ=WEEKLY;COUNT=4");
  add("UID:holiday\r\nSUMMARY:Holiday\r\nDTSTART;VALUE=DATE:20300402\r\n"
      "DTEND;VALUE=DATE:20300404");
  add("UID:tokyo\r\nSUMMARY:Tokyo\r\nDTSTART;TZID=Asia/Tokyo:20300410T090000\r\n"
      "DTEND;TZID=Asia/Tokyo:20300410T093000");
  add("UID:late\r\nSUMMARY:Late\r\nDTSTART;TZID=Europe/Berlin:20300415T233000\r\n"
      "DTEND;TZID=Europe/Berlin:20300416T003000");
  add("UID:clocks\r\nSUMMARY:Clocks\r\nDTSTART;TZID=Europe/Berlin:20300331T013000\r\n"
      "DTEND;TZID=Europe/Berlin:20300331T033000");
  add("UID:zone\r\nSUMMARY:Zone\r\nDTSTART;TZID=Nowhere/Atall:20300422T100000\r\n"
      "DTEND;TZID=Nowhere/Atall:20300422T110000");
  add("UID:off\r\nSUMMARY:Off\r\nSTATUS:CANCELLED\r\nDTSTART:20300423T100000Z");
  // Clocks go forward on 31 March: nine o'clock stays nine o'clock.
  EXPECT_THAT(shown(3, 18, 28),
              ElementsAre("Weekly 03-18 09:00–03-18 10:00", "Weekly 03-25 09:00–03-25 10:00",
                          "Clocks 03-31 01:30–03-31 03:30", "Weekly 04-01 09:00–04-01 10:00",
                          "Holiday all day 04-02 00:00–04-04 00:00",
                          "Weekly 04-08 09:00–04-08 10:00", "Tokyo 04-10 02:00–04-10 02:30"));
  EXPECT_EQ(events(3, 31).front().end.since(events(3, 31).front().start), 3600);
  EXPECT_THAT(shown(4, 3), ElementsAre("Holiday all day 04-02 00:00–04-04 00:00"));
  EXPECT_THAT(shown(4, 4), IsEmpty());
  EXPECT_THAT(shown(4, 16), ElementsAre("Late 04-15 23:30–04-16 00:30"));
  EXPECT_THAT(shown(4, 22), ElementsAre("Zone 04-22 12:00–04-22 13:00"))
      << "a zone that nobody knows counts as UTC";
  EXPECT_THAT(shown(4, 23), IsEmpty());
}

TEST_F(EDSCalendarStoreTest, AnEventOverMidnightIsThereOnBothDays) {
  auto* calendar = other_.calendar();
  const auto add = [&](const std::string& summary, const std::string& zone) {
    OtherProgram::add(calendar, OtherProgram::event(
                                    "SUMMARY:" + summary + "\r\nDTSTART;TZID=" + zone +
                                    ":20300515T233000\r\nDTEND;TZID=" + zone + ":20300516T003000"));
  };
  add("Late", "Europe/Berlin");
  add("Honolulu", "Pacific/Honolulu");
  add("Auckland", "Pacific/Auckland");
  EXPECT_THAT(shown(5, 14), IsEmpty());
  EXPECT_THAT(shown(5, 15),
              ElementsAre("Auckland 05-15 13:30–05-15 14:30", "Late 05-15 23:30–05-16 00:30"));
  EXPECT_THAT(shown(5, 16),
              ElementsAre("Late 05-15 23:30–05-16 00:30", "Honolulu 05-16 11:30–05-16 12:30"));
  EXPECT_THAT(shown(5, 17), IsEmpty());
}

TEST_F(EDSCalendarStoreTest, MovedInstancesStandWhereTheyWereMoved) {
  auto* calendar = other_.calendar();
  const auto series = [&](const std::string& uid, const std::string& lines) {
    OtherProgram::add(calendar,
                      OtherProgram::event("UID:" + uid + "\r\nSUMMARY:" + uid + "\r\n" + lines));
  };
  const auto move = [&](const std::string& uid, const std::string& lines) {
    OtherProgram::change(
        calendar, OtherProgram::event("UID:" + uid + "\r\nSUMMARY:" + uid + " moved\r\n" + lines));
  };
  series("Stand-up", "DTSTART;TZID=Europe/Berlin:20300916T090000\r\n"
                     "DTEND;TZID=Europe/Berlin:20300916T091500\r\nRRULE:FREQ=DAILY;COUNT=5\r\n"
                     "EXDATE;TZID=Europe/Berlin:20300919T090000");
  series("Trash", "DTSTART;VALUE=DATE:20300917\r\nDTEND;VALUE=DATE:20300918\r\n"
                  "RRULE:FREQ=WEEKLY;COUNT=8");
  // New York's clocks change a week after Berlin's.
  series("Call", "DTSTART;TZID=America/New_York:20301023T100000\r\n"
                 "DTEND;TZID=America/New_York:20301023T110000\r\nRRULE:FREQ=WEEKLY;COUNT=3");
  EXPECT_THAT(shown(9, 16, 6),
              ElementsAre("Stand-up 09-16 09:00–09-16 09:15",
                          "Trash all day 09-17 00:00–09-18 00:00",
                          "Stand-up 09-17 09:00–09-17 09:15", "Stand-up 09-18 09:00–09-18 09:15",
                          "Stand-up 09-20 09:00–09-20 09:15"));
  // Within the day, off for months, over midnight, and to another day.
  move("Stand-up", "RECURRENCE-ID;TZID=Europe/Berlin:20300916T090000\r\n"
                   "DTSTART;TZID=Europe/Berlin:20300916T110000\r\n"
                   "DTEND;TZID=Europe/Berlin:20300916T113000");
  move("Stand-up", "RECURRENCE-ID;TZID=Europe/Berlin:20300917T090000\r\n"
                   "DTSTART;TZID=Europe/Berlin:20301217T090000\r\n"
                   "DTEND;TZID=Europe/Berlin:20301217T091500");
  move("Stand-up", "RECURRENCE-ID;TZID=Europe/Berlin:20300918T090000\r\n"
                   "DTSTART;TZID=Asia/Tokyo:20300919T060000\r\n"
                   "DTEND;TZID=Asia/Tokyo:20300919T080000");
  move("Stand-up", "RECURRENCE-ID;TZID=Europe/Berlin:20300920T090000\r\nSTATUS:CANCELLED\r\n"
                   "DTSTART;TZID=Europe/Berlin:20300920T090000");
  move("Trash", "RECURRENCE-ID;VALUE=DATE:20300917\r\nDTSTART;VALUE=DATE:20300916\r\n"
                "DTEND;VALUE=DATE:20300917");
  move("Call", "RECURRENCE-ID;TZID=America/New_York:20301030T100000\r\n"
               "DTSTART;TZID=America/New_York:20301030T113000\r\n"
               "DTEND;TZID=America/New_York:20301030T120000");
  EXPECT_THAT(shown(9, 16, 7), ElementsAre("Trash moved all day 09-16 00:00–09-17 00:00",
                                           "Stand-up moved 09-16 11:00–09-16 11:30",
                                           "Stand-up moved 09-18 23:00–09-19 01:00"));
  EXPECT_THAT(shown(9, 18), ElementsAre("Stand-up moved 09-18 23:00–09-19 01:00"));
  EXPECT_THAT(shown(9, 19), ElementsAre("Stand-up moved 09-18 23:00–09-19 01:00"));
  EXPECT_THAT(shown(12, 17), ElementsAre("Stand-up moved 12-17 09:00–12-17 09:15"));
  EXPECT_THAT(shown(10, 23), ElementsAre("Call 10-23 16:00–10-23 17:00"));
  EXPECT_THAT(shown(10, 30), ElementsAre("Call moved 10-30 16:30–10-30 17:00"));
  EXPECT_THAT(shown(11, 6), ElementsAre("Call 11-06 16:00–11-06 17:00"));
}

TEST_F(EDSCalendarStoreTest, AnEventThatEndsBeforeItStartsEndsAsItStarts) {
  OtherProgram::add(other_.calendar(),
                    OtherProgram::event("SUMMARY:\r\nDTSTART:20290420T100000Z\r\n"
                                        "DTEND:20290420T090000Z"));
  const Date start = berlin.date({2029, 4, 19, 0, 0, 0, 1});
  const auto found = answerOf<std::vector<CalendarEvent>>([&](auto answer) {
    return store_.events({start, berlin.addingDays(3, start)}, std::nullopt, answer);
  });
  ASSERT_EQ(found->size(), 1u);
  EXPECT_EQ(found->front().start, found->front().end);
  EXPECT_EQ(found->front().title, "");
}

TEST_F(EDSCalendarStoreTest, TellsOfAnotherProgramsChange) {
  int changes = 0;
  const auto token = store_.observeChanges([&] { ++changes; });
  events(5, 1);
  const auto before = changes;
  OtherProgram::add(other_.calendar(),
                    OtherProgram::event("SUMMARY:Lunch\r\nDTSTART:20300501T100000Z"));
  EXPECT_TRUE(waitFor([&] { return changes > before; }));
  EXPECT_EQ(events(5, 1).size(), 1u);
}

TEST_F(EDSCalendarStoreTest, RemindersAreReadCompletedAndOpenedAgain) {
  const auto uid = OtherProgram::add(
      other_.tasks(), "BEGIN:VTODO\r\nDUE;VALUE=DATE:20300108\r\nSUMMARY:Milk\r\nPRIORITY:1\r\n"
                      "END:VTODO\r\n");
  OtherProgram::add(other_.tasks(), "BEGIN:VTODO\r\nSUMMARY:\r\nEND:VTODO\r\n");
  const auto read = [&] {
    return *answerOf<std::vector<Reminder>>(
        [&](auto answer) { return store_.reminders("system-task-list", answer); });
  };
  const auto milk = [&] {
    const auto all = read();
    return *std::find_if(all.begin(), all.end(), [&](const auto& r) { return r.id == uid; });
  };
  EXPECT_EQ(read().size(), 2u);
  EXPECT_EQ(milk().title, "Milk");
  EXPECT_EQ(milk().due, berlin.date({2030, 1, 8, 0, 0, 0, 1}));
  EXPECT_TRUE(milk().isAllDay);
  EXPECT_EQ(milk().priority, 1);
  for (const bool isCompleted : {true, false}) {
    EXPECT_EQ(answerOf<bool>(
                  [&](auto answer) { return store_.setCompleted(milk(), isCompleted, answer); }),
              true);
    EXPECT_EQ(milk().isCompleted, isCompleted);
    EXPECT_EQ(milk().completedAt.has_value(), isCompleted);
  }
  Reminder gone = milk();
  gone.id = "nobody";
  EXPECT_EQ(answerOf<bool>([&](auto answer) { return store_.setCompleted(gone, true, answer); }),
            false);
}

TEST_F(EDSCalendarStoreTest, ALargeCalendarIsReadOffTheMainThread) {
  auto* calendar = other_.calendar();
  constexpr int eventCount = 10'000;
  OtherProgram::addAll(calendar, eventCount, [](int i) {
    return "SUMMARY:Event " + std::to_string(i) + "\r\nDTSTART:2031" +
           berlin.text(berlin.addingDays(i % 365, berlin.date({2031, 1, 1, 12, 0, 0, 1})), "MMdd") +
           "T" + std::to_string(10 + i % 10) + "0000Z";
  });
  OtherProgram::addAll(calendar, 500, [](int i) {
    return "SUMMARY:Series " + std::to_string(i) +
           "\r\nDTSTART:20310101T080000Z\r\nDTEND:20310101T083000Z\r\nRRULE:FREQ=WEEKLY;COUNT=52";
  });
  const Date start = berlin.date({2031, 6, 2, 0, 0, 0, 1});
  for (const char* name : {"first", "refresh"}) {
    QElapsedTimer timer;
    timer.start();
    const double before = mainThreadMilliseconds();
    std::optional<std::vector<CalendarEvent>> found;
    QEventLoop waiting;
    const auto token = store_.events({start, berlin.addingDays(7, start)}, std::nullopt,
                                     [&](std::vector<CalendarEvent> events) {
                                       UpNext::sort(events, start, berlin);
                                       found = UpNext::select(events, start, events.size());
                                       waiting.quit();
                                     });
    waiting.exec();
    ASSERT_TRUE(found);
    EXPECT_GT(found->size(), 600u);
    std::printf("%s: %lld ms for %zu events; processor time of the "
                "main thread %.2f ms\n",
                name, static_cast<long long>(timer.elapsed()), found->size(),
                mainThreadMilliseconds() - before);
  }
}

TEST_F(EDSCalendarStoreTest, NoAnswerComesOnceTheTokenIsGone) {
  bool isAnswered = false;
  store_.accounts(Entity::events, [&](const auto&) { isAnswered = true; }).reset();
  answerOf<CalendarStore::Accounts>(
      [&](auto answer) { return store_.accounts(Entity::events, answer); });
  EXPECT_FALSE(isAnswered);
}

struct EDSRig {
  CalendarStore& store() { return store_; }
  /// Asked of nobody there.
  void grant() {}
  void change() {
    OtherProgram::add(other_.calendar(), OtherProgram::event("SUMMARY:Change\r\n"
                                                             "DTSTART:20010101T100000Z\r\n"
                                                             "DTEND:20010101T110000Z"));
  }
  bool comesTrue(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    for (timer.start(); !condition() && timer.elapsed() < 30'000;)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return condition();
  }
  QtRunLoop loop_;
  EDSCalendarStore store_{loop_};
  OtherProgram other_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(EDS, CalendarStoreContract, EDSRig);

} // namespace
} // namespace tavrin::test
