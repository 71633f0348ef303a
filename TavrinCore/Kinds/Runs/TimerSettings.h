#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct TimerSettings {
  static constexpr std::string_view kindKey = "timer";
  static constexpr std::array<double, 5> defaultPresets = {300, 600, 900, 1500, 2700};
  static constexpr std::string_view defaultTintHex = "#FF9F0A";
  /// The colours an editor offers for `tintHex`.
  static constexpr std::array<std::string_view, 8> tints = {
      "#FF9F0A", "#FF453A", "#FF375F", "#BF5AF2", "#5E5CE6", "#0A84FF", "#64D2FF", "#30D158"};

  /// Lengths offered as buttons, in seconds.
  std::vector<double> presets{defaultPresets.begin(), defaultPresets.end()};
  std::string tintHex{defaultTintHex};

  static constexpr auto fields() {
    return std::tuple{optional("presets", &TimerSettings::presets)
                          .titled("Presets")
                          .helped("The lengths that the panel offers as buttons.")
                          .in("s")
                          .ranging(1, 86400),
                      optional("tintHex", &TimerSettings::tintHex)
                          .titled("Colour")
                          .helped("Of the ring and the figures.")
                          .as(FieldRole::colour)};
  }
  bool operator==(const TimerSettings&) const = default;
};

} // namespace tavrin
