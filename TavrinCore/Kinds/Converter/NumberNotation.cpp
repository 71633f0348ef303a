#include "TavrinCore/Kinds/Converter/NumberNotation.h"

#include "TavrinCore/Text/SystemLocale.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/uchar.h>
#include <unicode/ucurr.h>
#include <unicode/unistr.h>

namespace tavrin {
namespace {

/// Without the marks that only steer the direction of writing.
std::u32string codePoints(const icu::UnicodeString& text) {
  std::u32string points;
  for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const auto point = static_cast<char32_t>(text.char32At(i));
    if (point != U'\u061C' && point != U'\u200E' && point != U'\u200F')
      points += point;
  }
  return points;
}

} // namespace

struct NumberNotation::Symbols {
  icu::Locale locale;
  char32_t zero = U'0';
  char32_t decimal = U'.';
  char32_t grouping = U',';
  std::u32string exponent = U"E";

  explicit Symbols(const std::string& id) : locale(icu::Locale::createCanonical(id.c_str())) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols symbols(locale, status);
    if (U_FAILURE(status))
      return;
    const auto first = [&](icu::DecimalFormatSymbols::ENumberFormatSymbol which, char32_t none) {
      const auto text = symbols.getConstSymbol(which);
      return text.isEmpty() ? none : static_cast<char32_t>(text.char32At(0));
    };
    zero = first(icu::DecimalFormatSymbols::kZeroDigitSymbol, zero);
    decimal = first(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol, decimal);
    grouping = first(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol, grouping);
    exponent = codePoints(symbols.getConstSymbol(icu::DecimalFormatSymbols::kExponentialSymbol));
  }

  /// 0 to 9, -1 for anything else.
  int digit(char32_t character) const {
    for (const char32_t first : {U'0', zero})
      if (character >= first && character <= first + 9)
        return static_cast<int>(character - first);
    return -1;
  }
  bool isGrouping(char32_t character) const {
    if (character == decimal)
      return false;
    if (character == grouping)
      return true;
    // Spaces and apostrophes separate nothing else.
    switch (character) {
    case U' ':
    case U'\u00A0':
    case U'\u202F':
    case U'\u2009':
    case U'\'':
    case U'\u2019':
      return true;
    default:
      return false;
    }
  }
};

namespace {

constexpr std::size_t longestText = 200;
constexpr int deepest = 32;
/// Beyond these a number is written with an exponent.
constexpr double largestPlain = 1e15;
constexpr double smallestPlain = 1e-6;
constexpr int mostWithExponent = 12;

bool isSpace(char32_t character) {
  return character == U' ' || character == U'\t' || character == U'\u00A0' ||
         character == U'\u202F' || character == U'\u2009';
}

double parsed(const std::string& ascii) {
  std::istringstream stream(ascii);
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  return stream.fail() ? std::nan("") : value;
}

} // namespace

