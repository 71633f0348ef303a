#include "TavrinCore/Kinds/Emoji/EmojiShorthands.h"

#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

constexpr auto shorthands = std::to_array<EmojiShorthand>(
    {{":)", "🙂"},    {":))", "😊"},     {":]", "🙂"},   {"(:", "🙂"},   {":d", "😀"},
     {"xd", "😆"},       {":')", "😂"},     {":'d", "😂"},     {":3", "😺"},      {";)", "😉"},
     {";d", "😜"},       {":p", "😛"},      {";p", "😜"},      {"xp", "😝"},      {":b", "😛"},
     {":(", "🙁"},    {":((", "😞"},     {":[", "🙁"},   {"):", "🙁"},   {":'(", "😢"},
     {":,(", "😢"},      {"t_t", "😭"},     {"t.t", "😭"},     {";_;", "😭"},     {":o", "😮"},
     {"o_o", "😳"},      {"o.o", "😳"},     {":/", "😕"},      {":\\", "😕"},     {":|", "😐"},
     {"-_-", "😑"},      {":s", "😖"},      {":x", "🤐"},   {":$", "😳"},      {":*", "😘"},
     {";*", "😘"},       {"<3", "❤️"}, {"</3", "💔"},     {"♥", "❤️"},  {"b)", "😎"},
     {"8)", "😎"},       {"o:)", "😇"},     {"0:)", "😇"},     {">:)", "😈"},     {"3:)", "😈"},
     {">:(", "😠"},      {":@", "😡"},      {"d:", "😧"},      {":'", "😢"},      {"^^", "😊"},
     {"^_^", "😊"},      {"\\o/", "🙌"},    {"o/", "👋"},      {"+1", "👍"},      {"-1", "👎"},
     {"!", "❗"},        {"!!", "‼️"}, {"?", "❓"},       {"!?", "⁉️"}, {"lol", "😂"},
     {"lol", "🤣"},   {"rofl", "🤣"}, {"lmao", "🤣"}, {"haha", "😂"},    {"hihi", "😄"},
     {"omg", "😱"},      {"wtf", "🤬"},  {"wow", "😮"},     {"ily", "🥰"},  {"xoxo", "😘"},
     {"thx", "🙏"},      {"ty", "🙏"},      {"pls", "🙏"},     {"ok", "👌"},      {"yes", "👍"},
     {"no", "👎"},       {"hi", "👋"},      {"bye", "👋"},     {"gg", "👏"},      {"idk", "🤷"},
     {"smh", "🤦"},   {"brb", "🏃"},     {"zzz", "😴"},     {"lit", "🔥"},     {"hug", "🤗"},
     {"congrats", "🎉"}, {"hbd", "🎂"},     {"cool", "😎"}});

constexpr auto common = std::to_array<std::string_view>(
    {"😂",      "❤️", "🤣", "👍",      "😭",    "🙏",      "😘",      "🥰", "😍",      "😊",
     "🎉",      "😁",      "💕",    "🥺",   "😅",    "🔥",      "☺️", "🤦", "♥️", "🤷",
     "🙄",   "😆",      "🤗", "😉",      "🎂",    "🤔",   "👏",      "🙂", "😳",      "🥳",
     "😎",      "👌",      "💜",    "😔",      "💪",    "✨",      "💖",      "👀",    "😋",      "😏",
     "😢",      "👉",      "💗",    "😩",      "💯",    "🌹",      "💞",      "🎈",    "💙",      "😃",
     "😡",      "💐",      "😜",    "🙈",      "🤞", "😄",      "🤤",   "🙌",    "🤪",   "❣️",
     "😀",      "💋",      "💀",    "👇",      "💔",    "😌",      "💓",      "🤩", "🙃",   "😬",
     "😱",      "😴",      "🤭", "😐",      "🌞",    "😒",      "😇",      "🌸",    "😈",      "🎶",
     "✌️", "🎊",      "🥵", "😞",      "💚",    "☀️", "🖤",   "💰",    "😚",      "👑",
     "🎁",      "💥",      "🙋",    "☹️", "😑",    "🥴",   "👈",      "💩",    "✅",      "👋"});

constexpr bool isLetterOrDigit(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || static_cast<unsigned char>(character) >= 0x80;
}

/// In lower case, with ":" for eyes of "=", and without a nose.
std::string plain(std::string_view query) {
  std::string text = asciiLowered(trimmed(query));
  if (text.size() > 1 && text[0] == '=')
    text[0] = ':';
  const auto nose = text.find('-');
  if (nose != text.npos && nose > 0 && nose + 1 < text.size() &&
      std::string_view(":;8bx'").find(text[nose - 1]) != std::string_view::npos)
    text.erase(nose, 1);
  return text;
}

} // namespace

bool isEmojiFace(std::string_view query) {
  return !std::ranges::all_of(trimmed(query), isLetterOrDigit);
}

std::vector<std::string_view> emojiOfShorthand(std::string_view query) {
  constexpr std::size_t longest = 12;
  std::vector<std::string_view> found;
  if (trimmed(query).empty() || query.size() > longest)
    return found;
  const std::string text = plain(query);
  const auto add = [&](const EmojiShorthand& shorthand) {
    if (std::ranges::find(found, shorthand.emoji) == found.end())
      found.push_back(shorthand.emoji);
  };
  for (const auto& shorthand : shorthands)
    if (shorthand.typed == text)
      add(shorthand);
  if (isEmojiFace(text))
    for (const auto& shorthand : shorthands)
      if (shorthand.typed.starts_with(text))
        add(shorthand);
  return found;
}

std::span<const std::string_view> commonEmoji() {
  return common;
}

} // namespace tavrin
