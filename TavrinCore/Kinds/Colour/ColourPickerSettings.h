#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Dock/Hotkey.h"

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

struct ColourPickerSettings {
  ColourFormat format = ColourFormat::hex;
  bool copiesOnPick = true;
  int historyLimit = 24;
  std::optional<Hotkey> hotkey;

  static constexpr auto fields() {
    return std::tuple{
        optional("format", &ColourPickerSettings::format).titled("Format"),
        optional("copiesOnPick", &ColourPickerSettings::copiesOnPick).titled("Copy what is picked"),
        optional("historyLimit", &ColourPickerSettings::historyLimit)
            .titled("Colours kept")
            .clamped(4, 60),
        optional("hotkey", &ColourPickerSettings::hotkey).titled("Shortcut")};
  }
  bool operator==(const ColourPickerSettings&) const = default;
};

} // namespace tavrin
