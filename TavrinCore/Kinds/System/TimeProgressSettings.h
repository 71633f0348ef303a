#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class TimeProgressScope { day, week, month, year };

template <> struct EnumNames<TimeProgressScope> {
  static constexpr auto names = std::to_array<std::pair<TimeProgressScope, std::string_view>>(
      {{TimeProgressScope::day, "day"},
       {TimeProgressScope::week, "week"},
       {TimeProgressScope::month, "month"},
       {TimeProgressScope::year, "year"}});
};

constexpr std::string_view title(TimeProgressScope scope) {
  constexpr std::array<std::string_view, 4> titles = {"Day", "Week", "Month", "Year"};
  return titles[static_cast<std::size_t>(scope)];
}

struct TimeProgressSettings {
  TimeProgressScope scope = TimeProgressScope::day;

  static constexpr auto fields() {
    return std::tuple{optional("scope", &TimeProgressSettings::scope).titled("Period")};
  }
  bool operator==(const TimeProgressSettings&) const = default;
};

} // namespace tavrin
