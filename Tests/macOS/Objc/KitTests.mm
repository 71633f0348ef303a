#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/Desktop/MacCalendarStore.h"
#include "TavrinPlatform/macOS/Desktop/MacNearbyDevices.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"
#include "TavrinPlatform/macOS/Desktop/MacSoundPlayer.h"
#include "TavrinPlatform/macOS/Desktop/MacWorkspace.h"
#include "TavrinPlatform/macOS/Slot/MacFileManager.h"

namespace tavrin::test {
namespace {

using Entity = CalendarStore::Entity;
constexpr double day = 86400;
Date at(double seconds) { return Date::fromUnixSeconds(seconds); }

class MacCalendarTest : public MacTest {
protected:
  std::vector<CalendarEvent> events(const std::optional<std::vector<std::string>>& ids = {}) {
    std::vector<CalendarEvent> read;
    const auto token = store_->events({at(0), at(2 * day)}, ids, [&](auto all) { read = all; });
    EXPECT_TRUE(read.empty()) << "not before the call returns";
    runLoop_.runBackground();
    return read;
  }

  std::unique_ptr<CalendarStore> store_ = makeMacCalendarStore(runLoop_);
};

TEST_F(MacCalendarTest, EveryAccessStateIsOneOfThree) {
  using enum CalendarAccess;
  for (const auto& [status, access] :
       {std::pair{EKAuthorizationStatusNotDetermined, notAsked},
        std::pair{EKAuthorizationStatusRestricted, denied},
        std::pair{EKAuthorizationStatusDenied, denied},
        std::pair{EKAuthorizationStatusWriteOnly, denied},
        std::pair{EKAuthorizationStatusFullAccess, granted}}) {
    eventKit.events = status;
    eventKit.reminders = EKAuthorizationStatusDenied;
    EXPECT_EQ(store_->access(Entity::events), access) << status;
    EXPECT_EQ(store_->access(Entity::reminders), denied);
  }
}

TEST_F(MacCalendarTest, AccessIsAnsweredOnTheMainThreadAndNotToWhoHasGone) {
  std::vector<CalendarAccess> answers;
  const auto ask = [&](Entity entity) {
    return store_->requestAccess(entity, [&](CalendarAccess access) { answers.push_back(access); });
  };
  auto token = ask(Entity::events);
  EXPECT_EQ(called(), Calls{"ask for events"});
  eventKit.asked(YES, nil);
  EXPECT_TRUE(answers.empty());
  runLoop_.runPosts();
  EXPECT_EQ(called(), Calls{}) << "what was read is forgotten where it is read";
  runLoop_.runBackground();
  token = ask(Entity::reminders);
  eventKit.asked(NO, [NSError errorWithDomain:@"EK" code:1 userInfo:nil]);
  runLoop_.runPosts();
  EXPECT_EQ(answers, (std::vector{CalendarAccess::granted, CalendarAccess::denied}));
  token = ask(Entity::events);
  token.reset();
  eventKit.asked(YES, nil);
  runLoop_.runPosts();
  runLoop_.runBackground();
  EXPECT_EQ(answers.size(), 2U);
  EXPECT_EQ(called(), (Calls{"reset", "ask for reminders", "ask for events", "reset"}));
}

TEST_F(MacCalendarTest, EventsComeSortedWithWholeDaysAndWithoutTheCancelled) {
  eventKit.calendars = {makeCalendar(@"work", @"Work", @"Office")};
  eventKit.all = {makeEvent(@"Lunch", 43200, 46800, false, EKEventStatusConfirmed),
                  makeEvent(@"Trip", 0, day - 1, true, EKEventStatusNone),
                  makeEvent(@"Fair", 0, 2 * day, true, EKEventStatusNone),
                  makeEvent(@"Off", 10, 20, false, EKEventStatusCanceled)};
  const auto all = events();
  EXPECT_EQ(called().front(), "events for 2 days of all");
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0].title, "Trip");
  EXPECT_EQ(all[0].end, at(day)) << "the last second is the next midnight";
  EXPECT_EQ(all[1].end, at(2 * day));
  EXPECT_EQ(all[2].title, "Lunch");
  EXPECT_EQ(all[2].id, "series/43200") << "an occurrence of its own";
  EXPECT_EQ(events({{"work", "gone"}}).size(), 3U);
  EXPECT_EQ(called().front(), "events for 2 days of 1");
  EXPECT_TRUE(events({{"gone"}}).empty()) << "no calendar left is not every calendar";
}

