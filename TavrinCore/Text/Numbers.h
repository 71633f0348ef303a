#pragma once

#include <charconv>

namespace tavrin {

/// A decimal number at the start of the text from `first` to `last`, as `std::from_chars` reads it
/// in its general form: no white space, no "+", always a point, whatever the locale. Standard
/// libraries of several systems have no such call for floating-point numbers.
std::from_chars_result doubleFromChars(const char* first, const char* last, double& value);

} // namespace tavrin
