#include "TavrinCore/Kinds/Calendar/CalendarEvent.h"

#include "TavrinCore/Text/ClockText.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace tavrin {
namespace {

bool holds(const std::vector<std::string>& list, const std::string& id) {
  return std::find(list.begin(), list.end(), id) != list.end();
}

void set(std::vector<std::string>& list, const std::string& id, bool isIncluded) {
  if (!isIncluded)
    std::erase(list, id);
  else if (!holds(list, id))
    list.push_back(id);
}

} // namespace

bool CalendarSelection::includes(const CalendarChoice& choice) const {
  return (accountIDs.empty() && calendarIDs.empty()) || holds(calendarIDs, choice.id) ||
         holds(accountIDs, choice.accountID);
}

std::optional<std::vector<std::string>>
CalendarSelection::resolve(const std::vector<CalendarChoice>& choices) const {
  if (accountIDs.empty() && calendarIDs.empty())
    return std::nullopt;
  std::vector<std::string> found;
  for (const auto& choice : choices)
    if (includes(choice))
      found.push_back(choice.id);
  return found;
}

CalendarSelection CalendarSelection::settingAccount(const std::string& id, bool isIncluded) const {
  CalendarSelection copy = *this;
  set(copy.accountIDs, id, isIncluded);
  return copy;
}

CalendarSelection CalendarSelection::settingCalendar(const std::string& id, bool isIncluded) const {
  CalendarSelection copy = *this;
  set(copy.calendarIDs, id, isIncluded);
  return copy;
}

std::vector<CalendarChoice> choices(const std::vector<CalendarAccount>& accounts) {
  std::vector<CalendarChoice> all;
  for (const auto& account : accounts)
    all.insert(all.end(), account.calendars.begin(), account.calendars.end());
  return all;
}

std::vector<CalendarEvent> UpNext::select(const std::vector<CalendarEvent>& events, Date now,
                                          std::size_t limit) {
  std::vector<CalendarEvent> next;
  for (const auto& event : events) {
    if (next.size() == limit)
      break;
    if (event.end > now)
      next.push_back(event);
  }
  return next;
}

std::optional<CalendarEvent> UpNext::current(const std::vector<CalendarEvent>& events, Date now) {
  auto next = select(events, now, 1);
  return next.empty() ? std::nullopt : std::optional(std::move(next.front()));
}

std::int64_t UpNext::minutesUntil(const CalendarEvent& event, Date now) {
  return wholeSeconds(std::ceil(event.start.since(now) / 60));
}

void UpNext::sort(std::vector<CalendarEvent>& events, Date now, const Calendar& calendar) {
  constexpr double almostADay = 86'399;
  const Date today = calendar.startOfDay(now);
  const auto key = [&](const CalendarEvent& event) {
    const Date start = event.isAllDay ? std::max(event.start, today) + almostADay : event.start;
    return std::tuple(start, event.end, std::string_view(event.title), std::string_view(event.id));
  };
  std::stable_sort(events.begin(), events.end(),
                   [&](const auto& first, const auto& second) { return key(first) < key(second); });
}

} // namespace tavrin
