#pragma once

#include <cstddef>
#include <string_view>

namespace tavrin {

/// `text` (UTF-8) without white space and line breaks at its ends.
std::string_view trimmed(std::string_view text);

/// The beginning of `text` (UTF-8), at most `longest` bytes of it, no character cut.
std::string_view beginning(std::string_view text, std::size_t longest);

/// Whether `text` is well-formed UTF-8.
bool isUTF8(std::string_view text);

} // namespace tavrin
