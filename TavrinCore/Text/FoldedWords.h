#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// `text` (UTF-8) as it is searched: in lower case, without accents, its words parted by single
/// spaces.
std::string foldedWords(std::string_view text);

/// The words of a folded text.
std::vector<std::string> wordsOf(std::string_view folded);

} // namespace tavrin
