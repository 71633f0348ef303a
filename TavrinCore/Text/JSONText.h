#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// Appends `text` as JSON writes it, quotes included.
void appendJSONText(std::string& out, std::string_view text);
/// How many bytes that appends.
std::size_t jsonTextLength(std::string_view text);

} // namespace tavrin
