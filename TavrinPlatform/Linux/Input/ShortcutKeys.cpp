#include "TavrinPlatform/Linux/Input/ShortcutKeys.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

struct Key {
  std::uint16_t virtualCode;
  /// The kernel's number; X adds eight to it.
  std::uint8_t kernelCode;
  /// As the keyboard's own tables call its symbol.
  const char* name;
};

constexpr std::array<Key, 66> keys = {
    {{0, 30, "a"},      {1, 31, "s"},          {2, 32, "d"},
     {3, 33, "f"},      {4, 35, "h"},          {5, 34, "g"},
     {6, 44, "z"},      {7, 45, "x"},          {8, 46, "c"},
     {9, 47, "v"},      {11, 48, "b"},         {12, 16, "q"},
     {13, 17, "w"},     {14, 18, "e"},         {15, 19, "r"},
     {16, 21, "y"},     {17, 20, "t"},         {18, 2, "1"},
     {19, 3, "2"},      {20, 4, "3"},          {21, 5, "4"},
     {22, 7, "6"},      {23, 6, "5"},          {24, 13, "equal"},
     {25, 10, "9"},     {26, 8, "7"},          {27, 12, "minus"},
     {28, 9, "8"},      {29, 11, "0"},         {30, 27, "bracketright"},
     {31, 24, "o"},     {32, 22, "u"},         {33, 26, "bracketleft"},
     {34, 23, "i"},     {35, 25, "p"},         {36, 28, "Return"},
     {37, 38, "l"},     {38, 36, "j"},         {39, 40, "apostrophe"},
     {40, 37, "k"},     {41, 39, "semicolon"}, {42, 43, "backslash"},
     {43, 51, "comma"}, {44, 53, "slash"},     {45, 49, "n"},
     {46, 50, "m"},     {47, 52, "period"},    {48, 15, "Tab"},
     {49, 57, "space"}, {50, 41, "grave"},     {51, 14, "BackSpace"},
     {53, 1, "Escape"}, {96, 63, "F5"},        {97, 64, "F6"},
     {98, 65, "F7"},    {99, 61, "F3"},        {100, 66, "F8"},
     {101, 67, "F9"},   {103, 87, "F11"},      {109, 68, "F10"},
     {111, 88, "F12"},  {118, 62, "F4"},       {120, 60, "F2"},
     {122, 59, "F1"},   {123, 105, "Left"},    {124, 106, "Right"}}};

const Key* keyOf(std::uint16_t virtualCode) {
  const auto* found = std::ranges::find(keys, virtualCode, &Key::virtualCode);
  return found == keys.end() ? nullptr : found;
}

} // namespace

std::optional<std::uint8_t> x11KeyCode(std::uint16_t virtualKeyCode) {
  constexpr std::uint8_t offset = 8;
  const auto* key = keyOf(virtualKeyCode);
  return key == nullptr ? std::nullopt
                        : std::optional(static_cast<std::uint8_t>(key->kernelCode + offset));
}

std::optional<std::string> portalTrigger(const Hotkey& hotkey) {
  const auto* key = keyOf(hotkey.keyCode);
  if (key == nullptr)
    return std::nullopt;
  std::string trigger;
  for (const auto& [modifier, name] :
       {std::pair{HotkeyModifiers::control, "CTRL+"}, std::pair{HotkeyModifiers::option, "ALT+"},
        std::pair{HotkeyModifiers::shift, "SHIFT+"}, std::pair{HotkeyModifiers::command, "LOGO+"}})
    if (hotkey.modifiers.contains(modifier))
      trigger += name;
  return trigger + key->name;
}

} // namespace tavrin
