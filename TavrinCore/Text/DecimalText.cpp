#include "TavrinCore/Text/DecimalText.h"

#include "TavrinCore/Text/Texts.h"

#include <fmt/format.h>
#include <memory>
#include <unicode/dcfmtsym.h>
#include <unicode/numfmt.h>

namespace tavrin {

namespace {

/// With digits from 0 to 9, whatever digits the language has of its own.
icu::Locale numberLocale() {
  const auto language = textLanguage();
  return {(language.substr(0, language.find('@')) + "@numbers=latn").c_str()};
}

std::string groupedByThousands(std::int64_t count) {
  auto digits = std::to_string(count);
  const std::ptrdiff_t first = count < 0 ? 1 : 0;
  for (auto at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > first; at -= 3)
    digits.insert(static_cast<std::size_t>(at), 1, ',');
  return digits;
}

} // namespace

std::string decimalSeparator() {
  if (textLanguage() == "en")
    return ".";
  UErrorCode error = U_ZERO_ERROR;
  const icu::DecimalFormatSymbols symbols(numberLocale(), error);
  std::string sign;
  if (U_SUCCESS(error))
    symbols.getConstSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol).toUTF8String(sign);
  return sign.empty() ? "." : sign;
}

std::string countText(std::int64_t count) {
  if (count > -1000 && count < 1000)
    return std::to_string(count);
  if (textLanguage() == "en")
    return groupedByThousands(count);
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::NumberFormat> format(
      icu::NumberFormat::createInstance(numberLocale(), error));
  if (U_FAILURE(error) || format == nullptr)
    return groupedByThousands(count);
  icu::UnicodeString digits;
  format->format(count, digits);
  std::string text;
  return digits.toUTF8String(text);
}

std::string wholePercentText(std::int64_t percent) {
  return translated("{number}%", {{"number", percent}});
}

std::string decimalText(double value, int digits) {
  auto text = fmt::format("{:.{}f}", value, digits);
  if (const auto point = text.find('.'); point != std::string::npos)
    text.replace(point, 1, decimalSeparator());
  return text;
}

} // namespace tavrin
