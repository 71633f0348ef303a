#include "TavrinCore/Base/Text.h"

#include <unicode/ustring.h>

#include <cstdint>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace tavrin {

std::string_view trimmed(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  std::int32_t start = 0;
  while (start < length) {
    std::int32_t next = start;
    UChar32 character;
    U8_NEXT(bytes, next, length, character);
    if (!u_isUWhiteSpace(character))
      break;
    start = next;
  }
  std::int32_t end = length;
  while (end > start) {
    std::int32_t previous = end;
    UChar32 character;
    U8_PREV(bytes, start, previous, character);
    if (!u_isUWhiteSpace(character))
      break;
    end = previous;
  }
  return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

std::string_view beginning(std::string_view text, std::size_t longest) {
  if (text.size() <= longest)
    return text;
  while (longest > 0 && U8_IS_TRAIL(text[longest]))
    --longest;
  return text.substr(0, longest);
}

bool isUTF8(std::string_view text) {
  int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<int32_t>(text.size()), &error);
  return U_SUCCESS(error) || error == U_BUFFER_OVERFLOW_ERROR;
}

} // namespace tavrin
