#pragma once
#include "Tests/macOS/Fakes/FoundationFakes.h"

#import <UserNotifications/UserNotifications.h>

/// EventKit's database, and what the user has said.
struct EventKitState {
  EKAuthorizationStatus events = EKAuthorizationStatusNotDetermined;
  EKAuthorizationStatus reminders = EKAuthorizationStatusNotDetermined;
  void (^asked)(BOOL, NSError*) = nil;
  void (^fetched)(NSArray<EKReminder*>*) = nil;
  std::vector<EKEvent*> all;
  std::vector<EKCalendar*> calendars;
  EKReminder* reminder = nil;
  bool canSave = true;
};
extern EventKitState eventKit;
EKCalendar* makeCalendar(NSString* id, NSString* title, NSString* account);
EKEvent* makeEvent(NSString* title, double start, double end, bool isAllDay, EKEventStatus status);

struct NotificationState {
  void (^asked)(BOOL, NSError*) = nil;
  /// On any thread, the system asks how to show one.
  UNUserNotificationCenter* center = nil;
  /// Titles and seconds by identifier.
  std::map<std::string, std::pair<std::string, double>> pending;
};
extern NotificationState notifications;
