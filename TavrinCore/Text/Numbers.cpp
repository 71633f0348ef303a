#include "TavrinCore/Text/Numbers.h"

#include <cmath>
#include <ios>
#include <locale>

namespace tavrin {
namespace {

std::size_t digits(std::string_view text) {
  return std::min(text.find_first_not_of("0123456789"), text.size());
}

/// How many characters of `text`, which has no sign, are a number; 0 for none.
std::size_t numberLength(std::string_view text) {
  const std::size_t whole = digits(text);
  std::size_t length = whole;
  if (text.substr(length).starts_with('.')) {
    const std::size_t fraction = digits(text.substr(length + 1));
    if (whole + fraction == 0)
      return 0;
    length += 1 + fraction;
  }
  if (length == 0 || length == text.size() || (text[length] | 0x20) != 'e')
    return length;
  std::size_t exponent = length + 1;
  if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-'))
    ++exponent;
  const std::size_t count = digits(text.substr(exponent));
  return count == 0 ? length : exponent + count;
}

bool startsWithWord(std::string_view text, std::string_view word) {
  for (std::size_t i = 0; i < word.size(); ++i)
    if (i >= text.size() || (text[i] | 0x20) != word[i])
      return false;
  return true;
}

/// "inf", "infinity" and "nan" are numbers to `std::from_chars` too.
std::size_t wordLength(std::string_view text, double& value) {
  if (startsWithWord(text, "nan")) {
    value = std::numeric_limits<double>::quiet_NaN();
    return 3;
  }
  if (!startsWithWord(text, "inf"))
    return 0;
  value = std::numeric_limits<double>::infinity();
  return startsWithWord(text, "infinity") ? 8 : 3;
}

/// As streams read numbers, without a stream.
class NumberReader final : public std::num_get<char, const char*> {};

/// The number from `first` to `last`, which is well formed; no value where it is too large or too
/// small for a double.
std::optional<double> converted(const char* first, const char* last) {
  static const NumberReader reader;
  // Only its locale counts: the classic one, whatever the process has.
  thread_local std::ios plain(nullptr);
  thread_local const bool isPlain = (plain.imbue(std::locale::classic()), true);
  static_cast<void>(isPlain);
  std::ios::iostate state = std::ios::goodbit;
  double number = 0;
  reader.get(first, last, plain, state, number);
  // Libraries differ in whether a failure leaves the largest number or infinity, and in whether a
  // number with few digits left is one.
  if ((state & std::ios::failbit) != 0 && std::abs(number) >= std::numeric_limits<double>::max())
    return std::nullopt;
  const std::string_view text(first, static_cast<std::size_t>(last - first));
  const bool isZero =
      text.substr(0, text.find_first_of("eE")).find_first_of("123456789") == std::string_view::npos;
  return number == 0 && !isZero ? std::nullopt : std::optional(number);
}

} // namespace

std::from_chars_result doubleFromChars(const char* first, const char* last, double& value) {
  const std::string_view text(first, static_cast<std::size_t>(last - first));
  const std::size_t sign = text.starts_with('-') ? 1 : 0;
  double number = 0;
  if (const std::size_t word = wordLength(text.substr(sign), number); word != 0) {
    value = sign != 0 ? -number : number;
    return {first + sign + word, std::errc()};
  }
  const std::size_t length = numberLength(text.substr(sign));
  if (length == 0)
    return {first, std::errc::invalid_argument};
  const char* end = first + sign + length;
  const auto found = converted(first, end);
  if (!found)
    return {end, std::errc::result_out_of_range};
  value = *found;
  return {end, std::errc()};
}

std::optional<int> takeDigits(std::string_view& text, std::size_t count) {
  if (digits(text.substr(0, count)) != count)
    return std::nullopt;
  int value = 0;
  for (const char digit : text.substr(0, count))
    value = value * 10 + (digit - '0');
  text.remove_prefix(count);
  return value;
}

} // namespace tavrin
