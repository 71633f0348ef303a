#pragma once

#include <string>

namespace tavrin {

/// What stands between a number's whole part and its fraction in the language of the texts.
std::string decimalSeparator();

/// `value` with that many digits after the separator, none before the last whole ones: "1234.5".
std::string decimalText(double value, int digits);

} // namespace tavrin