namespace {

/// A recursive descent over sums, products, powers, signs and numbers. NaN is failure, and stays.
template <class Symbols> class Reader {
public:
  Reader(const Symbols& symbols, std::u32string text) : symbols_(symbols), text_(std::move(text)) {}

  std::optional<double> read() {
    const double value = sum(0);
    skipSpaces();
    if (at_ != text_.size() || !std::isfinite(value))
      return std::nullopt;
    return value;
  }

private:
  static constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

  char32_t peek() const { return at_ < text_.size() ? text_[at_] : 0; }
  void skipSpaces() {
    while (isSpace(peek()))
      ++at_;
  }
  bool take(std::u32string_view any) {
    skipSpaces();
    if (peek() == 0 || any.find(peek()) == any.npos)
      return false;
    ++at_;
    return true;
  }

  double sum(int depth) {
    double value = product(depth);
    while (true) {
      const bool adds = take(U"+");
      if (!adds && !take(U"-\u2212"))
        return value;
      isPercentage_ = false;
      const double change = product(depth) * (isPercentage_ ? value : 1);
      value += adds ? change : -change;
    }
  }
  double product(int depth) {
    double value = power(depth);
    while (true) {
      if (take(U"*\u00D7\u00B7\u22C5"))
        value *= power(depth);
      else if (take(U"/\u00F7:\u2044\u2215"))
        value /= power(depth);
      else
        return value;
      // A share of something else is a number.
      isPercentage_ = false;
    }
  }
  double power(int depth) {
    if (depth > deepest)
      return nothing;
    if (take(U"-\u2212"))
      return -power(depth + 1);
    if (take(U"+"))
      return power(depth + 1);
    const double base = share(operand(depth));
    if (!take(U"^"))
      return base;
    const double value = std::pow(base, power(depth + 1));
    isPercentage_ = false;
    return value;
  }
  double share(double value) {
    isPercentage_ = take(U"%\u066A\uFE6A\uFF05");
    return isPercentage_ ? value / 100 : value;
  }
  double operand(int depth) {
    if (!take(U"("))
      return number();
    const double value = sum(depth + 1);
    return take(U")") ? value : nothing;
  }

  /// "½"; no value for any other character.
  std::optional<double> fraction() {
    const auto point = static_cast<UChar32>(peek());
    if (u_getIntPropertyValue(point, UCHAR_DECOMPOSITION_TYPE) != U_DT_FRACTION ||
        u_getNumericValue(point) >= 1)
      return std::nullopt;
    ++at_;
    return u_getNumericValue(point);
  }
  /// A number, a fraction, or a whole number with a fraction behind it.
  double number() {
    skipSpaces();
    if (const auto part = fraction())
      return *part;
    const double value = decimal();
    skipSpaces();
    if (value == std::floor(value))
      if (const auto part = fraction())
        return value + *part;
    return value;
  }

  /// Digits and separators up to what can be neither.
  double decimal() {
    std::string ascii;
    std::size_t groupings = 0;
    char32_t grouping = 0;
    std::size_t sinceGrouping = 0;
    bool isGrouped = true;
    bool hasDecimal = false;
    std::size_t fractionAt = ascii.npos;
    while (at_ < text_.size()) {
      const char32_t character = text_[at_];
      if (const int digit = symbols_.digit(character); digit >= 0) {
        ascii += static_cast<char>('0' + digit);
        ++sinceGrouping;
      } else if (character == symbols_.decimal && !hasDecimal) {
        isGrouped = isGrouped && (groupings == 0 || sinceGrouping == 3);
        hasDecimal = true;
        ascii += '.';
      } else if (isSeparatorHere(character, hasDecimal)) {
        if (grouping != 0 && character != grouping)
          return nothing;
        isGrouped = isGrouped && !ascii.empty() &&
                    (groupings == 0 || sinceGrouping == 3 || sinceGrouping == 2);
        // A point that groups nothing in this locale can only be a decimal one.
        isGrouped = isGrouped && symbols_.isGrouping(character);
        grouping = character;
        ++groupings;
        sinceGrouping = 0;
        fractionAt = ascii.size();
      } else {
        break;
      }
      ++at_;
    }
    if (!hasDecimal)
      isGrouped = isGrouped && (groupings == 0 || sinceGrouping == 3);
    if (!isGrouped) {
      if (groupings != 1 || hasDecimal || isSpace(grouping))
        return nothing;
      ascii.insert(fractionAt, 1, '.');
    }
    return withExponent(std::move(ascii));
  }

  /// Whether a digit follows, and this one may stand between two.
  bool isSeparatorHere(char32_t character, bool hasDecimal) const {
    const bool isPoint = character == U'.' || character == U',';
    return !hasDecimal && (symbols_.isGrouping(character) || isPoint) && at_ + 1 < text_.size() &&
           symbols_.digit(text_[at_ + 1]) >= 0;
  }

  double withExponent(std::string ascii) {
    if (ascii.find_first_of("0123456789") == ascii.npos)
      return nothing;
    if (takeExponent()) {
      ascii += 'e';
      if (peek() == U'-' || peek() == U'\u2212' || peek() == U'+')
        ascii += text_[at_++] == U'+' ? '+' : '-';
      if (symbols_.digit(peek()) < 0)
        return nothing;
      while (symbols_.digit(peek()) >= 0)
        ascii += static_cast<char>('0' + symbols_.digit(text_[at_++]));
    }
    return parsed(ascii);
  }

  bool takeExponent() {
    const auto& own = symbols_.exponent;
    const bool isOwn = !own.empty() && text_.compare(at_, own.size(), own) == 0;
    if (!isOwn && peek() != U'e' && peek() != U'E')
      return false;
    at_ += isOwn ? own.size() : 1;
    return true;
  }

  const Symbols& symbols_;
  std::u32string text_;
  std::size_t at_ = 0;
  /// What was read last is a percentage.
  bool isPercentage_ = false;
};

} // namespace

