#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct NoteSettings {
  /// A warm yellow.
  static constexpr std::string_view defaultColorHex = "#FBBF24";

  std::string text;
  std::string colorHex{defaultColorHex};

  static constexpr auto fields() {
    return std::tuple{optional("text", &NoteSettings::text).titled("Text"),
                      optional("colorHex", &NoteSettings::colorHex).titled("Paper colour")};
  }
  bool operator==(const NoteSettings&) const = default;
};

} // namespace tavrin
