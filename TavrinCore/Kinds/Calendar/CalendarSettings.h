#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct CalendarChoice;

/// Which calendars a widget reads; both lists empty means every calendar.
struct CalendarSelection {
  std::vector<std::string> accountIDs;
  std::vector<std::string> calendarIDs;

  bool includes(const CalendarChoice& choice) const;
  /// The identifiers of the picked ones among `choices`: none when every calendar is meant, empty
  /// when the picked ones are gone.
  std::optional<std::vector<std::string>> resolve(const std::vector<CalendarChoice>& choices) const;
  CalendarSelection settingAccount(const std::string& id, bool isIncluded) const;
  CalendarSelection settingCalendar(const std::string& id, bool isIncluded) const;

  static constexpr auto fields() {
    return std::tuple{optional("accountIDs", &CalendarSelection::accountIDs).titled("Accounts"),
                      optional("calendarIDs", &CalendarSelection::calendarIDs).titled("Calendars")};
  }
  bool operator==(const CalendarSelection&) const = default;
};

enum class CalendarTileStyle { nextEvent, dateAndNext, agenda, date };

template <> struct EnumNames<CalendarTileStyle> {
  static constexpr auto names = std::to_array<std::pair<CalendarTileStyle, std::string_view>>(
      {{CalendarTileStyle::nextEvent, "nextEvent"},
       {CalendarTileStyle::dateAndNext, "dateAndNext"},
       {CalendarTileStyle::agenda, "agenda"},
       {CalendarTileStyle::date, "date"}});
};

struct CalendarSettings {
  int daysAhead = 7;
  bool showsAllDay = true;
  bool turnsTextSideways = false;
  CalendarTileStyle style = CalendarTileStyle::dateAndNext;
  CalendarSelection calendars;

  static constexpr auto fields() {
    return std::tuple{
        optional("daysAhead", &CalendarSettings::daysAhead)
            .titled("Days ahead")
            .in("d")
            .ranging(1, 60),
        optional("showsAllDay", &CalendarSettings::showsAllDay).titled("Show all-day events"),
        optional("turnsTextSideways", &CalendarSettings::turnsTextSideways)
            .titled("Turn the text sideways"),
        optional("style", &CalendarSettings::style).titled("Tile"),
        optional("calendars", &CalendarSettings::calendars).titled("Calendars")};
  }
  bool operator==(const CalendarSettings&) const = default;
};

} // namespace tavrin
