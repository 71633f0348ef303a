#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class NetworkTileStyle { numbers, chart };

template <> struct EnumNames<NetworkTileStyle> {
  static constexpr auto names = std::to_array<std::pair<NetworkTileStyle, std::string_view>>(
      {{NetworkTileStyle::numbers, "numbers"}, {NetworkTileStyle::chart, "chart"}});
};

template <> struct EnumTitles<NetworkTileStyle> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Numbers"), marked("Chart")});
};

struct NetworkSettings {
  static constexpr std::string_view kindKey = "network";

  /// A link's name such as eth0; none counts all of them.
  std::optional<std::string> interface;
  NetworkTileStyle style = NetworkTileStyle::numbers;

  static constexpr auto fields() {
    return std::tuple{optional("interface", &NetworkSettings::interface)
                          .titled("Interface")
                          .helped("Which link is counted.")
                          .as(FieldRole::networkLink)
                          .absentAs("All of them"),
                      optional("style", &NetworkSettings::style)
                          .titled("Tile")
                          .helped("How the traffic is drawn.")};
  }
  bool operator==(const NetworkSettings&) const = default;
};

} // namespace tavrin
