#include "TavrinCore/Text/Text.h"

#include "TavrinCore/Text/CodePoints.h"
#include "TavrinCore/Text/Numbers.h"

#include <algorithm>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <utility>

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

std::string_view trimmed(std::string_view text, std::string_view characters) {
  const auto first = text.find_first_not_of(characters);
  if (first == std::string_view::npos)
    return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::string_view withoutLeadingBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return text;
}

std::string_view takeLine(std::string_view& text) {
  const auto end = text.find('\n');
  const auto line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
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

std::string asciiLowered(std::string_view text) {
  std::string out(text);
  std::ranges::transform(out, out.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  });
  return out;
}

std::string cleanText(std::string_view text, std::size_t longest) {
  std::string clean;
  clean.reserve(std::min(text.size(), longest));
  std::size_t count = 0;
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    if (count++ == longest)
      return false;
    clean.append(character < 0 ? std::string_view("\xEF\xBF\xBD") : bytes);
    return true;
  });
  return clean;
}

std::string oneLine(std::string_view text, std::size_t longest) {
  std::string line;
  std::size_t count = 0;
  bool hasGap = false;
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    if (character < 0 || u_isUWhiteSpace(character) || u_iscntrl(character)) {
      hasGap = !line.empty();
      return true;
    }
    if (count == longest)
      return false;
    line.append(std::exchange(hasGap, false) ? " " : "").append(bytes);
    ++count;
    return true;
  });
  return line;
}

std::string percentDecoded(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEscape = text[i] == '%' && i + 2 < text.size();
    const auto high = isEscape ? hexDigit(text[i + 1]) : std::nullopt;
    const auto low = isEscape ? hexDigit(text[i + 2]) : std::nullopt;
    if (high && low) {
      out += static_cast<char>(*high * 16 + *low);
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

} // namespace tavrin
