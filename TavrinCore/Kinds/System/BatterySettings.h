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

template <> struct EnumTitles<BatteryTileStyle> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Status"), marked("Ring"), marked("Icon")});
};

struct BatterySettings {
  static constexpr std::string_view kindKey = "battery";

  bool showsPercentage = true;
  BatteryTileStyle style = BatteryTileStyle::status;

  static constexpr auto fields() {
    return std::tuple{optional("showsPercentage", &BatterySettings::showsPercentage)
                          .titled("Show the percentage")
                          .helped("The charge as a number on the tile."),
                      optional("style", &BatterySettings::style)
                          .titled("Tile")
                          .helped("How the charge is drawn.")};
  }
  bool operator==(const BatterySettings&) const = default;
};

} // namespace tavrin
