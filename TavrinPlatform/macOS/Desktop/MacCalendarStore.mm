#include "TavrinPlatform/macOS/Desktop/MacCalendarStore.h"

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/POSIX/LivingToken.h"
#include "TavrinPlatform/macOS/Base/MacDate.h"
#include "TavrinPlatform/macOS/Base/MacObservation.h"
#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Desktop/CalendarValues.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <tuple>

namespace tavrin {
namespace {

/// Of a longer range the system answers the beginning alone.
constexpr double longestRange = 4 * 365 * 86'400.0;

EKEntityType typeOf(CalendarStore::Entity entity) {
  return entity == CalendarStore::Entity::events ? EKEntityTypeEvent : EKEntityTypeReminder;
}

CalendarAccess accessTo(CalendarStore::Entity entity) {
  switch ([EKEventStore authorizationStatusForEntityType:typeOf(entity)]) {
  case EKAuthorizationStatusNotDetermined:
    return CalendarAccess::notAsked;
  case EKAuthorizationStatusFullAccess:
    return CalendarAccess::granted;
  default: // restricted, denied, or write-only, which reads nothing
    return CalendarAccess::denied;
  }
}

/// Nil for all of them.
NSArray<EKCalendar*>* calendarsOf(EKEventStore* store,
                                  const std::optional<std::vector<std::string>>& ids) {
  if (!ids)
    return nil;
  NSMutableArray<EKCalendar*>* calendars = [NSMutableArray array];
  for (const auto& id : *ids)
    if (EKCalendar* calendar = [store calendarWithIdentifier:toNSString(id)])
      [calendars addObject:calendar];
  return calendars;
}

std::vector<CalendarEvent> readEvents(EKEventStore* store, DateInterval range,
                                      const std::optional<std::vector<std::string>>& ids) {
  NSArray<EKCalendar*>* calendars = calendarsOf(store, ids);
  // No calendars at all could be taken for all of them.
  if (calendars != nil && calendars.count == 0)
    return {};
  const Date end = std::min(range.end, range.start + longestRange);
  NSPredicate* predicate = [store predicateForEventsWithStartDate:toNSDate(range.start)
                                                          endDate:toNSDate(end)
                                                        calendars:calendars];
  std::vector<CalendarEvent> events;
  for (EKEvent* event in [store eventsMatchingPredicate:predicate])
    if (event.status != EKEventStatusCanceled)
      events.push_back(toEvent(event));
  std::ranges::sort(events, {}, [](const CalendarEvent& event) {
    return std::tie(event.start, event.end, event.title, event.id);
  });
  return events;
}

CalendarStore::Accounts readAccounts(EKEventStore* store, CalendarStore::Entity entity) {
  CalendarStore::Accounts answer;
  answer.accounts = toAccounts([store calendarsForEntityType:typeOf(entity)]);
  EKCalendar* standard = entity == CalendarStore::Entity::events
                             ? store.defaultCalendarForNewEvents
                             : store.defaultCalendarForNewReminders;
  if (standard != nil)
    answer.defaultID = toText(standard.calendarIdentifier);
  return answer;
}

bool complete(EKEventStore* store, const std::string& id, bool isCompleted) {
  EKCalendarItem* item = [store calendarItemWithIdentifier:toNSString(id)];
  if (![item isKindOfClass:EKReminder.class])
    return false;
  EKReminder* reminder = (EKReminder*)item;
  reminder.completed = isCompleted;
  return [store saveReminder:reminder commit:YES error:nil];
}

/// A fetch that the system can be told to drop.
class Fetch final : public Token {
public:
  explicit Fetch(EKEventStore* store) : store_(store) {}
  ~Fetch() override {
    if (request != nil)
      [store_ cancelFetchRequest:request];
  }
  std::weak_ptr<void> life() const { return alive_; }

  id request = nil;

private:
  EKEventStore* store_;
  Lifetime alive_;
};

class MacCalendarStore final : public CalendarStore {
public:
  explicit MacCalendarStore(RunLoop& runLoop)
      : runLoop_(runLoop), store_([[EKEventStore alloc] init]), queue_(runLoop.makeSerialQueue()),
        observation_(NSNotificationCenter.defaultCenter, EKEventStoreChangedNotification,
                     [this] { changes_.call(); }) {}

