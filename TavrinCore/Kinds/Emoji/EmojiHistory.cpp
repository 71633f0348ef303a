#include "TavrinCore/Kinds/Emoji/EmojiHistory.h"

#include "TavrinCore/Kinds/Emoji/EmojiTone.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>

namespace tavrin {

std::string emojiTones(std::string_view emoji) {
  std::string found;
  for (auto at = emoji.find(toneLead); at != emoji.npos; at = emoji.find(toneLead, at + 1))
    if (at + 3 < emoji.size() && isToneByte(emoji[at + 3]))
      found += emoji[at + 3];
  return found;
}

std::string emojiKey(std::string_view emoji) {
  std::string key;
  while (!emoji.empty()) {
    if (emoji.starts_with(variationSelector)) {
      emoji.remove_prefix(variationSelector.size());
    } else if (emoji.starts_with(toneLead) && emoji.size() > 3 && isToneByte(emoji[3])) {
      emoji.remove_prefix(4);
    } else {
      key += emoji.front();
      emoji.remove_prefix(1);
    }
  }
  return key;
}

std::string Emoji::inTone(EmojiSkinTone tone) const {
  if (tone == EmojiSkinTone::standard || light.empty())
    return text;
  std::string toned = light;
  const int steps = static_cast<int>(tone) - static_cast<int>(EmojiSkinTone::light);
  for (auto at = toned.find(toneLead); at != toned.npos; at = toned.find(toneLead, at + 1))
    if (at + 3 < toned.size() && toned[at + 3] == lightestTone)
      toned[at + 3] = static_cast<char>(lightestTone + steps);
  return toned;
}

void EmojiHistory::add(const Emoji& emoji, int limit) {
  const std::string key = emojiKey(emoji.text);
  std::erase_if(recents, [&](const Emoji& other) { return emojiKey(other.text) == key; });
  recents.insert(recents.begin(), emoji);
  repair();
  const auto most = static_cast<std::size_t>(std::clamp(limit, leastLimit, mostLimit));
  if (recents.size() > most)
    recents.resize(most);
}

void EmojiHistory::repair() {
  constexpr std::size_t longest = 64;
  const auto isFit = [](const std::string& text) { return text.size() <= longest && isUTF8(text); };
  std::erase_if(recents, [&](const Emoji& emoji) {
    return emoji.text.empty() || !isFit(emoji.text) || !isFit(emoji.light);
  });
  if (recents.size() > static_cast<std::size_t>(mostLimit))
    recents.resize(mostLimit);
}

const std::vector<Emoji>& emojiStarters() {
  static const std::vector<Emoji> starters{{"👍", "👍🏻"}, {"❤️", ""}, {"😂", ""}, {"🎉", ""},
                                           {"🙏", "🙏🏻"}, {"😊", ""},      {"🔥", ""}, {"👀", ""}};
  return starters;
}

} // namespace tavrin
