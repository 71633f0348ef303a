#include "TavrinCore/Kinds/Emoji/EmojiShorthands.h"
#include "TavrinCore/Kinds/Emoji/EmojiTable.h"
#include "TavrinCore/Text/FoldedWords.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>

namespace tavrin {
namespace {

enum Rank : std::uint8_t { isName, isWord, nameBegins, inName, inWords, inside, none };

bool hasWordBeginning(std::string_view text, std::string_view word) {
  for (auto at = text.find(word); at != text.npos; at = text.find(word, at + 1))
    if (at == 0 || text[at - 1] == ' ' || text[at - 1] == '\n')
      return true;
  return false;
}

/// Whether one of `lines` is `line`, and whether one begins with it; `line` begins with a break.
std::pair<bool, bool> lineOf(std::string_view lines, std::string_view line) {
  bool begins = false;
  for (auto at = lines.find(line); at != lines.npos; at = lines.find(line, at + 1)) {
    const auto end = at + line.size();
    if (end == lines.size() || lines[end] == '\n')
      return {true, true};
    begins = true;
  }
  return {false, begins};
}

/// `all` is `names` with the words behind them.
Rank rank(std::string_view names, std::string_view all, const std::vector<std::string>& query,
          const std::string& whole) {
  Rank worst = inName;
  for (const auto& word : query) {
    const auto at = all.find(word);
    if (at == all.npos)
      return none;
    const Rank here = hasWordBeginning(names, word) ? inName
                      : hasWordBeginning(all, word) ? inWords
                                                    : inside;
    worst = std::max(worst, here);
  }
  if (worst == inside)
    return worst;
  const std::string line = "\n" + whole;
  const auto [nameIs, nameStarts] = lineOf(names, line);
  if (nameIs)
    return isName;
  if (lineOf(all, line).first)
    return isWord;
  return nameStarts ? nameBegins : worst;
}

} // namespace

std::vector<std::uint8_t> EmojiTable::ranks(const std::string& whole) const {
  const auto words = wordsOf(whole);
  std::vector<std::uint8_t> ranks(entries_.size(), inName);
  for (std::size_t i = 0; i < entries_.size() && !words.empty(); ++i) {
    const Entry& entry = entries_[i];
    ranks[i] =
        rank(view({entry.searched.begin, entry.namesEnd}), view(entry.searched), words, whole);
  }
  return ranks;
}

std::vector<std::uint16_t> EmojiTable::search(std::string_view query,
                                              std::span<const EmojiUse> uses) const {
  constexpr std::size_t longestQuery = 100;
  std::vector<std::uint16_t> results;
  const bool isEmpty = trimmed(query).empty();
  const auto meant = emojiOfShorthand(query);
  const std::string whole = foldedWords(query.substr(0, longestQuery));
  if (!meant.empty() && isEmojiFace(query)) {
    for (const auto emoji : meant)
      if (const auto found = find(emoji))
        results.push_back(static_cast<std::uint16_t>(*found));
    return results;
  }
  if (wordsOf(whole).empty() && !isEmpty) {
    // An emoji itself, perhaps.
    if (const auto found = find(trimmed(query)))
      results.push_back(static_cast<std::uint16_t>(*found));
    return results;
  }
  auto ranks = this->ranks(whole);
  for (const auto emoji : meant)
    if (const auto found = find(emoji))
      ranks[*found] = isName;
  std::vector<int> used(isEmpty ? 0 : entries_.size());
  for (const auto& use : uses)
    if (const auto found = isEmpty ? std::nullopt : find(use.emoji);
        found && ranks[*found] < inside)
      used[*found] = use.count;
  for (std::size_t i = 0; i < entries_.size(); ++i)
    if (ranks[i] != none)
      results.push_back(static_cast<std::uint16_t>(i));
  if (!isEmpty)
    std::ranges::stable_sort(results, [&](std::uint16_t left, std::uint16_t right) {
      // Among names and words that are the whole query, what is common goes before what is a name.
      const auto place = [&](std::uint16_t index) {
        const std::uint8_t coarse = std::max<std::uint8_t>(ranks[index], isWord);
        return std::tuple(-used[index], coarse, commonness_[index], ranks[index]);
      };
      return place(left) < place(right);
    });
  return results;
}

} // namespace tavrin
