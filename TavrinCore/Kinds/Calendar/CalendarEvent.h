#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"

namespace tavrin {

struct CalendarEvent {
  std::string id;
  std::string title;
  Date start;
  Date end;
  bool isAllDay = false;
  std::optional<std::string> location;
  /// The calendar's colour, "#RRGGBB".
  std::optional<std::string> colorHex;

  bool operator==(const CalendarEvent&) const = default;
};

/// A calendar, or a list of reminders, that can be picked.
struct CalendarChoice {
  std::string id;
  std::string title;
  std::string accountID;
  std::string accountName;
  std::optional<std::string> colorHex;

  bool operator==(const CalendarChoice&) const = default;
};

struct CalendarAccount {
  std::string id;
  std::string name;
  std::vector<CalendarChoice> calendars;

  bool operator==(const CalendarAccount&) const = default;
};

/// All calendars of `accounts`, in order.
std::vector<CalendarChoice> choices(const std::vector<CalendarAccount>& accounts);

/// What comes next in a list that is sorted by start.
namespace UpNext {

/// The events that are not over, at most `limit` of them, in their given order.
std::vector<CalendarEvent> select(const std::vector<CalendarEvent>& events, Date now,
                                  std::size_t limit);
std::optional<CalendarEvent> current(const std::vector<CalendarEvent>& events, Date now);
/// Rounded up, so that 0 means that it begins now; negative once it has begun.
std::int64_t minutesUntil(const CalendarEvent& event, Date now);
/// By start, and of those that start together by end, title and identifier. An all-day event comes
/// after the timed ones of its day, today's at the earliest, so that what needs to be attended
/// comes first.
void sort(std::vector<CalendarEvent>& events, Date now, const Calendar& calendar);

} // namespace UpNext

} // namespace tavrin
