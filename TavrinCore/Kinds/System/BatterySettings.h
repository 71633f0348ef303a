#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class BatteryTileStyle { status, ring, icon };

template <> struct EnumNames<BatteryTileStyle> {
  static constexpr auto names = std::to_array<std::pair<BatteryTileStyle, std::string_view>>(
      {{BatteryTileStyle::status, "status"},
       {BatteryTileStyle::ring, "ring"},
       {BatteryTileStyle::icon, "icon"}});
};

struct BatterySettings {
  bool showsPercentage = true;
  BatteryTileStyle style = BatteryTileStyle::status;

  static constexpr auto fields() {
    return std::tuple{optional("showsPercentage", &BatterySettings::showsPercentage)
                          .titled("Show the percentage"),
                      optional("style", &BatterySettings::style).titled("Tile")};
  }
  bool operator==(const BatterySettings&) const = default;
};

} // namespace tavrin
