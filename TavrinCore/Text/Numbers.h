#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace tavrin {

/// A decimal number at the start of the text from `first` to `last`, as `std::from_chars` reads it
/// in its general form: no white space, no "+", always a point, whatever the locale. Standard
/// libraries of several systems have no such call for floating-point numbers.
std::from_chars_result doubleFromChars(const char* first, const char* last, double& value);

/// Takes exactly `count` decimal digits (at most 9) off the front of `text`; no value, and nothing
/// taken, where it begins otherwise.
std::optional<int> takeDigits(std::string_view& text, std::size_t count);

/// `value` as far as an int counts, from 0.
constexpr int boundedCount(std::int64_t value) {
  return static_cast<int>(std::clamp<std::int64_t>(value, 0, std::numeric_limits<int>::max()));
}

/// What a digit of base 16 stands for, in either case; no value for any other character.
constexpr std::optional<int> hexDigit(char character) {
  if (character >= '0' && character <= '9')
    return character - '0';
  const char lower = static_cast<char>(character | 0x20);
  return lower >= 'a' && lower <= 'f' ? std::optional(lower - 'a' + 10) : std::nullopt;
}

} // namespace tavrin
