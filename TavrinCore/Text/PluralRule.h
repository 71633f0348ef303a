#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrin {

/// Which form of a text suits a number: the expression that a catalogue's "Plural-Forms" gives in
/// the notation of C, over `n` ("Plural forms" in the gettext manual).
class PluralRule {
public:
  /// English: one, and many.
  PluralRule();

  /// Of "nplurals=2; plural=n != 1;"; English's for a line that cannot be read.
  static PluralRule of(std::string_view line);

  /// Counted from 0, below `count()`.
  unsigned form(unsigned long long n) const;
  unsigned count() const { return count_; }

private:
  friend class PluralParser;

  enum class Kind : std::uint8_t {
    number,
    n,
    negation,
    product,
    quotient,
    remainder,
    sum,
    difference,
    less,
    lessOrEqual,
    greater,
    greaterOrEqual,
    equal,
    unequal,
    conjunction,
    disjunction,
    choice,
  };
  /// Operands are the places of other nodes, all of them before this one.
  struct Node {
    Kind kind;
    std::uint64_t number = 0;
    std::uint16_t operands[3] = {};
  };

  std::uint64_t valueOf(std::size_t node, std::uint64_t n) const;

  std::vector<Node> nodes_;
  unsigned count_ = 2;
};

} // namespace tavrin