NumberNotation::NumberNotation() : NumberNotation(systemLocaleID("LC_NUMERIC")) {}

NumberNotation::NumberNotation(const std::string& localeID)
    : symbols_(std::make_unique<const Symbols>(localeID)) {}

NumberNotation::~NumberNotation() = default;

std::optional<double> NumberNotation::evaluate(std::string_view text) const {
  text = trimmed(text);
  if (text.empty() || text.size() > longestText || !isUTF8(text))
    return std::nullopt;
  const icu::StringPiece utf8(text.data(), static_cast<int32_t>(text.size()));
  return Reader(*symbols_, codePoints(icu::UnicodeString::fromUTF8(utf8))).read();
}

bool namesCurrency(std::string_view text) {
  if (text.size() > longestText || !isUTF8(text))
    return false;
  const auto points = codePoints(icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size()))));
  std::u16string word;
  const auto isCode = [&] {
    UErrorCode status = U_ZERO_ERROR;
    constexpr double everFrom = -1e12;
    constexpr double everTo = 4e12;
    return word.size() == 3 && ucurr_isAvailable(word.c_str(), everFrom, everTo, &status) &&
           U_SUCCESS(status);
  };
  for (const char32_t point : points) {
    if (u_charType(static_cast<UChar32>(point)) == U_CURRENCY_SYMBOL)
      return true;
    if (point < 0x80 && u_isalpha(static_cast<UChar32>(point))) {
      word += static_cast<char16_t>(u_toupper(static_cast<UChar32>(point)));
      continue;
    }
    if (isCode())
      return true;
    word.clear();
  }
  return isCode();
}

std::string NumberNotation::format(double value, int digits, Grouping grouping) const {
  if (std::isnan(value))
    return "–";
  const double size = std::abs(value);
  const bool hasExponent = size != 0 && (size >= largestPlain || size < smallestPlain);
  if (hasExponent) {
    digits = std::min(digits, mostWithExponent);
  } else if (size != 0) {
    // Of a number longer than the digits wanted the whole part is not made up of zeros.
    digits = std::max(digits, static_cast<int>(std::floor(std::log10(size))) + 1);
  }
  digits = std::clamp(digits, 1, 15);
  using namespace icu::number;
  auto formatter =
      NumberFormatter::withLocale(symbols_->locale)
          .precision(Precision::maxSignificantDigits(digits))
          .grouping(grouping == Grouping::grouped ? UNUM_GROUPING_AUTO : UNUM_GROUPING_OFF);
  if (hasExponent)
    formatter = formatter.notation(Notation::scientific());
  UErrorCode status = U_ZERO_ERROR;
  std::string text;
  formatter.formatDouble(value, status).toString(status).toUTF8String(text);
  return U_FAILURE(status) ? "–" : text;
}

std::string NumberNotation::formatShort(double value) const {
  constexpr int shortDigits = 3;
  const double size = std::abs(value);
  if (!(size >= 1000 && size < largestPlain))
    return format(value, size >= largestPlain || size < smallestPlain ? 2 : shortDigits);
  using namespace icu::number;
  UErrorCode status = U_ZERO_ERROR;
  std::string text;
  NumberFormatter::withLocale(symbols_->locale)
      .notation(Notation::compactShort())
      .precision(Precision::maxSignificantDigits(shortDigits))
      .formatDouble(value, status)
      .toString(status)
      .toUTF8String(text);
  return U_FAILURE(status) ? format(value, shortDigits) : text;
}

} // namespace tavrin
