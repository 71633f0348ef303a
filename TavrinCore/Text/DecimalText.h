#pragma once

#include <cstdint>
#include <string>

namespace tavrin {

/// What stands between a number's whole part and its fraction in the language of the texts.
std::string decimalSeparator();

/// A count with its thousands apart, as the language of the texts writes them: "12,345".
std::string countText(std::int64_t count);

/// "25%", as the language writes it.
std::string wholePercentText(std::int64_t percent);

/// `value` with that many digits after the separator, none before the last whole ones: "1234.5".
std::string decimalText(double value, int digits);

} // namespace tavrin
