#include "TavrinCore/Text/Numbers.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#if __has_include(<xlocale.h>)
#include <xlocale.h>
#endif

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

double converted(const std::string& text) {
  static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(text.c_str(), nullptr, plain);
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
  errno = 0;
  number = converted(std::string(first, end));
  if (errno == ERANGE && (number == 0 || std::isinf(number)))
    return {end, std::errc::result_out_of_range};
  value = number;
  return {end, std::errc()};
}

} // namespace tavrin