  CalendarAccess access(Entity entity) const override { return accessTo(entity); }

  TokenPtr requestAccess(Entity entity, std::function<void(CalendarAccess)> answer) override {
    auto token = std::make_unique<LivingToken>();
    EKEventStore* store = store_;
    const auto told = [this, &runLoop = runLoop_, alive = alive_.watch(), life = token->life(),
                       answer = std::move(answer)](bool isGranted) {
      runLoop.post([this, alive, isGranted] {
        // What was read before knows of nothing.
        if (isGranted && !alive.expired())
          queue_->run([store = store_] { [store reset]; });
      });
      postAnswer(runLoop, life, answer,
                 isGranted ? CalendarAccess::granted : CalendarAccess::denied);
    };
    const auto completion = ^(BOOL granted, NSError*) {
      told(granted);
    };
    if (entity == Entity::events)
      [store requestFullAccessToEventsWithCompletion:completion];
    else
      [store requestFullAccessToRemindersWithCompletion:completion];
    return token;
  }

  TokenPtr accounts(Entity entity, std::function<void(Accounts)> answer) override {
    return read<Accounts>([entity](EKEventStore* store) { return readAccounts(store, entity); },
                          std::move(answer));
  }

  TokenPtr events(DateInterval range, const std::optional<std::vector<std::string>>& calendarIDs,
                  std::function<void(std::vector<CalendarEvent>)> answer) override {
    return read<std::vector<CalendarEvent>>(
        [range, calendarIDs](EKEventStore* store) { return readEvents(store, range, calendarIDs); },
        std::move(answer));
  }

  TokenPtr reminders(const std::string& listID,
                     std::function<void(std::vector<Reminder>)> answer) override {
    auto token = std::make_unique<Fetch>(store_);
    NSArray<EKCalendar*>* lists = calendarsOf(store_, {{listID}});
    if (lists.count == 0) {
      postAnswer(runLoop_, token->life(), std::move(answer), std::vector<Reminder>());
      return token;
    }
    RunLoop* runLoop = &runLoop_;
    const std::weak_ptr<void> life = token->life();
    token->request = [store_
        fetchRemindersMatchingPredicate:[store_ predicateForRemindersInCalendars:lists]
                             completion:^(NSArray<EKReminder*>* found) {
                               std::vector<Reminder> all;
                               for (EKReminder* reminder in found)
                                 all.push_back(toReminder(reminder));
                               postAnswer(*runLoop, life, answer, std::move(all));
                             }];
    return token;
  }

  TokenPtr setCompleted(const Reminder& reminder, bool isCompleted,
                        std::function<void(bool)> answer) override {
    return read<bool>([id = reminder.id, isCompleted](
                          EKEventStore* store) { return complete(store, id, isCompleted); },
                      std::move(answer));
  }

  void openApplication(Entity entity) override {
    NSString* identifier = entity == Entity::events ? @"com.apple.iCal" : @"com.apple.reminders";
    NSWorkspace* workspace = NSWorkspace.sharedWorkspace;
    if (NSURL* application = [workspace URLForApplicationWithBundleIdentifier:identifier])
      [workspace openURL:application];
  }

  TokenPtr observeChanges(std::function<void()> handler) override {
    return changes_.add(std::move(handler));
  }

private:
  /// The store waits for its database: off the main thread, one question at a time.
  template <class Value>
  TokenPtr read(std::function<Value(EKEventStore*)> work, std::function<void(Value)> answer) {
    auto token = std::make_unique<LivingToken>();
    queue_->run([&runLoop = runLoop_, store = store_, work = std::move(work),
                 answer = std::move(answer), life = token->life()] {
      @autoreleasepool {
        if (!life.expired())
          postAnswer(runLoop, life, answer, work(store));
      }
    });
    return token;
  }

  RunLoop& runLoop_;
  EKEventStore* store_;
  std::unique_ptr<SerialQueue> queue_;
  HandlerList changes_;
  MacObservation observation_;
  Lifetime alive_;
};

} // namespace

std::unique_ptr<CalendarStore> makeMacCalendarStore(RunLoop& runLoop) {
  return std::make_unique<MacCalendarStore>(runLoop);
}

} // namespace tavrin
