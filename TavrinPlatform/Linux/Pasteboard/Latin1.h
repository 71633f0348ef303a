#pragma once

#include "TavrinCore/Text/CodePoints.h"

#include <string>
#include <string_view>

namespace tavrin {

inline bool isUTF8(std::string_view text) {
  bool isWhole = true;
  forEachCharacter(text, [&](auto character, std::string_view) {
    isWhole = character >= 0;
    return isWhole;
  });
  return isWhole;
}

/// Text of the target STRING, which is Latin-1 by the rules of the selections, in UTF-8. Some
/// programs answer in UTF-8 all the same, which stays. One that `isCut` may end within a character.
inline std::string utf8FromSTRING(std::string_view text, bool isCut) {
  auto whole = text;
  while (isCut && !whole.empty() && (static_cast<unsigned char>(whole.back()) & 0xC0) == 0x80)
    whole.remove_suffix(1);
  if (isCut && !whole.empty() && static_cast<unsigned char>(whole.back()) >= 0xC0)
    whole.remove_suffix(1);
  if (isUTF8(whole))
    return std::string(text);
  std::string out;
  out.reserve(text.size() * 2);
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80)
      out += static_cast<char>(0xC0 | byte >> 6);
    out += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
  }
  return out;
}

/// UTF-8 for the target STRING: a question mark where Latin-1 has no such character.
inline std::string latin1FromUTF8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  forEachCharacter(text, [&](auto character, std::string_view) {
    out += character >= 0 && character <= 0xFF ? static_cast<char>(character) : '?';
    return true;
  });
  return out;
}

} // namespace tavrin
