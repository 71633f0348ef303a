#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Base/Hotkey.h"

namespace tavrin {

enum class ColourFormat { hex, hexLowercase, rgb, hsl, swiftUI, nsColor, cssVariable };

template <> struct EnumNames<ColourFormat> {
  static constexpr auto names = std::to_array<std::pair<ColourFormat, std::string_view>>(
      {{ColourFormat::hex, "hex"},
       {ColourFormat::hexLowercase, "hexLowercase"},
       {ColourFormat::rgb, "rgb"},
       {ColourFormat::hsl, "hsl"},
       {ColourFormat::swiftUI, "swiftUI"},
       {ColourFormat::nsColor, "nsColor"},
       {ColourFormat::cssVariable, "cssVariable"}});
};

template <> struct EnumTitles<ColourFormat> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Hex"), marked("Hex, lowercase"), marked("CSS rgb()"), marked("CSS hsl()"),
       marked("SwiftUI Color"), marked("NSColor"), marked("CSS variable")});
};

struct ColourPickerSettings {
  static constexpr std::string_view kindKey = "colourPicker";

  ColourFormat format = ColourFormat::hex;
  bool copiesOnPick = true;
  int historyLimit = 24;
  std::optional<Hotkey> hotkey;

  static constexpr auto fields() {
    return std::tuple{optional("format", &ColourPickerSettings::format)
                          .titled("Format")
                          .helped("How a colour is written when it is copied."),
                      optional("copiesOnPick", &ColourPickerSettings::copiesOnPick)
                          .titled("Copy what is picked")
                          .helped("Puts each picked colour on the clipboard at once."),
                      optional("historyLimit", &ColourPickerSettings::historyLimit)
                          .titled("Colours kept")
                          .helped("The most colours in the history.")
                          .clamped(4, 60),
                      optional("hotkey", &ColourPickerSettings::hotkey)
                          .titled("Shortcut")
                          .helped("Keys that pick a colour from wherever you are.")
                          .as(FieldRole::shortcut)
                          .absentAs("None")};
  }
  bool operator==(const ColourPickerSettings&) const = default;
};

} // namespace tavrin
