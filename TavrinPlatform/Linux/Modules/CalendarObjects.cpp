#include "TavrinPlatform/Linux/Modules/CalendarObjects.h"

#include <ctime>

namespace tavrin {
namespace {

constexpr std::size_t longestText = 500;

/// Valid UTF-8 without control characters, and not longer than anybody reads.
std::string clean(const char* text) {
  if (text == nullptr)
    return {};
  gchar* valid = g_utf8_make_valid(text, -1);
  std::string cleaned;
  std::size_t count = 0;
  for (const gchar* c = valid; *c != '\0' && count < longestText; ++count) {
    const gchar* next = g_utf8_next_char(c);
    // Those of Latin-1 are two bytes long.
    if (g_unichar_iscntrl(g_utf8_get_char(c)))
      cleaned += ' ';
    else
      cleaned.append(c, next);
    c = next;
  }
  g_free(valid);
  return cleaned;
}

Date localTime(int year, int month, int day, int hour, int minute, int second) {
  std::tm parts{};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  parts.tm_sec = second;
  parts.tm_isdst = -1;
  return Date::fromUnixSeconds(static_cast<double>(std::mktime(&parts)));
}

Date nextDay(ICalTime* date) {
  return localTime(i_cal_time_get_year(date), i_cal_time_get_month(date),
                   i_cal_time_get_day(date) + 1, 0, 0, 0);
}

/// Seconds between the two on a clock's face: what the library added to make an instance's end,
/// also where clocks change in between.
double faceDifference(ICalTime* start, ICalTime* end) {
  ICalTimezone* utc = i_cal_timezone_get_utc_timezone();
  return static_cast<double>(i_cal_time_as_timet_with_zone(end, utc) -
                             i_cal_time_as_timet_with_zone(start, utc));
}

bool isThere(ICalTime* time) {
  return time != nullptr && !i_cal_time_is_null_time(time) && i_cal_time_is_valid_time(time);
}

} // namespace

Date dateOf(ICalTime* time) {
  if (i_cal_time_is_date(time))
    return localTime(i_cal_time_get_year(time), i_cal_time_get_month(time),
                     i_cal_time_get_day(time), 0, 0, 0);
  ICalTimezone* zone = i_cal_time_get_timezone(time);
  if (i_cal_time_is_utc(time) || zone != nullptr)
    return Date::fromUnixSeconds(static_cast<double>(i_cal_time_as_timet_with_zone(
        time, i_cal_time_is_utc(time) ? i_cal_timezone_get_utc_timezone() : zone)));
  return localTime(i_cal_time_get_year(time), i_cal_time_get_month(time), i_cal_time_get_day(time),
                   i_cal_time_get_hour(time), i_cal_time_get_minute(time),
                   i_cal_time_get_second(time));
}

std::optional<CalendarEvent> eventFrom(ICalComponent* component, ICalTime* start, ICalTime* end,
                                       const std::optional<std::string>& colorHex) {
  if (!isThere(start) || i_cal_component_get_status(component) == I_CAL_STATUS_CANCELLED)
    return std::nullopt;
  CalendarEvent event;
  event.id = clean(i_cal_component_get_uid(component));
  event.title = clean(i_cal_component_get_summary(component));
  event.start = dateOf(start);
  event.isAllDay = i_cal_time_is_date(start);
  event.end = !isThere(end) ? event.start
              : event.isAllDay || i_cal_time_get_timezone(start) != i_cal_time_get_timezone(end)
                  ? dateOf(end)
                  : event.start + faceDifference(start, end);
  if (event.isAllDay && event.end <= event.start)
    event.end = nextDay(start);
  event.end = std::max(event.end, event.start);
  if (auto location = clean(i_cal_component_get_location(component)); !location.empty())
    event.location = std::move(location);
  event.colorHex = colorHex;
  return event;
}

std::optional<Reminder> reminderFrom(ICalComponent* component, const std::string& listID) {
  Reminder reminder;
  const char* uid = i_cal_component_get_uid(component);
  if (uid == nullptr || *uid == '\0')
    return std::nullopt;
  reminder.id = uid;
  reminder.listID = listID;
  reminder.title = clean(i_cal_component_get_summary(component));
  if (const GOwned<ICalTime> due(i_cal_component_get_due(component)); isThere(due.get())) {
    reminder.due = dateOf(due.get());
    reminder.isAllDay = i_cal_time_is_date(due.get());
  }
  reminder.isCompleted = i_cal_component_get_status(component) == I_CAL_STATUS_COMPLETED;
  if (const GOwned<ICalProperty> property(
          i_cal_component_get_first_property(component, I_CAL_COMPLETED_PROPERTY));
      property) {
    reminder.isCompleted = true;
    if (const GOwned<ICalTime> time(i_cal_property_get_completed(property.get()));
        isThere(time.get()))
      reminder.completedAt = dateOf(time.get());
  }
  if (const GOwned<ICalProperty> property(
          i_cal_component_get_first_property(component, I_CAL_PRIORITY_PROPERTY));
      property) {
    const int priority = i_cal_property_get_priority(property.get());
    reminder.priority = priority >= 1 && priority <= 9 ? priority : 0;
  }
  return reminder;
}

} // namespace tavrin
