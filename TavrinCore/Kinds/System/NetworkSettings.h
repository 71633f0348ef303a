#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class NetworkTileStyle { numbers, chart };

template <> struct EnumNames<NetworkTileStyle> {
  static constexpr auto names = std::to_array<std::pair<NetworkTileStyle, std::string_view>>(
      {{NetworkTileStyle::numbers, "numbers"}, {NetworkTileStyle::chart, "chart"}});
};

struct NetworkSettings {
  /// A link's name such as eth0; none counts all of them.
  std::optional<std::string> interface;
  NetworkTileStyle style = NetworkTileStyle::numbers;

  static constexpr auto fields() {
    return std::tuple{optional("interface", &NetworkSettings::interface).titled("Interface"),
                      optional("style", &NetworkSettings::style).titled("Tile")};
  }
  bool operator==(const NetworkSettings&) const = default;
};

} // namespace tavrin
