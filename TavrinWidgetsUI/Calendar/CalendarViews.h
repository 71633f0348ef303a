#pragma once

#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinWidgetsUI/Calendar/CalendarModel.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor calendarTint{0xFF, 0x45, 0x3A};
inline constexpr QColor reminderTint{0xFF, 0x9F, 0x0A};

/// What the calendar views show at one moment. The calendar is the model's own: a copy would read
/// the locale's formats again for every tile.
struct CalendarReading {
  CalendarSettings settings;
  CalendarState state = CalendarState::notAsked;
  std::vector<CalendarEvent> events;
  Date now;
  const Calendar& calendar;
};
struct ReminderReading {
  ReminderSettings settings;
  CalendarState state = CalendarState::notAsked;
  std::vector<Reminder> reminders;
  Date now;
  const Calendar& calendar;
};

/// A state without items in words: one sentence, and what to do about it.
struct CalendarWords {
  QString sentence;
  QString hint;
  /// For tiles that have no room for the sentence.
  QString brief;
};
CalendarWords calendarWords(CalendarState state);
CalendarWords reminderWords(CalendarState state);

QString eventTitle(const CalendarEvent& event);
/// "now", "in 12 min", "14:30", "Thu 14:30", "All day".
QString eventWhen(const CalendarEvent& event, Date now, const Calendar& calendar);
/// "now", "12 min", "14:30", "Thu", "All day": for small tiles.
QString eventWhenBrief(const CalendarEvent& event, Date now, const Calendar& calendar);
/// "Today, 14:30–15:00 · Room 4": the line below an event's title.
QString eventDetail(const CalendarEvent& event, Date now, const Calendar& calendar);
/// "Late", "Today", "14:30", "Thu"; empty without a date.
QString reminderWhen(const Reminder& reminder, Date now, const Calendar& calendar);

AnyView calendarTileIcon(const CalendarReading& reading, const TileSize& size);
AnyView calendarWideTile(const CalendarReading& reading, const TileSize& size);
AnyView reminderTileIcon(const ReminderReading& reading, const TileSize& size);
AnyView reminderWideTile(const ReminderReading& reading, const TileSize& size);

} // namespace tavrin
