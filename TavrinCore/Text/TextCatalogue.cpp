#include "TavrinCore/Text/TextCatalogue.h"

#include <bit>
#include <cstring>

namespace tavrin {
namespace {

constexpr std::uint32_t magic = 0x950412de;
constexpr std::uint32_t lineSize = 8;
/// What stands between a text's context and the text.
constexpr char contextEnd = '\x04';

constexpr std::uint32_t swapped(std::uint32_t value) {
  return value >> 24 | (value >> 8 & 0xff00) | (value << 8 & 0xff0000) | value << 24;
}

/// How `key` compares with a context and a text, which are joined in the file alone.
int compare(std::string_view key, std::string_view context, std::string_view english) {
  if (context.empty())
    return key.compare(english);
  if (const int order = key.substr(0, context.size()).compare(context); order != 0)
    return order;
  key.remove_prefix(context.size());
  if (key.empty() || key.front() != contextEnd)
    return key.empty() || static_cast<unsigned char>(key.front()) < contextEnd ? -1 : 1;
  return key.substr(1).compare(english);
}

} // namespace

std::optional<TextCatalogue> TextCatalogue::of(std::string_view bytes) {
  constexpr std::size_t headerSize = 28;
  if (bytes.size() < headerSize || bytes.size() > 0x7fffffff)
    return std::nullopt;
  TextCatalogue catalogue;
  catalogue.bytes_ = bytes;
  const auto begin = catalogue.number(0);
  catalogue.isSwapped_ = begin == swapped(magic);
  if (!catalogue.isSwapped_ && begin != magic)
    return std::nullopt;
  if (catalogue.number(4) >> 16 > 1)
    return std::nullopt;
  catalogue.count_ = catalogue.number(8);
  catalogue.originals_ = catalogue.number(12);
  catalogue.translations_ = catalogue.number(16);
  for (const auto table : {catalogue.originals_, catalogue.translations_})
    if (table > bytes.size() || catalogue.count_ > (bytes.size() - table) / lineSize)
      return std::nullopt;
  constexpr std::string_view plurals = "Plural-Forms:";
  const auto header = catalogue.find("");
  if (const auto at = header.find(plurals); at != std::string_view::npos) {
    const auto line = header.substr(at + plurals.size());
    catalogue.plurals_ = PluralRule::of(line.substr(0, line.find('\n')));
  }
  return catalogue;
}

std::uint32_t TextCatalogue::number(std::size_t offset) const {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes_.data() + offset, sizeof value);
  return isSwapped_ ? swapped(value) : value;
}

std::string_view TextCatalogue::line(std::uint32_t table, std::uint32_t index) const {
  const std::size_t place = table + std::size_t{index} * lineSize;
  const std::size_t length = number(place);
  const std::size_t offset = number(place + 4);
  if (offset > bytes_.size() || length > bytes_.size() - offset)
    return {};
  return bytes_.substr(offset, length);
}

std::string_view TextCatalogue::entry(std::string_view context, std::string_view english) const {
  std::uint32_t first = 0;
  std::uint32_t last = count_;
  while (first < last) {
    const auto middle = first + (last - first) / 2;
    // A text with plurals is sorted by its singular.
    auto key = line(originals_, middle);
    key = key.substr(0, key.find('\0'));
    const int order = compare(key, context, english);
    if (order == 0)
      return line(translations_, middle);
    if (order < 0)
      first = middle + 1;
    else
      last = middle;
  }
  return {};
}

std::string_view TextCatalogue::form(std::string_view forms, unsigned index) {
  for (; index > 0; --index) {
    const auto end = forms.find('\0');
    if (end == std::string_view::npos)
      return {};
    forms.remove_prefix(end + 1);
  }
  return forms.substr(0, forms.find('\0'));
}

} // namespace tavrin
