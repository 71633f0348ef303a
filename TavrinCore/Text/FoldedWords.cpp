#include "TavrinCore/Text/FoldedWords.h"

#include <algorithm>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace tavrin {

std::string foldedWords(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* decomposition = icu::Normalizer2::getNFKDInstance(status);
  auto given = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  const icu::UnicodeString parts =
      U_SUCCESS(status) ? decomposition->normalize(given.foldCase(), status) : given;
  icu::UnicodeString folded;
  bool isGap = false;
  for (int32_t i = 0; i < parts.length(); i = parts.moveIndex32(i, 1)) {
    const UChar32 point = parts.char32At(i);
    const auto type = u_charType(point);
    if (type == U_NON_SPACING_MARK)
      continue;
    if (!u_isalnum(point) && type != U_COMBINING_SPACING_MARK) {
      isGap = !folded.isEmpty();
      continue;
    }
    if (isGap)
      folded.append(u' ');
    isGap = false;
    folded.append(point);
  }
  std::string utf8;
  folded.toUTF8String(utf8);
  return utf8;
}

std::vector<std::string> wordsOf(std::string_view folded) {
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin < folded.size();) {
    const auto end = std::min(folded.find(' ', begin), folded.size());
    if (end > begin)
      words.emplace_back(folded.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

} // namespace tavrin
