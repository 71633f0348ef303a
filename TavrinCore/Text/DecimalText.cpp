#include "TavrinCore/Text/DecimalText.h"

#include "TavrinCore/Text/Texts.h"

#include <fmt/format.h>
#include <unicode/dcfmtsym.h>

namespace tavrin {

std::string decimalSeparator() {
  const auto language = textLanguage();
  if (language == "en")
    return ".";
  // Among digits from 0 to 9, whatever digits the language has of its own.
  UErrorCode error = U_ZERO_ERROR;
  const icu::DecimalFormatSymbols symbols(icu::Locale((language + "@numbers=latn").c_str()), error);
  std::string sign;
  if (U_SUCCESS(error))
    symbols.getConstSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol).toUTF8String(sign);
  return sign.empty() ? "." : sign;
}

std::string decimalText(double value, int digits) {
  auto text = fmt::format("{:.{}f}", value, digits);
  if (const auto point = text.find('.'); point != std::string::npos)
    text.replace(point, 1, decimalSeparator());
  return text;
}

} // namespace tavrin
