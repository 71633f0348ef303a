#include "TavrinHost/FoldedName.h"

#include <unicode/unistr.h>

namespace tavrin {

std::string folded(std::string_view text) {
  std::string result;
  icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())))
      .foldCase()
      .toUTF8String(result);
  return result;
}

} // namespace tavrin
