#pragma once

#include "TavrinCore/Text/TextCatalogue.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavrin::test {

/// Texts and their translations.
using CatalogueLines = std::vector<std::pair<std::string, std::string>>;

/// A catalogue's bytes as msgfmt writes them, without a hash table.
inline std::string compiled(CatalogueLines lines, bool isSwapped = false) {
  std::ranges::sort(lines);
  const auto number = [&](std::size_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i)
      bytes += static_cast<char>(value >> (isSwapped ? 24 - 8 * i : 8 * i) & 0xff);
    return bytes;
  };
  const std::size_t count = lines.size();
  std::string tables[2], texts;
  const std::size_t begin = 28 + 16 * count;
  for (int i = 0; i < 2; ++i)
    for (const auto& [original, translation] : lines) {
      const auto& text = i == 0 ? original : translation;
      tables[i] += number(text.size()) + number(begin + texts.size());
      texts += text + '\0';
    }
  return number(0x950412de) + number(0) + number(count) + number(28) + number(28 + 8 * count) +
         number(0) + number(begin) + tables[0] + tables[1] + texts;
}

/// The texts of a catalogue for one test.
class InLanguage {
public:
  InLanguage(const CatalogueLines& lines, std::string_view language, bool isSwapped = false)
      : bytes_(compiled(lines, isSwapped)), catalogue_(TextCatalogue::of(bytes_)) {
    useTexts(catalogue_ ? &*catalogue_ : nullptr, language);
  }
  ~InLanguage() { useTexts(nullptr, {}); }
  InLanguage(const InLanguage&) = delete;
  InLanguage& operator=(const InLanguage&) = delete;

private:
  std::string bytes_;
  std::optional<TextCatalogue> catalogue_;
};

} // namespace tavrin::test
