#include "TavrinCore/Text/Numbers.h"

#include <array>
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

/// The number where one operation makes it, which rounds once: digits below 2^53 times or by a
/// power of ten that is exact, too. (W. D. Clinger: How to Read Floating Point Numbers Accurately,
/// 1990.) `text` is well formed; no value for what has more digits or another power.
std::optional<double> roundedOnce(std::string_view text) {
  // Beyond it the digits before and after the point are no help.
  constexpr int mostPower = 1000;
  constexpr std::int64_t exactDigits = std::int64_t{1} << std::numeric_limits<double>::digits;
  constexpr std::array powers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  const bool isNegative = text.starts_with('-');
  const auto exponentAt = std::min(text.find_first_of("eE"), text.size());
  int power = 0;
  if (exponentAt < text.size()) {
    auto exponent = text.substr(exponentAt + 1);
    if (exponent.starts_with('+'))
      exponent.remove_prefix(1);
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), power).ec !=
            std::errc() ||
        power < -mostPower || power > mostPower)
      return std::nullopt;
  }
  std::int64_t number = 0;
  bool isFraction = false;
  for (const char each : text.substr(isNegative ? 1 : 0, exponentAt - (isNegative ? 1 : 0))) {
    if (each == '.') {
      isFraction = true;
      continue;
    }
    number = number * 10 + (each - '0');
    power -= isFraction ? 1 : 0;
    if (number > exactDigits)
      return std::nullopt;
  }
  if (power < -22 || power > 22)
    return std::nullopt;
  const auto digits = static_cast<double>(number);
  const double value = power < 0 ? digits / powers[static_cast<std::size_t>(-power)]
                                 : digits * powers[static_cast<std::size_t>(power)];
  return isNegative ? -value : value;
}

/// As streams read numbers, without a stream.
class NumberReader final : public std::num_get<char, const char*> {};

/// The number from `first` to `last`, which is well formed; no value where it is too large or too
/// small for a double.
std::optional<double> converted(const char* first, const char* last) {
  const std::string_view text(first, static_cast<std::size_t>(last - first));
  if (const auto exact = roundedOnce(text))
    return exact;
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
