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

struct ActivitySettings {
  bool showsCPU = true;
  bool showsMemory = true;
  ActivityTileStyle style = ActivityTileStyle::bars;

  static constexpr auto fields() {
    return std::tuple{
        optional("showsCPU", &ActivitySettings::showsCPU).titled("Show the processor"),
        optional("showsMemory", &ActivitySettings::showsMemory).titled("Show the memory"),
        optional("style", &ActivitySettings::style).titled("Tile")};
  }
  bool operator==(const ActivitySettings&) const = default;
};

} // namespace tavrin
