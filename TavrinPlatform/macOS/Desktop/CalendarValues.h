#pragma once

#include "TavrinPlatform/CalendarStore.h"

#import <EventKit/EventKit.h>

namespace tavrin {

/// What EventKit's objects say, as values; the objects themselves grow stale with every change.
CalendarEvent toEvent(EKEvent* _Nonnull event);
Reminder toReminder(EKReminder* _Nonnull reminder);
/// By account, both by name.
std::vector<CalendarAccount> toAccounts(NSArray<EKCalendar*>* _Nonnull calendars);

} // namespace tavrin
