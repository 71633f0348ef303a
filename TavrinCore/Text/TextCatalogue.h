#pragma once

#include "TavrinCore/Text/PluralRule.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tavrin {

/// The texts of one language in GNU's compiled form, MO ("The Format of GNU MO Files" in the
/// gettext manual), of either byte order. Reads in place: nothing is copied, and a page that nobody
/// asks for is not touched. What is broken in it is a text that is not there.
class TextCatalogue {
public:
  /// `bytes` have to stay as long as the catalogue and what it gave out. No value for what is no
  /// catalogue, or has tables that reach beyond its end.
  static std::optional<TextCatalogue> of(std::string_view bytes);

  /// The translation of a text; of one with plurals, its first form. Empty views stand for none.
  std::string_view find(std::string_view english) const { return form(entry({}, english), 0); }
  std::string_view find(std::string_view context, std::string_view english) const {
    return form(entry(context, english), 0);
  }
  /// The form of a text with plurals for `count`, found by its singular.
  std::string_view find(std::string_view one, unsigned long long count) const {
    return form(entry({}, one), plurals_.form(count));
  }

  std::uint32_t count() const { return count_; }

private:
  std::uint32_t number(std::size_t offset) const;
  /// The text that a table's line tells; empty where it does not lie within the file.
  std::string_view line(std::uint32_t table, std::uint32_t index) const;
  /// All forms of a translation, with their zeros between.
  std::string_view entry(std::string_view context, std::string_view english) const;
  static std::string_view form(std::string_view forms, unsigned index);

  std::string_view bytes_;
  bool isSwapped_ = false;
  std::uint32_t count_ = 0;
  std::uint32_t originals_ = 0;
  std::uint32_t translations_ = 0;
  PluralRule plurals_;
};

} // namespace tavrin
