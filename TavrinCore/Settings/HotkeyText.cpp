#include "TavrinCore/Settings/HotkeyText.h"

#include "TavrinCore/Settings/SettingError.h"
#include "TavrinCore/Text/Texts.h"

#include <array>
#include <fmt/format.h>
#include <vector>

namespace tavrin {
namespace {

struct KeyName {
  std::string_view name;
  std::uint16_t code;
};

/// Virtual key codes of the ANSI keyboard.
constexpr std::array keyNames = {
    KeyName{"a", 0},      KeyName{"b", 11},      KeyName{"c", 8},      KeyName{"d", 2},
    KeyName{"e", 14},     KeyName{"f", 3},       KeyName{"g", 5},      KeyName{"h", 4},
    KeyName{"i", 34},     KeyName{"j", 38},      KeyName{"k", 40},     KeyName{"l", 37},
    KeyName{"m", 46},     KeyName{"n", 45},      KeyName{"o", 31},     KeyName{"p", 35},
    KeyName{"q", 12},     KeyName{"r", 15},      KeyName{"s", 1},      KeyName{"t", 17},
    KeyName{"u", 32},     KeyName{"v", 9},       KeyName{"w", 13},     KeyName{"x", 7},
    KeyName{"y", 16},     KeyName{"z", 6},       KeyName{"0", 29},     KeyName{"1", 18},
    KeyName{"2", 19},     KeyName{"3", 20},      KeyName{"4", 21},     KeyName{"5", 23},
    KeyName{"6", 22},     KeyName{"7", 26},      KeyName{"8", 28},     KeyName{"9", 25},
    KeyName{"space", 49}, KeyName{"return", 36}, KeyName{"tab", 48},   KeyName{"escape", 53},
    KeyName{"left", 123}, KeyName{"right", 124}, KeyName{"f1", 122},   KeyName{"f2", 120},
    KeyName{"f3", 99},    KeyName{"f4", 118},    KeyName{"f5", 96},    KeyName{"f6", 97},
    KeyName{"f7", 98},    KeyName{"f8", 100},    KeyName{"f9", 101},   KeyName{"f10", 109},
    KeyName{"f11", 103},  KeyName{"f12", 111},   KeyName{"minus", 27}, KeyName{"equal", 24},
    KeyName{"comma", 43}, KeyName{"period", 47}, KeyName{"slash", 44}, KeyName{"grave", 50},
};

/// Keys whose caps bear a word or a sign.
constexpr std::array<std::pair<std::string_view, const char*>, 12> keyWords = {{
    {"space", marked("Space")},
    {"return", marked("Return")},
    {"tab", marked("Tab")},
    {"escape", marked("Escape")},
    {"left", marked("Left")},
    {"right", marked("Right")},
    {"minus", "-"},
    {"equal", "="},
    {"comma", ","},
    {"period", "."},
    {"slash", "/"},
    {"grave", "`"},
}};

/// Empty for a key without one.
std::string nameOf(std::uint16_t code) {
  for (const auto& key : keyNames)
    if (key.code == code)
      return std::string(key.name);
  return {};
}

char capital(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
}

std::optional<HotkeyModifiers> modifierNamed(std::string_view word) {
  for (const auto& [name, modifier] :
       {std::pair{"command", HotkeyModifiers::command}, std::pair{"cmd", HotkeyModifiers::command},
        std::pair{"super", HotkeyModifiers::command}, std::pair{"option", HotkeyModifiers::option},
        std::pair{"alt", HotkeyModifiers::option}, std::pair{"control", HotkeyModifiers::control},
        std::pair{"ctrl", HotkeyModifiers::control}, std::pair{"shift", HotkeyModifiers::shift}})
    if (word == name)
      return modifier;
  return std::nullopt;
}

std::vector<std::string> parts(std::string_view text) {
  std::vector<std::string> words(1);
  for (const char each : text) {
    const char c = each >= 'A' && each <= 'Z' ? static_cast<char>(each + 32) : each;
    if (c == '+')
      words.emplace_back();
    else
      words.back() += c;
  }
  return words;
}

using ModifierWord = std::pair<HotkeyModifiers, const char*>;

[[maybe_unused]] constexpr std::array<ModifierWord, 3> macWords = {
    {{HotkeyModifiers::control, marked("control")},
     {HotkeyModifiers::option, marked("option")},
     {HotkeyModifiers::command, marked("command")}}};
constexpr std::array<ModifierWord, 4> desktopWords = {
    {{HotkeyModifiers::control, marked("Ctrl")},
     {HotkeyModifiers::option, marked("Alt")},
     {HotkeyModifiers::shift, marked("Shift")},
     {HotkeyModifiers::command, marked("Super")}}};

/// What is written on the keys of this desktop's keyboards.
std::string modifierWord(HotkeyModifiers modifier) {
  for (const auto& [known, word] : TAVRIN_MODIFIER_WORDS)
    if (known.contains(modifier))
      return translated(word);
  return {};
}

HotkeyModifiers required(const std::string& word) {
  const auto modifier = modifierNamed(word);
  if (!modifier)
    throw SettingError(
        translated("\"{word}\" is no modifier; they are control, option, shift and command",
                   {{"word", word}}));
  return *modifier;
}

void requireGlobal(HotkeyModifiers modifiers, std::string_view text) {
  if (!modifiers.isValidForGlobalHotkey())
    throw SettingError(
        translated("\"{text}\" needs {control}, {option} or {command}: it would be taken from "
                   "every application",
                   {{"text", text},
                    {"control", modifierWord(HotkeyModifiers::control)},
                    {"option", modifierWord(HotkeyModifiers::option)},
                    {"command", modifierWord(HotkeyModifiers::command)}}));
}

} // namespace

HotkeyModifiers modifiersFromText(std::string_view text) {
  HotkeyModifiers modifiers;
  for (const auto& word : parts(text))
    modifiers = modifiers | required(word);
  requireGlobal(modifiers, text);
  return modifiers;
}

Hotkey hotkeyFromText(std::string_view text) {
  auto words = parts(text);
  const auto* key = keyNames.begin();
  while (key != keyNames.end() && key->name != words.back())
    ++key;
  if (key == keyNames.end())
    throw SettingError(translated("\"{word}\" is no key", {{"word", words.back()}}));
  words.pop_back();
  Hotkey hotkey{key->code, {}};
  for (const auto& word : words)
    hotkey.modifiers = hotkey.modifiers | required(word);
  requireGlobal(hotkey.modifiers, text);
  return hotkey;
}

std::string hotkeySymbols(const Hotkey& hotkey) {
  const auto modifiers = hotkey.modifiers.displaySymbols();
  auto name = nameOf(hotkey.keyCode);
  if (name.empty())
    return translated("{modifiers}key {code}",
                      {{"modifiers", modifiers}, {"code", hotkey.keyCode}});
  if (name.size() <= 3 && name != "tab")
    name[0] = capital(name[0]);
  return modifiers + name;
}

std::string hotkeyWords(const Hotkey& hotkey) {
  std::string text;
  for (const auto& [modifier, name] : desktopWords)
    if (hotkey.modifiers.contains(modifier))
      text.append(translated(name)).append("+");
  auto name = nameOf(hotkey.keyCode);
  if (name.empty())
    return translated("{modifiers}key {code}", {{"modifiers", text}, {"code", hotkey.keyCode}});
  for (const auto& [plain, shown] : keyWords)
    if (name == plain)
      return text + translated(shown);
  name[0] = capital(name[0]);
  return text + name;
}

std::string hotkeyText(const Hotkey& hotkey) {
  return TAVRIN_HOTKEY_TEXT(hotkey);
}

} // namespace tavrin
