#include "TavrinCore/Kinds/Emoji/EmojiHistory.h"

#include "TavrinCore/Kinds/Emoji/EmojiTone.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <functional>

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
  count(key);
  repair();
  const auto most = static_cast<std::size_t>(std::clamp(limit, leastLimit, mostLimit));
  if (recents.size() > most)
    recents.resize(most);
}

void EmojiHistory::count(const std::string& key) {
  const auto known = std::ranges::find(uses, key, &EmojiUse::emoji);
  EmojiUse use = known != uses.end() ? *known : EmojiUse{key, 0};
  if (known != uses.end())
    uses.erase(known);
  ++use.count;
  // Before those used as often, for it is the newest of them.
  const auto place =
      std::ranges::find_if(uses, [&](const EmojiUse& other) { return other.count <= use.count; });
  uses.insert(place, use);
  if (uses.front().count <= mostCounted)
    return;
  for (EmojiUse& each : uses)
    each.count /= 2;
  std::erase_if(uses, [](const EmojiUse& each) { return each.count == 0; });
}

void EmojiHistory::repair() {
  constexpr std::size_t longest = 64;
  const auto isFit = [](const std::string& text) { return text.size() <= longest && isUTF8(text); };
  std::erase_if(recents, [&](const Emoji& emoji) {
    return emoji.text.empty() || !isFit(emoji.text) || !isFit(emoji.light);
  });
  if (recents.size() > static_cast<std::size_t>(mostLimit))
    recents.resize(mostLimit);
  std::erase_if(uses, [&](const EmojiUse& use) {
    return use.emoji.empty() || !isFit(use.emoji) || use.count < 1;
  });
  for (EmojiUse& use : uses)
    use.count = std::min(use.count, mostCounted);
  std::ranges::stable_sort(uses, std::greater{}, &EmojiUse::count);
  if (uses.size() > mostUses)
    uses.resize(mostUses);
}

void EmojiHistory::clear() {
  recents.clear();
  uses.clear();
}

const std::vector<Emoji>& emojiStarters() {
  static const std::vector<Emoji> starters{{"👍", "👍🏻"}, {"❤️", ""}, {"😂", ""}, {"🎉", ""},
                                           {"🙏", "🙏🏻"}, {"😊", ""},      {"🔥", ""}, {"👀", ""}};
  return starters;
}

} // namespace tavrin
