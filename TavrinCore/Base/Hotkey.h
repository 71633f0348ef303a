#pragma once

#include "TavrinCore/Base/Coding.h"

#include <cstdint>

namespace tavrin {

/// The modifier keys of a shortcut, as a set of bits. In JSON: the number.
struct HotkeyModifiers {
  std::uint32_t rawValue = 0;

  static const HotkeyModifiers command;
  static const HotkeyModifiers option;
  static const HotkeyModifiers control;
  static const HotkeyModifiers shift;

  constexpr bool contains(HotkeyModifiers other) const {
    return (rawValue & other.rawValue) == other.rawValue;
  }
  friend constexpr HotkeyModifiers operator|(HotkeyModifiers left, HotkeyModifiers right) {
    return {left.rawValue | right.rawValue};
  }

  /// "⌃⌥⇧⌘" less what is not set.
  std::string displaySymbols() const;
  /// Shift alone would take a capital letter from every application.
  constexpr bool isValidForGlobalHotkey() const;

  bool operator==(const HotkeyModifiers&) const = default;
};

inline constexpr HotkeyModifiers HotkeyModifiers::command{1};
inline constexpr HotkeyModifiers HotkeyModifiers::option{2};
inline constexpr HotkeyModifiers HotkeyModifiers::control{4};
inline constexpr HotkeyModifiers HotkeyModifiers::shift{8};

constexpr bool HotkeyModifiers::isValidForGlobalHotkey() const {
  return (rawValue & (command | option | control).rawValue) != 0;
}

inline std::string HotkeyModifiers::displaySymbols() const {
  std::string text;
  for (const auto& [modifier, symbol] : {std::pair{control, "⌃"}, std::pair{option, "⌥"},
                                         std::pair{shift, "⇧"}, std::pair{command, "⌘"}})
    if (contains(modifier))
      text += symbol;
  return text;
}

template <> struct Coder<HotkeyModifiers> {
  static HotkeyModifiers decode(const JSONValue& json) {
    return {Coder<std::uint32_t>::decode(json)};
  }
  static JSONValue encode(HotkeyModifiers value) {
    return Coder<std::uint32_t>::encode(value.rawValue);
  }
};

/// A key with its modifiers, pressed anywhere.
struct Hotkey {
  /// The virtual key code.
  std::uint16_t keyCode = 0;
  HotkeyModifiers modifiers;
  /// Members that this build does not know, written back as they were.
  JSONValue::Object unrecognized = {};

  static constexpr auto fields() {
    return std::tuple{
        required("keyCode", &Hotkey::keyCode).titled("Key code").helped("The virtual key code."),
        required("modifiers", &Hotkey::modifiers)
            .titled("Modifiers")
            .helped("The modifier keys, as a set of bits.")};
  }
  /// Whether they are the same keys.
  bool operator==(const Hotkey& other) const {
    return keyCode == other.keyCode && modifiers == other.modifiers;
  }
};

} // namespace tavrin
