#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class ActivityTileStyle { bars, numbers, rings };

template <> struct EnumNames<ActivityTileStyle> {
  static constexpr auto names = std::to_array<std::pair<ActivityTileStyle, std::string_view>>(
      {{ActivityTileStyle::bars, "bars"},
       {ActivityTileStyle::numbers, "numbers"},
       {ActivityTileStyle::rings, "rings"}});
};

template <> struct EnumTitles<ActivityTileStyle> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Bars"), marked("Numbers"), marked("Rings")});
};

struct ActivitySettings {
  static constexpr std::string_view kindKey = "activity";

  bool showsCPU = true;
  bool showsMemory = true;
  ActivityTileStyle style = ActivityTileStyle::bars;

  static constexpr auto fields() {
    return std::tuple{optional("showsCPU", &ActivitySettings::showsCPU)
                          .titled("Show the processor")
                          .helped("How busy it is."),
                      optional("showsMemory", &ActivitySettings::showsMemory)
                          .titled("Show the memory")
                          .helped("How much of it is in use."),
                      optional("style", &ActivitySettings::style)
                          .titled("Tile")
                          .helped("How the readings are drawn.")};
  }
  bool operator==(const ActivitySettings&) const = default;
};

} // namespace tavrin
