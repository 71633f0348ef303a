#include "Tests/macOS/Fakes/KitFakes.h"

#pragma clang diagnostic ignored "-Wincomplete-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"

EventKitState eventKit;
NotificationState notifications;

static std::string textOf(NSString* string) { return string.UTF8String != nullptr ? string.UTF8String : ""; }

@implementation EKObject
@end
@implementation EKSource
+ (EKSource*)named:(NSString*)name {
  EKSource* source = [[self alloc] init];
  source->_sourceIdentifier = name;
  source->_title = name;
  return source;
}
@end
@interface EKSource (Fake)
+ (EKSource*)named:(NSString*)name;
@end
@implementation EKCalendar
- (void)setIdentifier:(NSString*)id { _calendarIdentifier = id; }
- (CGColorRef)CGColor { return reinterpret_cast<CGColorRef>(8); }
@end
@interface EKCalendar (Fake)
- (void)setIdentifier:(NSString*)id;
@end
@implementation EKCalendarItem
- (NSString*)calendarItemIdentifier { return @"item"; }
@end
@implementation EKEvent
- (void)setStatus:(EKEventStatus)status { _status = status; }
- (NSString*)eventIdentifier { return @"series"; }
@end
@interface EKEvent (Fake)
- (void)setStatus:(EKEventStatus)status;
@end
@implementation EKReminder
@end
EKCalendar* makeCalendar(NSString* id, NSString* title, NSString* account) {
  EKCalendar* calendar = [[EKCalendar alloc] init];
  calendar.title = title;
  [calendar setIdentifier:id];
  calendar.source = [EKSource named:account];
  return calendar;
}
EKEvent* makeEvent(NSString* title, double start, double end, bool isAllDay, EKEventStatus status) {
  EKEvent* event = [[EKEvent alloc] init];
  event.title = title;
  event.startDate = [NSDate dateWithTimeIntervalSince1970:start];
  event.endDate = [NSDate dateWithTimeIntervalSince1970:end];
  event.allDay = isAllDay;
  [event setStatus:status];
  return event;
}

@implementation EKEventStore
+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)type {
  return type == EKEntityTypeEvent ? eventKit.events : eventKit.reminders;
}
- (void)requestFullAccessToEventsWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion {
  note("ask for events");
  eventKit.asked = completion;
}
- (void)requestFullAccessToRemindersWithCompletion:(EKEventStoreRequestAccessCompletionHandler)completion {
  note("ask for reminders");
  eventKit.asked = completion;
}
- (NSArray<EKCalendar*>*)calendarsForEntityType:(EKEntityType)type {
  std::vector<id> all(eventKit.calendars.begin(), eventKit.calendars.end());
  return [[FakeArray alloc] initWith:all];
}
- (EKCalendar*)defaultCalendarForNewEvents { return eventKit.calendars.empty() ? nil : eventKit.calendars.front(); }
- (EKCalendar*)calendarWithIdentifier:(NSString*)identifier {
  for (EKCalendar* each : eventKit.calendars)
    if ([each.calendarIdentifier isEqualToString:identifier]) return each;
  return nil;
}
- (EKCalendarItem*)calendarItemWithIdentifier:(NSString*)identifier { return eventKit.reminder; }
- (NSPredicate*)predicateForEventsWithStartDate:(NSDate*)start endDate:(NSDate*)end calendars:(NSArray<EKCalendar*>*)calendars {
  note("events for " + std::to_string(long((end.timeIntervalSince1970 - start.timeIntervalSince1970) / 86400)) + " days of " +
       (calendars == nil ? "all" : std::to_string(calendars.count)));
  return [[NSPredicate alloc] init];
}
- (NSArray<EKEvent*>*)eventsMatchingPredicate:(NSPredicate*)predicate {
  std::vector<id> all(eventKit.all.begin(), eventKit.all.end());
  return [[FakeArray alloc] initWith:all];
}
- (NSPredicate*)predicateForRemindersInCalendars:(NSArray<EKCalendar*>*)calendars { return [[NSPredicate alloc] init]; }
- (id)fetchRemindersMatchingPredicate:(NSPredicate*)predicate completion:(void (^)(NSArray<EKReminder*>*))completion {
  eventKit.fetched = completion;
  return @"request";
}
- (void)cancelFetchRequest:(id)request { note("cancel " + textOf((NSString*)request)); eventKit.fetched = nil; }
- (BOOL)saveReminder:(EKReminder*)reminder commit:(BOOL)commits error:(NSError* __autoreleasing*)error {
  note(std::string("save ") + (reminder.completed ? "done" : "open") + (commits ? " commit" : ""));
  return eventKit.canSave;
}
- (void)reset { note("reset"); }
@end
NSNotificationName const EKEventStoreChangedNotification = @"store";

