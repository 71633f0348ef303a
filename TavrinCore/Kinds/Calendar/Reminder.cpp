#include "TavrinCore/Kinds/Calendar/Reminder.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <tuple>

namespace tavrin {

std::string displayTitle(const Reminder& reminder) {
  const auto title = trimmed(reminder.title);
  return title.empty() ? translated("Untitled reminder") : std::string(title);
}

bool isOverdue(const Reminder& reminder, Date now, const Calendar& calendar) {
  if (reminder.isCompleted || !reminder.due)
    return false;
  return reminder.isAllDay ? *reminder.due < calendar.startOfDay(now) : *reminder.due < now;
}

std::vector<Reminder> selectReminders(std::vector<Reminder> reminders,
                                      const ReminderSettings& settings, Date now,
                                      const Calendar& calendar) {
  const Date today = calendar.startOfDay(now);
  const Date end = calendar.addingDays(std::clamp(settings.daysAhead, 1, 3660), today);
  std::erase_if(reminders, [&](const Reminder& reminder) {
    const bool isBeyond = reminder.due && *reminder.due >= end;
    if (!reminder.isCompleted)
      return isBeyond;
    const bool isOfToday = reminder.completedAt && *reminder.completedAt >= today;
    const bool isDue = reminder.due && *reminder.due >= today && !isBeyond;
    return !settings.showsCompleted || !(isOfToday || isDue);
  });
  const auto key = [](const Reminder& reminder) {
    const double when = reminder.isCompleted
                            ? -reminder.completedAt.value_or(Date{}).secondsSinceReferenceDate
                            : reminder.due.value_or(Date{}).secondsSinceReferenceDate;
    const int rank = reminder.priority > 0 ? reminder.priority : 10;
    return std::tuple(reminder.isCompleted, !reminder.isCompleted && !reminder.due, when, rank,
                      std::string_view(reminder.title), std::string_view(reminder.id));
  };
  std::stable_sort(reminders.begin(), reminders.end(),
                   [&](const auto& first, const auto& second) { return key(first) < key(second); });
  return reminders;
}

} // namespace tavrin
