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
    return std::tuple{optional("accountIDs", &CalendarSelection::accountIDs)
                          .titled("Accounts")
                          .helped("Every calendar of these accounts is read.")
                          .as(FieldRole::account),
                      optional("calendarIDs", &CalendarSelection::calendarIDs)
                          .titled("Calendars")
                          .helped("Single calendars, beside those of whole accounts.")
                          .as(FieldRole::calendar)};
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

template <> struct EnumTitles<CalendarTileStyle> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Next event"), marked("Date + next event"), marked("Agenda"), marked("Date")});
};

struct CalendarSettings {
  static constexpr std::string_view kindKey = "calendar";

  int daysAhead = 7;
  bool showsAllDay = true;
  bool turnsTextSideways = false;
  CalendarTileStyle style = CalendarTileStyle::dateAndNext;
  CalendarSelection calendars;

  static constexpr auto fields() {
    return std::tuple{
        optional("daysAhead", &CalendarSettings::daysAhead)
            .titled("Days ahead")
            .helped("How far ahead events are looked for.")
            .in("d")
            .ranging(1, 60),
        optional("showsAllDay", &CalendarSettings::showsAllDay)
            .titled("Show all-day events")
            .helped("Birthdays, holidays and other events without a time of day."),
        optional("turnsTextSideways", &CalendarSettings::turnsTextSideways)
            .titled("Turn the text sideways")
            .helped("Runs the words up the tile, for a Dock at the side of the screen."),
        optional("style", &CalendarSettings::style)
            .titled("Tile")
            .helped("What stands on the tile."),
        optional("calendars", &CalendarSettings::calendars)
            .titled("Calendars")
            .helped("Which calendars are read; none chosen reads all of them.")
            .as(FieldRole::calendar)
            .absentAs("All calendars")};
  }
  bool operator==(const CalendarSettings&) const = default;
};

} // namespace tavrin
