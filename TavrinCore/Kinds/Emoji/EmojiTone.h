#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// The five skin tones U+1F3FB to U+1F3FF in UTF-8: three bytes in common, then one of their own.
inline constexpr std::string_view toneLead = "\xF0\x9F\x8F";
inline constexpr char lightestTone = '\xBB';
inline constexpr std::string_view variationSelector = "\xEF\xB8\x8F";

inline bool isToneByte(char byte) {
  return byte >= lightestTone && byte <= lightestTone + 4;
}

/// The last bytes of the tones in an emoji, in order.
std::string emojiTones(std::string_view emoji);

} // namespace tavrin
