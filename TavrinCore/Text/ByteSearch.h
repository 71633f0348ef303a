#pragma once

#include <string_view>

namespace tavrin {

/// Where `needle` (2 bytes at least) first stands in `text` at or after `from`; npos where it does
/// not. Made for texts of megabytes in which it is rare: many bytes at a time are compared with
/// the needle's second and last one, so a needle finds fastest when these two seldom stand that
/// far apart.
std::size_t findBytes(std::string_view text, std::string_view needle, std::size_t from = 0);

/// The last place of `byte` in `text`, npos where it has none.
std::size_t findLastByte(std::string_view text, char byte);

} // namespace tavrin
