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

/// The emoji that all emoji widgets of a user share, newest first.
struct EmojiHistory {
  static constexpr int leastLimit = 4;
  static constexpr int mostLimit = 60;

  int version = 1;
  std::vector<Emoji> recents;

  /// Puts `emoji` at the front and keeps `limit` (4 to 60).
  void add(const Emoji& emoji, int limit);
  /// Drops what can be no emoji: empty texts, long ones, none of UTF-8; and all beyond `mostLimit`.
  void repair();

  static constexpr auto fields() {
    return std::tuple{optional("version", &EmojiHistory::version),
                      required("recents", &EmojiHistory::recents)};
  }
  bool operator==(const EmojiHistory&) const = default;
};

/// What one finds in place of recents before any emoji was used.
const std::vector<Emoji>& emojiStarters();

/// An emoji in UTF-8 without its skin tones and variation selectors.
std::string emojiKey(std::string_view emoji);

} // namespace tavrin
