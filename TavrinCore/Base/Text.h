#pragma once

#include <string_view>

namespace tavrin {

/// `text` (UTF-8) without white space and line breaks at its ends.
std::string_view trimmed(std::string_view text);

/// Whether `text` is well-formed UTF-8.
bool isUTF8(std::string_view text);

} // namespace tavrin
