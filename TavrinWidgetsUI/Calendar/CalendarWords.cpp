#include "TavrinCore/Text/Text.h"
#include "TavrinWidgetsUI/Calendar/CalendarViews.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {
namespace {

QString time(Date date, const Calendar& calendar) {
  return utf8(calendar.timeOfDay(date));
}

/// "Today", "Tomorrow", else the weekday, and from a week on the date.
QString dayText(Date date, Date now, const Calendar& calendar) {
  if (calendar.isSameDay(date, now))
    return worded("Today");
  if (calendar.isSameDay(date, calendar.addingDays(1, now)))
    return worded("Tomorrow");
  const bool isNear = date > now && date < calendar.addingDays(7, calendar.startOfDay(now));
  return utf8(isNear ? calendar.text(date, "cccc") : calendar.localText(date, "EEEMMMd"));
}

} // namespace

CalendarWords calendarWords(CalendarState state) {
  switch (state) {
  case CalendarState::notAsked:
    return {worded("See your next events here"), {}, worded("Allow access")};
  case CalendarState::denied:
    return {worded("Tavrin has no access to your calendars"),
            worded("Allow it in System Settings › Privacy & Security › Calendars."),
            worded("No access")};
  case CalendarState::gone:
    return {worded("The calendars this widget reads are gone"),
            worded("Pick the accounts again in the widget's settings."), worded("Pick again")};
  case CalendarState::empty:
  case CalendarState::items:
    break;
  }
  return {worded("Nothing coming up"), {}, worded("Nothing")};
}

CalendarWords reminderWords(CalendarState state) {
  if (state == CalendarState::notAsked)
    return {worded("See what is due here"), {}, worded("Allow access")};
  if (state == CalendarState::denied)
    return {worded("Tavrin has no access to your reminders"),
            worded("Allow it in System Settings › Privacy & Security › Reminders."),
            worded("No access")};
  return {worded("Nothing coming up"), {}, worded("Nothing")};
}

QString eventTitle(const CalendarEvent& event) {
  const auto title = trimmed(event.title);
  return title.empty() ? worded("Untitled event") : utf8(std::string(title));
}

QString eventWhen(const CalendarEvent& event, Date now, const Calendar& calendar) {
  const bool isToday = event.start <= now || calendar.isSameDay(event.start, now);
  if (event.isAllDay)
    return isToday ? worded("All day") : utf8(calendar.text(event.start, "ccc"));
  if (event.start <= now)
    return worded("now");
  const auto minutes = UpNext::minutesUntil(event, now);
  if (minutes <= 60)
    return worded("in {minutes} min", {{"minutes", minutes}});
  return isToday ? time(event.start, calendar)
                 : utf8(calendar.text(event.start, "ccc")) + " " + time(event.start, calendar);
}

QString eventWhenBrief(const CalendarEvent& event, Date now, const Calendar& calendar) {
  if (event.isAllDay || event.start <= now)
    return eventWhen(event, now, calendar);
  const auto minutes = UpNext::minutesUntil(event, now);
  if (minutes <= 60)
    return worded("{minutes} min", {{"minutes", minutes}});
  if (!calendar.isSameDay(event.start, now))
    return utf8(calendar.text(event.start, "ccc"));
  // Without the half of the day, which the clock beside it tells.
  const QString whole = time(event.start, calendar);
  const auto isDigit = [](QChar character) { return character.isDigit(); };
  const auto first = std::find_if(whole.begin(), whole.end(), isDigit);
  const auto last = std::find_if(whole.rbegin(), whole.rend(), isDigit);
  return QString(first, last.base() - first);
}

QString eventDetail(const CalendarEvent& event, Date now, const Calendar& calendar) {
  QString detail = dayText(std::max(event.start, calendar.startOfDay(now)), now, calendar);
  if (event.isAllDay) {
    detail = worded("{day}, all day", {{"day", detail}});
  } else if (calendar.isSameDay(event.start, event.end) || event.end.since(event.start) < 43'200) {
    detail = worded("{day}, {beginning}–{end}", {{"day", detail},
                                                 {"beginning", time(event.start, calendar)},
                                                 {"end", time(event.end, calendar)}});
  } else {
    if (event.start > now)
      detail = worded("{day}, {time}", {{"day", detail}, {"time", time(event.start, calendar)}});
    detail = worded("{beginning} until {day}",
                    {{"beginning", detail}, {"day", calendar.localText(event.end, "EEEMMMd")}});
  }
  if (event.location && !trimmed(*event.location).empty())
    return joinedPieces({detail, utf8(*event.location).simplified()});
  return detail;
}

QString reminderWhen(const Reminder& reminder, Date now, const Calendar& calendar) {
  if (reminder.isCompleted)
    return worded("Done");
  if (!reminder.due)
    return {};
  if (isOverdue(reminder, now, calendar))
    return worded("Late");
  if (calendar.isSameDay(*reminder.due, now))
    return reminder.isAllDay ? worded("Today") : time(*reminder.due, calendar);
  return dayText(*reminder.due, now, calendar);
}

} // namespace tavrin
