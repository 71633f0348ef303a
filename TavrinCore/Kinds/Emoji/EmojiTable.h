#pragma once

#include "TavrinCore/Kinds/Emoji/EmojiHistory.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// All emoji with their names, packed: a few hundred kilobytes for the whole of Unicode and two
/// languages.
class EmojiTable {
public:
  static constexpr std::size_t most = 8192;

  EmojiTable() = default;
  /// From the text of Unicode's "emoji-test.txt", and CLDR annotation documents in the order in
  /// which they give names; all of them give words to search for. What is malformed is left out,
  /// a document that is no XML from its fault on.
  EmojiTable(std::string_view emojiTest, std::span<const std::string> annotations);

  std::size_t size() const { return entries_.size(); }
  bool isEmpty() const { return entries_.empty(); }
  Emoji emoji(std::size_t index) const;
  /// In the language of the first document that has one, else in English.
  std::string_view name(std::size_t index) const;

  struct Group {
    /// Unicode's, in English: "Smileys & Emotion".
    std::string name;
    /// The index of its first emoji; the next group's is its end.
    std::size_t begin = 0;
  };
  const std::vector<Group>& groups() const { return groups_; }

  /// The index of an emoji in whatever tone, with or without variation selectors; no value for what
  /// is none.
  std::optional<std::size_t> find(std::string_view emoji) const;

  /// All that a query finds; all there are for an empty one. Those of `uses` that a whole word or
  /// the beginning of one finds come first, the most used before the others. Then those whose name
  /// or one of whose words it is, those whose name begins with it, those with a beginning of each
  /// of its words in names and in words, and those that have them inside. Among equals what people
  /// use most comes first. A face of characters, ":)", and a word such as "lol" find what they
  /// stand for. Case and accents do not count.
  std::vector<std::uint16_t> search(std::string_view query,
                                    std::span<const EmojiUse> uses = {}) const;

private:
  struct Span {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
  };
  struct Entry {
    Span text;
    Span name;
    /// Folded names, then folded words, each begun by a line break.
    Span searched;
    std::uint32_t namesEnd = 0;
  };
  struct Builder;
  static constexpr std::uint8_t notCommon = 255;

  std::string_view view(Span span) const;
  /// Each one's rank for words; without words all are found.
  std::vector<std::uint8_t> ranks(const std::string& whole) const;

  std::vector<Entry> entries_;
  std::vector<Group> groups_;
  /// What the entries' spans are of. Behind the text of an emoji with tones stands its light form.
  std::string pool_;
  /// Each one's place among the emoji that people use most.
  std::vector<std::uint8_t> commonness_;
};

} // namespace tavrin