extern "C" {
const CFStringRef kCGColorSpaceSRGB = CFSTR("sRGB");
CGColorSpaceRef CGColorSpaceCreateWithName(CFStringRef) { note("space"); return reinterpret_cast<CGColorSpaceRef>(16); }
void CGColorSpaceRelease(CGColorSpaceRef) { note("space released"); }
CGColorRef CGColorCreateCopyByMatchingToColorSpace(CGColorSpaceRef, CGColorRenderingIntent, CGColorRef, CFDictionaryRef) {
  note("colour");
  return reinterpret_cast<CGColorRef>(24);
}
void CGColorRelease(CGColorRef) { note("colour released"); }
size_t CGColorGetNumberOfComponents(CGColorRef) { return 4; }
const CGFloat* CGColorGetComponents(CGColorRef) {
  static const CGFloat parts[] = {1, 0.5, 0, 1};
  return parts;
}
}

@implementation UNNotificationSound
+ (UNNotificationSound*)defaultSound { static UNNotificationSound* sound = [[UNNotificationSound alloc] init]; return sound; }
@end
@implementation UNNotificationContent
@end
@implementation UNMutableNotificationContent
@synthesize title, body, sound;
@end
@implementation UNNotificationTrigger
@end
@implementation UNTimeIntervalNotificationTrigger
+ (instancetype)triggerWithTimeInterval:(NSTimeInterval)seconds repeats:(BOOL)repeats {
  UNTimeIntervalNotificationTrigger* made = [[self alloc] init];
  made->_timeInterval = seconds;
  return made;
}
@end
@implementation UNNotificationRequest
+ (instancetype)requestWithIdentifier:(NSString*)identifier content:(UNNotificationContent*)content trigger:(UNNotificationTrigger*)trigger {
  UNNotificationRequest* made = [[self alloc] init];
  made->_identifier = identifier;
  made->_content = content;
  made->_trigger = trigger;
  return made;
}
@end
@implementation UNNotification
@end
@implementation UNNotificationResponse
@end
@implementation UNUserNotificationCenter
+ (UNUserNotificationCenter*)currentNotificationCenter {
  static UNUserNotificationCenter* center = [[UNUserNotificationCenter alloc] init];
  note("center");
  notifications.center = center;
  return center;
}
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options completionHandler:(void (^)(BOOL, NSError*))handler {
  note("ask for " + std::to_string(options));
  notifications.asked = handler;
}
- (void)addNotificationRequest:(UNNotificationRequest*)request withCompletionHandler:(void (^)(NSError*))handler {
  note("add " + textOf(request.identifier) + ": " + textOf(request.content.title) + " in " +
       std::to_string(int(((UNTimeIntervalNotificationTrigger*)request.trigger).timeInterval)) +
       (request.content.sound != nil ? " with sound" : ""));
  notifications.pending[textOf(request.identifier)] = {textOf(request.content.title), ((UNTimeIntervalNotificationTrigger*)request.trigger).timeInterval};
}
- (void)removePendingNotificationRequestsWithIdentifiers:(NSArray<NSString*>*)identifiers {
  note("remove " + textOf(identifiers.firstObject));
  notifications.pending.erase(textOf(identifiers.firstObject));
}
@end
