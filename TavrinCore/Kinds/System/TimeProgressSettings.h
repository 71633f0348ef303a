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

template <> struct EnumTitles<TimeProgressScope> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Day"), marked("Week"), marked("Month"), marked("Year")});
};

struct TimeProgressSettings {
  static constexpr std::string_view kindKey = "timeProgress";

  TimeProgressScope scope = TimeProgressScope::day;

  static constexpr auto fields() {
    return std::tuple{optional("scope", &TimeProgressSettings::scope)
                          .titled("Period")
                          .helped("What has passed a part of.")};
  }
  bool operator==(const TimeProgressSettings&) const = default;
};

} // namespace tavrin
