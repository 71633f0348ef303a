#include "TavrinCore/Text/PluralRule.h"

#include <array>
#include <charconv>
#include <optional>

namespace tavrin {

/// Reads an expression by descent; each level of precedence is a line of `operators`.
class PluralParser {
public:
  explicit PluralParser(std::string_view text) : rest_(text) {}

  std::optional<std::vector<PluralRule::Node>> nodes() {
    const auto root = choice();
    skipSpace();
    if (!root || (!rest_.empty() && rest_.front() != ';'))
      return std::nullopt;
    return std::move(nodes_);
  }

private:
  using Kind = PluralRule::Kind;
  using Place = std::optional<std::uint16_t>;

  struct Operator {
    std::string_view sign;
    Kind kind;
    int level;
  };
  // Longer signs before their beginnings.
  static constexpr std::array operators{
      Operator{"||", Kind::disjunction, 0}, Operator{"&&", Kind::conjunction, 1},
      Operator{"==", Kind::equal, 2},       Operator{"!=", Kind::unequal, 2},
      Operator{"<=", Kind::lessOrEqual, 3}, Operator{">=", Kind::greaterOrEqual, 3},
      Operator{"<", Kind::less, 3},         Operator{">", Kind::greater, 3},
      Operator{"+", Kind::sum, 4},          Operator{"-", Kind::difference, 4},
      Operator{"*", Kind::product, 5},      Operator{"/", Kind::quotient, 5},
      Operator{"%", Kind::remainder, 5}};
  static constexpr int tightest = 6;
  static constexpr std::size_t mostNodes = 500;
  static constexpr int deepest = 60;

  void skipSpace() {
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t'))
      rest_.remove_prefix(1);
  }

  bool take(std::string_view sign) {
    skipSpace();
    if (!rest_.starts_with(sign))
      return false;
    rest_.remove_prefix(sign.size());
    return true;
  }

  Place add(PluralRule::Node node) {
    if (nodes_.size() >= mostNodes)
      return std::nullopt;
    nodes_.push_back(node);
    return static_cast<std::uint16_t>(nodes_.size() - 1);
  }

  Place choice() {
    if (++depth_ > deepest)
      return std::nullopt;
    auto condition = binary(0);
    if (condition && take("?")) {
      const auto yes = choice();
      if (!yes || !take(":"))
        return std::nullopt;
      const auto no = choice();
      if (!no)
        return std::nullopt;
      condition = add({Kind::choice, 0, {*condition, *yes, *no}});
    }
    --depth_;
    return condition;
  }

  const Operator* operatorAt(int level) {
    skipSpace();
    for (const auto& one : operators)
      if (rest_.starts_with(one.sign))
        return one.level == level ? &one : nullptr;
    return nullptr;
  }

  Place binary(int level) {
    if (level == tightest)
      return unary();
    auto left = binary(level + 1);
    while (left) {
      const auto* sign = operatorAt(level);
      if (sign == nullptr)
        break;
      rest_.remove_prefix(sign->sign.size());
      const auto right = binary(level + 1);
      if (!right)
        return std::nullopt;
      left = add({sign->kind, 0, {*left, *right, 0}});
    }
    return left;
  }

  Place unary() {
    if (take("!")) {
      if (++depth_ > deepest)
        return std::nullopt;
      const auto operand = unary();
      --depth_;
      return operand ? add({Kind::negation, 0, {*operand, 0, 0}}) : std::nullopt;
    }
    if (take("(")) {
      const auto inner = choice();
      return inner && take(")") ? inner : std::nullopt;
    }
    if (take("n"))
      return add({Kind::n});
    PluralRule::Node number{Kind::number};
    const auto [end, error] =
        std::from_chars(rest_.data(), rest_.data() + rest_.size(), number.number);
    if (error != std::errc())
      return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return add(number);
  }

  std::string_view rest_;
  std::vector<PluralRule::Node> nodes_;
  int depth_ = 0;
};

PluralRule::PluralRule() : nodes_{{Kind::n}, {Kind::number, 1}, {Kind::unequal, 0, {0, 1, 0}}} {}

PluralRule PluralRule::of(std::string_view line) {
  constexpr std::string_view count = "nplurals=";
  constexpr std::string_view expression = "plural=";
  constexpr unsigned mostForms = 16;
  const auto countAt = line.find(count);
  if (countAt == std::string_view::npos)
    return {};
  PluralRule rule;
  const auto* begin = line.data() + countAt + count.size();
  const auto* end = line.data() + line.size();
  while (begin != end && *begin == ' ')
    ++begin;
  const auto [after, error] = std::from_chars(begin, end, rule.count_);
  if (error != std::errc() || rule.count_ == 0 || rule.count_ > mostForms)
    return {};
  const auto rest = line.substr(static_cast<std::size_t>(after - line.data()));
  const auto at = rest.find(expression);
  if (at == std::string_view::npos)
    return {};
  auto nodes = PluralParser(rest.substr(at + expression.size())).nodes();
  if (!nodes)
    return {};
  rule.nodes_ = std::move(*nodes);
  return rule;
}

unsigned PluralRule::form(unsigned long long n) const {
  const auto value = valueOf(nodes_.size() - 1, n);
  return value < count_ ? static_cast<unsigned>(value) : 0;
}

std::uint64_t PluralRule::valueOf(std::size_t node, std::uint64_t n) const {
  const Node& one = nodes_[node];
  const auto operand = [&](int i) { return valueOf(one.operands[i], n); };
  switch (one.kind) {
  case Kind::number:
    return one.number;
  case Kind::n:
    return n;
  case Kind::negation:
    return operand(0) == 0;
  case Kind::product:
    return operand(0) * operand(1);
  case Kind::quotient:
  case Kind::remainder: {
    const auto divisor = operand(1);
    if (divisor == 0)
      return 0;
    return one.kind == Kind::quotient ? operand(0) / divisor : operand(0) % divisor;
  }
  case Kind::sum:
    return operand(0) + operand(1);
  case Kind::difference:
    return operand(0) - operand(1);
  case Kind::less:
    return operand(0) < operand(1);
  case Kind::lessOrEqual:
    return operand(0) <= operand(1);
  case Kind::greater:
    return operand(0) > operand(1);
  case Kind::greaterOrEqual:
    return operand(0) >= operand(1);
  case Kind::equal:
    return operand(0) == operand(1);
  case Kind::unequal:
    return operand(0) != operand(1);
  case Kind::conjunction:
    return operand(0) != 0 && operand(1) != 0;
  case Kind::disjunction:
    return operand(0) != 0 || operand(1) != 0;
  case Kind::choice:
    return operand(0) != 0 ? operand(1) : operand(2);
  }
  return 0;
}

} // namespace tavrin
