#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class ReminderTileStyle { next, list, count };

template <> struct EnumNames<ReminderTileStyle> {
  static constexpr auto names = std::to_array<std::pair<ReminderTileStyle, std::string_view>>(
      {{ReminderTileStyle::next, "next"},
       {ReminderTileStyle::list, "list"},
       {ReminderTileStyle::count, "count"}});
};

template <> struct EnumTitles<ReminderTileStyle> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Next reminder"), marked("List"), marked("Count")});
};

struct ReminderSettings {
  static constexpr std::string_view kindKey = "reminders";

  /// None is the default list.
  std::optional<std::string> listID;
  bool showsCompleted = false;
  int daysAhead = 7;
  ReminderTileStyle style = ReminderTileStyle::next;

  static constexpr auto fields() {
    return std::tuple{optional("listID", &ReminderSettings::listID)
                          .titled("List")
                          .helped("Which list is shown.")
                          .as(FieldRole::reminderList)
                          .absentAs("Default list"),
                      optional("showsCompleted", &ReminderSettings::showsCompleted)
                          .titled("Show completed reminders")
                          .helped("Also lists what is done already."),
                      optional("daysAhead", &ReminderSettings::daysAhead)
                          .titled("Days ahead")
                          .helped("How far ahead reminders are due that are shown.")
                          .in("d")
                          .ranging(1, 60),
                      optional("style", &ReminderSettings::style)
                          .titled("Tile")
                          .helped("What stands on the tile.")};
  }
  bool operator==(const ReminderSettings&) const = default;
};

} // namespace tavrin
