#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// What people type for an emoji: a face of characters, ":)", or a word that no name has, "lol".
struct EmojiShorthand {
  std::string_view typed;
  std::string_view emoji;
};

/// The emoji that `query` stands for, or, for a query of other characters than letters, whose
/// shorthands begin with it; noses and case do not count: ":-D" is ":d".
std::vector<std::string_view> emojiOfShorthand(std::string_view query);

/// Whether a query is more than letters and digits, so that only shorthands can be meant by it.
bool isEmojiFace(std::string_view query);

/// Emoji that many people use, the likelier first. A list of our own: nothing measured.
std::span<const std::string_view> commonEmoji();

} // namespace tavrin
