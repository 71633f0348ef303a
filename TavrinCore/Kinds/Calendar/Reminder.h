#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"

namespace tavrin {

struct Reminder {
  std::string id;
  std::string listID;
  /// May be empty.
  std::string title;
  std::optional<Date> due;
  /// `due` is a day, its beginning in the user's zone.
  bool isAllDay = false;
  bool isCompleted = false;
  std::optional<Date> completedAt;
  /// 1 (most important) to 9; 0 for none.
  int priority = 0;

  bool operator==(const Reminder&) const = default;
};

/// The title, or "Untitled reminder".
std::string displayTitle(const Reminder& reminder);
/// Whether its time is over: a day's reminder is late from the next day on.
bool isOverdue(const Reminder& reminder, Date now, const Calendar& calendar);

/// Those the widget shows, in its order: the open ones that are late or due by the end of the last
/// of `daysAhead` days, earliest first; then those without a date, for they wait for any day; and
/// with `showsCompleted` those that were completed today or are due in those days, latest first.
std::vector<Reminder> selectReminders(std::vector<Reminder> reminders,
                                      const ReminderSettings& settings, Date now,
                                      const Calendar& calendar);

} // namespace tavrin
