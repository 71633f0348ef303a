#include "TavrinSettings/Gallery/KindSearch.h"

#include "TavrinCore/Text/FoldedWords.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>
#include <string>

namespace tavrin {
namespace {

bool begins(const std::vector<std::string>& words, const std::string& wanted) {
  return std::ranges::any_of(words, [&](const auto& word) { return word.starts_with(wanted); });
}

/// How near a kind is to what is wanted, the nearest 0; no value where it is not.
std::optional<int> distance(const KindInfo& kind, const std::string& text,
                            const std::vector<std::string>& wanted) {
  const auto title = foldedWords(translation(kind.title));
  if (title.starts_with(text))
    return 0;
  const auto further = wordsOf(foldedWords(fmt::format(
      "{} {} {} {} {}", title, translation(kind.words), kind.title, kind.words, kind.key)));
  const auto purpose = wordsOf(foldedWords(translation(kind.purpose)));
  int far = 1;
  for (const auto& word : wanted) {
    if (begins(further, word))
      continue;
    if (!begins(purpose, word))
      return std::nullopt;
    far = 2;
  }
  return far;
}

} // namespace

std::vector<const KindInfo*> kindsMatching(std::string_view text) {
  const auto whole = foldedWords(text);
  const auto wanted = wordsOf(whole);
  std::vector<std::pair<int, const KindInfo*>> found;
  for (const auto& kind : allKinds())
    if (const auto far = distance(kind, whole, wanted))
      found.emplace_back(*far, &kind);
  std::ranges::stable_sort(found, {}, [](const auto& entry) { return entry.first; });
  std::vector<const KindInfo*> kinds;
  for (const auto& [unused, kind] : found)
    kinds.push_back(kind);
  return kinds;
}

} // namespace tavrin
