#include "TavrinPlatform/macOS/Desktop/CalendarValues.h"

#include "TavrinPlatform/macOS/Base/MacDate.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace tavrin {
namespace {

constexpr double day = 86'400;

Date dayOf(Date date) {
  return toDate([NSCalendar.currentCalendar startOfDayForDate:toNSDate(date)]);
}

/// The first midnight at or after `date`; a day has 23 to 25 hours.
Date midnightAfter(Date date) {
  const Date begin = dayOf(date);
  return begin == date ? date : dayOf(begin + 1.5 * day);
}

std::optional<std::string> hexOf(CGColorRef colour) {
  if (colour == nullptr)
    return std::nullopt;
  CGColorSpaceRef space = CGColorSpaceCreateWithName(kCGColorSpaceSRGB);
  CGColorRef converted = CGColorCreateCopyByMatchingToColorSpace(
      space, kCGRenderingIntentDefault, colour, nullptr);
  CGColorSpaceRelease(space);
  const CGFloat* parts = CGColorGetComponents(converted);
  std::optional<std::string> hex;
  if (parts != nullptr && CGColorGetNumberOfComponents(converted) == 4) {
    const auto channel = [&](int i) {
      return static_cast<unsigned>(std::lround(std::clamp(double{parts[i]}, 0.0, 1.0) * 255));
    };
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", channel(0), channel(1), channel(2));
    hex = text;
  }
  CGColorRelease(converted);
  return hex;
}

std::optional<std::string> filled(NSString* text) {
  return text.length > 0 ? std::optional(toText(text)) : std::nullopt;
}

} // namespace

CalendarEvent toEvent(EKEvent* event) {
  CalendarEvent value;
  value.title = toText(event.title);
  value.start = toDate(event.startDate);
  value.end = toDate(event.endDate);
  value.isAllDay = event.allDay;
  if (value.isAllDay) {
    // The end may be the last second of the last day, or the midnight after it.
    value.start = dayOf(value.start);
    value.end = std::max(midnightAfter(value.end), midnightAfter(value.start + 1));
  }
  value.location = filled(event.location);
  value.colorHex = hexOf(event.calendar.CGColor);
  // All occurrences of a series have one identifier.
  NSDate* occurrence = event.occurrenceDate != nil ? event.occurrenceDate : event.startDate;
  value.id = toText(event.eventIdentifier) + "/" +
             std::to_string(std::llround(toDate(occurrence).unixSeconds()));
  return value;
}

Reminder toReminder(EKReminder* reminder) {
  Reminder value;
  value.id = toText(reminder.calendarItemIdentifier);
  value.listID = toText(reminder.calendar.calendarIdentifier);
  value.title = toText(reminder.title);
  value.isCompleted = reminder.completed;
  if (NSDate* completed = reminder.completionDate)
    value.completedAt = toDate(completed);
  value.priority = static_cast<int>(std::min<NSUInteger>(reminder.priority, 9));
  NSDateComponents* due = reminder.dueDateComponents;
  if (due == nil)
    return value;
  NSCalendar* calendar = due.calendar;
  if (calendar == nil)
    calendar = [NSCalendar calendarWithIdentifier:NSCalendarIdentifierGregorian];
  NSDate* date = [calendar dateFromComponents:due];
  if (date == nil)
    return value;
  value.isAllDay = due.hour == NSDateComponentUndefined;
  value.due = value.isAllDay ? dayOf(toDate(date)) : toDate(date);
  return value;
}

std::vector<CalendarAccount> toAccounts(NSArray<EKCalendar*>* calendars) {
  std::map<std::string, CalendarAccount> byID;
  for (EKCalendar* calendar in calendars) {
    const std::string id = toText(calendar.source.sourceIdentifier);
    CalendarAccount& account = byID[id];
    account.id = id;
    account.name = toText(calendar.source.title);
    account.calendars.push_back({toText(calendar.calendarIdentifier), toText(calendar.title), id,
                                 account.name, hexOf(calendar.CGColor)});
  }
  std::vector<CalendarAccount> accounts;
  for (auto& [id, account] : byID) {
    std::ranges::stable_sort(account.calendars, {}, &CalendarChoice::title);
    accounts.push_back(std::move(account));
  }
  std::ranges::stable_sort(accounts, {}, &CalendarAccount::name);
  return accounts;
}

} // namespace tavrin
