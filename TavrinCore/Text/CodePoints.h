#pragma once

#include <cstdint>
#include <string_view>
#include <unicode/utf8.h>

namespace tavrin {

/// Calls `each` with every code point of `text` (UTF-8) and the bytes it stands in, until it
/// answers false; with a negative one where the bytes are not UTF-8.
template <class Each> void forEachCharacter(std::string_view text, const Each& each) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int64_t>(text.size());
  for (std::int64_t i = 0; i < length;) {
    UChar32 character = 0;
    const std::int64_t start = i;
    U8_NEXT(bytes, i, length, character);
    if (!each(character,
              text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(i - start))))
      return;
  }
}

} // namespace tavrin