TEST_F(MacCalendarTest, AnAnswerIsDroppedWithItsTokenAndALongRangeIsCut) {
  auto token = store_->events({at(0), at(day)}, {}, [](auto) { FAIL(); });
  token.reset();
  runLoop_.runBackground();
  token = store_->events({at(0), at(10'000 * day)}, {}, [](auto) {});
  runLoop_.runBackground();
  EXPECT_EQ(called(), Calls{"events for 1460 days of all"});
}

TEST_F(MacCalendarTest, AccountsComeByNameWithTheirColours) {
  eventKit.calendars = {makeCalendar(@"2", @"Work", @"Office"), makeCalendar(@"1", @"Fun", @"Home"),
                        makeCalendar(@"3", @"Board", @"Office")};
  CalendarStore::Accounts found;
  const auto token =
      store_->accounts(Entity::events, [&](CalendarStore::Accounts answer) { found = answer; });
  runLoop_.runBackground();
  EXPECT_EQ(called(), (Calls{"space", "colour", "space released", "colour released",
                             "space", "colour", "space released", "colour released",
                             "space", "colour", "space released", "colour released"}));
  ASSERT_EQ(found.accounts.size(), 2U);
  EXPECT_EQ(found.accounts[0].name, "Home");
  EXPECT_EQ(choices(found.accounts)[1].title, "Board");
  EXPECT_EQ(choices(found.accounts)[1].colorHex, "#FF8000");
  EXPECT_EQ(found.defaultID, "2");
}

TEST_F(MacCalendarTest, RemindersAreFetchedAndTheFetchIsCalledOff) {
  eventKit.calendars = {makeCalendar(@"list", @"List", @"Home")};
  EKReminder* reminder = [[EKReminder alloc] init];
  reminder.calendar = eventKit.calendars.front();
  reminder.dueDateComponents = [[NSDateComponents alloc] init];
  reminder.dueDateComponents.day = 3;
  reminder.dueDateComponents.hour = NSDateComponentUndefined;
  std::vector<Reminder> found;
  auto token = store_->reminders("list", [&](auto all) { found = all; });
  eventKit.fetched(@[ reminder ]);
  runLoop_.runPosts();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].due, at(2 * day));
  EXPECT_TRUE(found[0].isAllDay);
  EXPECT_EQ(found[0].listID, "list");
  token = store_->reminders("list", [&](auto all) { found = all; });
  called();
  token.reset();
  EXPECT_EQ(called(), Calls{"cancel request"});
  bool isAnswered = false;
  token = store_->reminders("gone", [&](auto all) { isAnswered = all.empty(); });
  runLoop_.runPosts();
  EXPECT_TRUE(isAnswered);
}

TEST_F(MacCalendarTest, AReminderIsDoneAtOnceAndChangesAreTold) {
  eventKit.reminder = [[EKReminder alloc] init];
  std::vector<bool> answers;
  const auto complete = [&] {
    const auto token =
        store_->setCompleted({.id = "item"}, true, [&](bool isDone) { answers.push_back(isDone); });
    runLoop_.runBackground();
  };
  complete();
  eventKit.canSave = false;
  complete();
  eventKit.reminder = nil;
  complete();
  EXPECT_EQ(answers, (std::vector{true, false, false}));
  EXPECT_EQ(called(), (Calls{"save done commit", "save done commit"}));
  auto token = store_->observeChanges([] { note("changed"); });
  postNotice(NSNotificationCenter.defaultCenter, EKEventStoreChangedNotification);
  token.reset();
  postNotice(NSNotificationCenter.defaultCenter, EKEventStoreChangedNotification);
  EXPECT_EQ(called(), Calls{"changed"});
}

using MacNoticesTest = MacTest;

TEST_F(MacNoticesTest, DistributedNoticesAreImmediateBothWaysAndCarryOnlyAText) {
  const auto center = makeMacDistributedNotificationCenter();
  std::vector<std::optional<std::string>> heard;
  TokenPtr token;
  token = center->observe("changed", [&](const auto& object) {
    heard.push_back(object);
    if (heard.size() == 2)
      token.reset(); // from inside of itself
  });
  center->post("other", "x");
  center->post("changed");
  center->post("changed", "id");
  center->post("changed");
  EXPECT_EQ(heard, (std::vector<std::optional<std::string>>{std::nullopt, "id"}));
  EXPECT_EQ(called(), (Calls{"observe changed behaviour 4", "post other at once",
                             "post changed at once", "post changed at once",
                             "post changed at once"}));
}

TEST_F(MacNoticesTest, UserNoticesAreAskedForShownAndWithdrawn) {
  (void)UNUserNotificationCenter.currentNotificationCenter;
  (void)UNNotificationSound.defaultSound;
  tavrin_snapshot();
  @autoreleasepool {
    const auto center = makeMacUserNotificationCenter();
    std::vector<bool> answers;
    called();
    center->requestAuthorization([&](bool isGranted) { answers.push_back(isGranted); });
    EXPECT_EQ(called(), Calls{"ask for 6"});
    notifications.asked(YES, nil);
    notifications.asked(NO, nil);
    EXPECT_EQ(answers, (std::vector{true, false}));
    center->removePending("slot.finished");
    center->add({.identifier = "slot.finished", .title = "Tea", .body = "Time is up", .delay = 90});
    center->add({.identifier = "slot.finished", .title = "Now", .body = "", .delay = 0});
    EXPECT_EQ(called(), (Calls{"remove slot.finished", "add slot.finished: Tea in 90 with sound",
                               "add slot.finished: Now in 1 with sound"}));
    __block UNNotificationPresentationOptions shown = 0;
    [notifications.center.delegate userNotificationCenter:notifications.center
                                  willPresentNotification:[[UNNotification alloc] init]
                                    withCompletionHandler:^(UNNotificationPresentationOptions how) {
                                      shown = how;
                                    }];
    EXPECT_EQ(shown, 16U | 8U | 2U) << "else nothing shows while the panel is open";
    [notifications.center.delegate userNotificationCenter:notifications.center
                           didReceiveNotificationResponse:[[UNNotificationResponse alloc] init]
                                    withCompletionHandler:^{
                                      note("done");
                                    }];
    EXPECT_EQ(called(), Calls{"done"});
  }
  EXPECT_TRUE(notifications.center.delegate == nil) << "the delegate goes with the adapter";
}

TEST_F(MacNoticesTest, OutsideABundleTheCenterIsNeverAskedFor) {
  foundation.bundlePath = "/usr/local/bin";
  const auto center = makeMacUserNotificationCenter();
  bool isGranted = true;
  center->requestAuthorization([&](bool answer) { isGranted = answer; });
  center->add({.identifier = "a", .title = "b", .body = "c", .delay = 5});
  center->removePending("a");
  EXPECT_FALSE(isGranted);
  EXPECT_EQ(called(), Calls{});
}

TEST_F(MacNoticesTest, ASoundThatPlaysBeginsAnew) {
  (void)[NSSound soundNamed:@"Glass"];
  tavrin_snapshot();
  const auto player = makeMacSoundPlayer();
  player->play("Glass");
  player->play("Tink");
  EXPECT_EQ(called(), (Calls{"play Glass", "stop", "play Tink"}));
}

using MacWorkspaceTest = MacTest;

TEST_F(MacWorkspaceTest, TellsItsNoticesFromTheCentersThatPostThem) {
  const auto files = makeMacFileManager({});
  const auto workspace = makeMacWorkspace(*files);
  EXPECT_EQ(workspace->frontmostApplication(), std::nullopt);
  frontmost = 33;
  EXPECT_EQ(workspace->frontmostApplication(),
            (RunningApplication{33, "com.example.front", "Front"}));
  std::vector<TokenPtr> tokens;
  tokens.push_back(workspace->observeWake([] { note("wake"); }));
  tokens.push_back(workspace->observeDayChange([] { note("day"); }));
  tokens.push_back(workspace->observeClockChange([] { note("clock"); }));
  tokens.push_back(workspace->observeLowPowerMode([] { note("power"); }));
  tokens.push_back(workspace->observeLowPowerMode([] { note("power too"); }));
  tokens.push_back(workspace->observeAppearance([] { note("appearance"); }));
  EXPECT_EQ(called(), Calls{"observe effectiveAppearance"});
  NSNotificationCenter* own = NSWorkspace.sharedWorkspace.notificationCenter;
  NSNotificationCenter* standard = NSNotificationCenter.defaultCenter;
  postNotice(standard, NSWorkspaceDidWakeNotification);
  EXPECT_EQ(called(), Calls{}) << "the system posts it elsewhere";
  postNotice(own, NSWorkspaceDidWakeNotification);
  postNotice(standard, NSCalendarDayChangedNotification);
  postNotice(standard, NSSystemClockDidChangeNotification);
  postNotice(standard, NSSystemTimeZoneDidChangeNotification);
  postNotice(standard, NSProcessInfoPowerStateDidChangeNotification);
  postNotice(own, NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification);
  EXPECT_EQ(called(), (Calls{"wake", "day", "clock", "zone anew", "clock", "power", "power too",
                             "appearance"}));
}

TEST_F(MacWorkspaceTest, AppearancePowerAndMotionAreReadEachTime) {
  const auto files = makeMacFileManager({});
  const auto workspace = makeMacWorkspace(*files);
  EXPECT_FALSE(workspace->prefersDarkAppearance() || workspace->isLowPowerMode() ||
               workspace->prefersReducedMotion());
  appKit.isDark = appKit.reducesMotion = foundation.isLowPower = true;
  EXPECT_TRUE(workspace->prefersDarkAppearance() && workspace->isLowPowerMode() &&
              workspace->prefersReducedMotion());
  const auto light = makeMacFileManager({{"TAVRIN_APPEARANCE", "light"}});
  EXPECT_FALSE(makeMacWorkspace(*light)->prefersDarkAppearance());
  workspace->open("/Users/ada/a b");
  workspace->open("https://example.org/x");
  EXPECT_TRUE(workspace->openActivityMonitor());
  EXPECT_EQ(called(), (Calls{"open file:///Users/ada/a b", "open https://example.org/x",
                             "open file://com.apple.ActivityMonitor"}));
}

using MacSharingTest = MacTest;

TEST_F(MacSharingTest, AirDropTellsTheEndOfEachSendingOnce) {
  const auto devices = makeMacNearbyDevices(runLoop_);
  ASSERT_EQ(devices->devices().size(), 1U);
  const auto& device = devices->devices().front();
  EXPECT_EQ(device.way, "AirDrop");
  Calls ends;
  const auto send = [&] {
    return devices->send(device, {"/a", "/b"}, {},
                         [&](const SendingResult& result) { ends.push_back(result.trouble); });
  };
  auto token = send();
  EXPECT_EQ(called(), Calls{"share 2"});
  [appKit.sharing.delegate sharingService:appKit.sharing didShareItems:[NSArray arrayWithObjects:nil count:0]];
  EXPECT_TRUE(ends.empty());
  runLoop_.runPosts();
  token = send();
  [appKit.sharing.delegate sharingService:appKit.sharing
                      didFailToShareItems:[NSArray arrayWithObjects:nil count:0]
                                    error:[NSError errorWithDomain:@"NSCocoaErrorDomain"
                                                              code:3072
                                                          userInfo:nil]];
  runLoop_.runPosts();
  appKit.canShare = false;
  token = send();
  runLoop_.runPosts();
  EXPECT_EQ(ends, (Calls{"", "Failed to send the files because it was cancelled",
                         "Failed to send the files because AirDrop is not available"}));
  appKit.canShare = true;
  token = send();
  id<NSSharingServiceDelegate> kept = appKit.sharing.delegate;
  token.reset();
  [kept sharingService:appKit.sharing didShareItems:[NSArray arrayWithObjects:nil count:0]];
  runLoop_.runPosts();
  EXPECT_EQ(ends.size(), 3U);
}

} // namespace
} // namespace tavrin::test
