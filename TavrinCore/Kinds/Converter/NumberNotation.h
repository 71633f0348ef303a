#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// How a locale writes numbers.
///
/// Read are digits of ASCII and of the locale, with the locale's decimal and grouping separators,
/// an exponent ("1e6"), fractions of one character ("½", "1½"), percentages ("10%"), and sums of
/// them: + - * / ^, × · ÷ −, parentheses. A grouping separator that groups nothing, such as the one
/// point of "1.5" where points group, counts as a decimal one. A percentage that is added or taken
/// off is one of what it is added to: "200 + 10%" is 220.
class NumberNotation {
public:
  /// The user's own.
  NumberNotation();
  /// By locale identifier, such as "de_DE".
  explicit NumberNotation(const std::string& localeID);
  ~NumberNotation();
  NumberNotation(const NumberNotation&) = delete;
  NumberNotation& operator=(const NumberNotation&) = delete;

  /// The value of a number or a sum; no value for what is none, is longer than 200 bytes, or has
  /// no finite value.
  std::optional<double> evaluate(std::string_view text) const;

  enum class Grouping { grouped, plain };
  /// With at most `digits` significant ones; with an exponent where it would be much too long.
  std::string format(double value, int digits, Grouping grouping = Grouping::grouped) const;
  /// The shortest there is: "1.2M".
  std::string formatShort(double value) const;

private:
  struct Symbols;
  std::unique_ptr<const Symbols> symbols_;
};

/// Whether a text names a currency, by its sign ("€") or its code of ISO 4217 ("EUR").
bool namesCurrency(std::string_view text);

} // namespace tavrin
