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

struct ReminderSettings {
  /// None is the default list.
  std::optional<std::string> listID;
  bool showsCompleted = false;
  int daysAhead = 7;
  ReminderTileStyle style = ReminderTileStyle::next;

  static constexpr auto fields() {
    return std::tuple{optional("listID", &ReminderSettings::listID).titled("List"),
                      optional("showsCompleted", &ReminderSettings::showsCompleted)
                          .titled("Show completed reminders"),
                      optional("daysAhead", &ReminderSettings::daysAhead)
                          .titled("Days ahead")
                          .in("d")
                          .ranging(1, 60),
                      optional("style", &ReminderSettings::style).titled("Tile")};
  }
  bool operator==(const ReminderSettings&) const = default;
};

} // namespace tavrin
