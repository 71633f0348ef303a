#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct NoteSettings {
  static constexpr std::string_view kindKey = "note";

  /// A warm yellow.
  static constexpr std::string_view defaultColorHex = "#FBBF24";

  std::string text;
  std::string colorHex{defaultColorHex};

  static constexpr auto fields() {
    return std::tuple{optional("text", &NoteSettings::text)
                          .titled("Text")
                          .helped("What is written on the note.")
                          .as(FieldRole::severalLines),
                      optional("colorHex", &NoteSettings::colorHex)
                          .titled("Paper colour")
                          .helped("The text keeps its contrast on it.")
                          .as(FieldRole::colour)};
  }
  bool operator==(const NoteSettings&) const = default;
};

} // namespace tavrin
