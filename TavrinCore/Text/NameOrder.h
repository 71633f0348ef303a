#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tavrin {

/// The order in which people look for names: words as the user's locale sorts them, or in the root
/// order of the Unicode Collation Algorithm where that is C, and numbers by their value. For one
/// thread at a time.
class NameOrder {
public:
  NameOrder();
  /// Of that locale, by its identifier.
  explicit NameOrder(const std::string& locale);
  ~NameOrder();
  NameOrder(const NameOrder&) = delete;
  NameOrder& operator=(const NameOrder&) = delete;

  /// Whether `a` comes before `b`, both UTF-8.
  bool operator()(std::string_view a, std::string_view b) const;

private:
  struct Rules;
  std::unique_ptr<Rules> rules_;
};

} // namespace tavrin
