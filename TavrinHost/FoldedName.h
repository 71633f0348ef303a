#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// The text with case differences folded away, as names are compared.
std::string folded(std::string_view text);

} // namespace tavrin
