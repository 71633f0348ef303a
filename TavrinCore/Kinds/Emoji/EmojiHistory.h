#pragma once

#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"

namespace tavrin {

/// One emoji, in UTF-8.
struct Emoji {
  std::string text;
  /// The same in the lightest of the five tones; empty for one that has none.
  std::string light;

  std::string inTone(EmojiSkinTone tone) const;

  static constexpr auto fields() {
    return std::tuple{required("emoji", &Emoji::text), optional("light", &Emoji::light)};
  }
  bool operator==(const Emoji&) const = default;
};

/// How often an emoji was used.
struct EmojiUse {
  /// Without tones and variation selectors.
  std::string emoji;
  int count = 0;

  static constexpr auto fields() {
    return std::tuple{required("emoji", &EmojiUse::emoji), required("count", &EmojiUse::count)};
  }
  bool operator==(const EmojiUse&) const = default;
};

/// The emoji that all emoji widgets of a user share, newest first.
struct EmojiHistory {
  static constexpr int leastLimit = 4;
  static constexpr int mostLimit = 60;
  static constexpr std::size_t mostUses = 200;
  /// Beyond it all counts are halved, so that what is used these days overtakes.
  static constexpr int mostCounted = 100;

  int version = 1;
  std::vector<Emoji> recents;
  /// The most used first.
  std::vector<EmojiUse> uses;

  /// Puts `emoji` at the front, keeps `limit` (4 to 60), and counts the use.
  void add(const Emoji& emoji, int limit);
  /// Drops what can be no emoji: empty texts, long ones, none of UTF-8; and all beyond the bounds.
  void repair();
  void clear();

  static constexpr auto fields() {
    return std::tuple{optional("version", &EmojiHistory::version),
                      required("recents", &EmojiHistory::recents),
                      optional("uses", &EmojiHistory::uses)};
  }
  bool operator==(const EmojiHistory&) const = default;

private:
  void count(const std::string& key);
};

/// What one finds in place of recents before any emoji was used.
const std::vector<Emoji>& emojiStarters();

/// An emoji in UTF-8 without its skin tones and variation selectors.
std::string emojiKey(std::string_view emoji);

} // namespace tavrin
