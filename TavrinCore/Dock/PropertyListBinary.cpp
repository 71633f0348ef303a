#include "TavrinCore/Dock/PropertyList.h"

#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <bit>
#include <unicode/ustring.h>
#include <unordered_map>

/// The binary form: "bplist00", the objects, a table of their offsets, and a trailer of 32 bytes:
/// six of no meaning, the size of an offset, the size of a reference, then 64 bits each for the
/// number of objects, the root's number and the table's place. All numbers are big-endian.
namespace tavrin {
namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;
/// What a list may take once shared objects are written out, in bytes.
constexpr std::size_t expansionLimit = 4 * PropertyList::maximumSize;

enum Marker : unsigned {
  falseMarker = 0x08,
  trueMarker = 0x09,
  integerMarker = 0x10,
  realMarker = 0x20,
  dateMarker = 0x33,
  dataMarker = 0x40,
  asciiMarker = 0x50,
  utf16Marker = 0x60,
  uidMarker = 0x80,
  arrayMarker = 0xA0,
  dictionaryMarker = 0xD0,
};

[[noreturn]] void refuse(const char* what) {
  throw PropertyListError(translated(what));
}

class Reader {
public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {
    if (bytes.size() < headerSize + trailerSize || !bytes.starts_with("bplist0"))
      refuse(marked("it is cut short"));
    const auto trailer = bytes.size() - trailerSize;
    offsetSize_ = number(trailer + 6, 1);
    referenceSize_ = number(trailer + 7, 1);
    count_ = number(trailer + 8, 8);
    root_ = number(trailer + 16, 8);
    table_ = number(trailer + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 ||
        table_ < headerSize || table_ > trailer || count_ > (trailer - table_) / offsetSize_)
      refuse(marked("its table of objects does not fit"));
  }

  PropertyList read() { return object(root_, 0); }

private:
  /// Where an object's content begins, and how many parts it has.
  struct Span {
    std::size_t start;
    std::size_t count;
  };

  std::uint64_t number(std::size_t at, std::size_t size) const {
    if (size > bytes_.size() || at > bytes_.size() - size)
      refuse(marked("an object is cut short"));
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
      value = value << 8 | static_cast<unsigned char>(bytes_[at + i]);
    return value;
  }

  std::string_view content(const Span& span, std::size_t unit) const {
    if (span.count > bytes_.size() / unit || span.start > bytes_.size() - span.count * unit)
      refuse(marked("an object is cut short"));
    return bytes_.substr(span.start, span.count * unit);
  }

  void spend(std::size_t cost) {
    spent_ += cost;
    if (spent_ > expansionLimit)
      refuse(marked("its shared objects grow beyond all measure"));
  }

  Span span(std::size_t at) const {
    const auto low = number(at, 1) & 0x0F;
    if (low != 0x0F)
      return {at + 1, low};
    const auto marker = number(at + 1, 1);
    if ((marker & 0xF0) != integerMarker || (marker & 0x0F) > 3)
      refuse(marked("a length is no whole number"));
    const std::size_t size = std::size_t{1} << (marker & 0x0F);
    return {at + 2 + size, number(at + 2, size)};
  }

  PropertyList integer(std::size_t at, unsigned power) const {
    if (power > 4)
      refuse(marked("a whole number is wider than 128 bits"));
    if (power < 3)
      return number(at + 1, std::size_t{1} << power);
    if (power == 3)
      return static_cast<std::int64_t>(number(at + 1, 8));
    const auto high = number(at + 1, 8);
    const auto low = number(at + 9, 8);
    if (high == 0)
      return low;
    if (high != ~std::uint64_t{0} || low >> 63 == 0)
      refuse(marked("a whole number is beyond 64 bits"));
    return static_cast<std::int64_t>(low);
  }

  PropertyList real(std::size_t at, unsigned power) const {
    if (power == 2)
      return double{std::bit_cast<float>(static_cast<std::uint32_t>(number(at + 1, 4)))};
    if (power == 3)
      return std::bit_cast<double>(number(at + 1, 8));
    refuse(marked("a real number is neither of 32 nor of 64 bits"));
  }

  std::string ascii(const Span& span) const {
    const auto text = content(span, 1);
    for (const char c : text)
      if (static_cast<unsigned char>(c) > 0x7F)
        refuse(marked("a text is not ASCII"));
    return std::string(text);
  }

  std::string utf16(const Span& span) const {
    const auto raw = content(span, 2);
    std::u16string units(span.count, u'\0');
    for (std::size_t i = 0; i < span.count; ++i)
      units[i] = static_cast<char16_t>(number(span.start + 2 * i, 2));
    std::string text(raw.size() / 2 * 3, '\0');
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8(text.data(), static_cast<int32_t>(text.size()), &length, units.data(),
                static_cast<int32_t>(units.size()), &error);
    if (error != U_STRING_NOT_TERMINATED_WARNING && U_FAILURE(error))
      refuse(marked("a text is not UTF-16"));
    text.resize(static_cast<std::size_t>(length));
    return text;
  }

  PropertyList array(const Span& span, std::size_t depth) {
    content(span, referenceSize_);
    PropertyList::Array items;
    items.reserve(span.count);
    for (std::size_t i = 0; i < span.count; ++i)
      items.push_back(object(number(span.start + i * referenceSize_, referenceSize_), depth + 1));
    return items;
  }

  PropertyList dictionary(const Span& span, std::size_t depth) {
    content(span, 2 * referenceSize_);
    const std::size_t values = span.start + span.count * referenceSize_;
    PropertyList::Dictionary entries;
    for (std::size_t i = 0; i < span.count; ++i) {
      auto key = object(number(span.start + i * referenceSize_, referenceSize_), depth + 1);
      if (key.string() == nullptr)
        refuse(marked("a key is no text"));
      entries.insert_or_assign(
          *key.string(), object(number(values + i * referenceSize_, referenceSize_), depth + 1));
    }
    return entries;
  }

  PropertyList object(std::uint64_t index, std::size_t depth) {
    if (index >= count_)
      refuse(marked("a reference leads nowhere"));
    // Also ends a list that holds itself.
    if (depth > PropertyList::maximumDepth)
      refuse(marked("the values are nested too deeply"));
    const auto at = number(table_ + index * offsetSize_, offsetSize_);
    if (at < headerSize || at >= table_)
      refuse(marked("an object lies outside"));
    const auto marker = static_cast<unsigned>(number(at, 1));
    const unsigned low = marker & 0x0F;
    spend(sizeof(PropertyList));
    switch (marker & 0xF0) {
    case integerMarker:
      return integer(at, low);
    case realMarker:
      return real(at, low);
    case uidMarker:
      if (low > 7)
        refuse(marked("a reference is wider than 64 bits"));
      return PropertyList::UID{number(at + 1, low + 1)};
    default:
      return marker == falseMarker || marker == trueMarker ? PropertyList(marker == trueMarker)
             : marker == dateMarker ? PropertyList(Date{std::bit_cast<double>(number(at + 1, 8))})
                                    : compound(at, marker & 0xF0, depth);
    }
  }

  PropertyList compound(std::size_t at, unsigned marker, std::size_t depth) {
    const Span parts = span(at);
    spend(std::min(parts.count, bytes_.size()));
    switch (marker) {
    case dataMarker: {
      const auto bytes = content(parts, 1);
      return Data{{bytes.begin(), bytes.end()}};
    }
    case asciiMarker:
      return ascii(parts);
    case utf16Marker:
      return utf16(parts);
    case arrayMarker:
      return array(parts, depth);
    case dictionaryMarker:
      return dictionary(parts, depth);
    default:
      refuse(marked("an object is of no known type"));
    }
  }

  std::string_view bytes_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t root_ = 0;
  std::size_t table_ = 0;
  std::size_t spent_ = 0;
};

std::size_t bytesFor(std::uint64_t value) {
  return value <= 0xFF ? 1 : value <= 0xFFFF ? 2 : value <= 0xFFFFFFFF ? 4 : 8;
}

class Writer {
public:
  Data write(const PropertyList& root) {
    referenceSize_ = bytesFor(countOf(root, 0));
    append("bplist00");
    const auto top = object(root);
    const auto table = out_.size();
    const auto offsetSize = bytesFor(table);
    for (const auto offset : offsets_)
      number(offset, offsetSize);
    number(0, 6);
    number(offsetSize, 1);
    number(referenceSize_, 1);
    number(offsets_.size(), 8);
    number(top, 8);
    number(table, 8);
    return {std::move(out_)};
  }

private:
  /// An upper bound, texts that occur again counted again.
  static std::size_t countOf(const PropertyList& one, std::size_t depth) {
    if (depth > PropertyList::maximumDepth)
      refuse(marked("the values are nested too deeply"));
    std::size_t count = 1;
    if (const auto* items = one.array())
      for (const auto& item : *items)
        count += countOf(item, depth + 1);
    if (const auto* entries = one.dictionary())
      for (const auto& [unused, entry] : *entries)
        count += 1 + countOf(entry, depth + 1);
    return count;
  }

  void append(std::string_view bytes) { out_.insert(out_.end(), bytes.begin(), bytes.end()); }

  void number(std::uint64_t value, std::size_t size) {
    for (std::size_t i = size; i-- > 0;)
      out_.push_back(i < 8 ? static_cast<std::uint8_t>(value >> (8 * i)) : std::uint8_t{0});
  }

  void integer(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    const auto size = value < 0 ? 8 : bytesFor(bits);
    number(integerMarker | static_cast<unsigned>(std::countr_zero(size)), 1);
    number(bits, size);
  }

  void header(unsigned marker, std::size_t count) {
    number(marker | static_cast<unsigned>(std::min<std::size_t>(count, 0x0F)), 1);
    if (count >= 0x0F)
      integer(static_cast<std::int64_t>(count));
  }

  std::size_t begin() {
    offsets_.push_back(out_.size());
    return offsets_.size() - 1;
  }

  std::size_t text(const std::string& text) {
    if (const auto known = texts_.find(text); known != texts_.end())
      return known->second;
    const auto index = begin();
    texts_.emplace(text, index);
    if (std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; })) {
      header(asciiMarker, text.size());
      append(text);
      return index;
    }
    std::u16string units(text.size(), u'\0');
    int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(units.data(), static_cast<int32_t>(units.size()), &length, text.data(),
                  static_cast<int32_t>(text.size()), &error);
    if (U_FAILURE(error))
      refuse(marked("a text is not UTF-8"));
    units.resize(static_cast<std::size_t>(length));
    header(utf16Marker, units.size());
    for (const char16_t unit : units)
      number(unit, 2);
    return index;
  }

  /// Parts are written before what holds them, so that their numbers are known.
  std::size_t array(const PropertyList::Array& items) {
    std::vector<std::size_t> references;
    for (const auto& item : items)
      references.push_back(object(item));
    const auto index = begin();
    header(arrayMarker, items.size());
    for (const auto reference : references)
      number(reference, referenceSize_);
    return index;
  }

  std::size_t dictionary(const PropertyList::Dictionary& entries) {
    std::vector<std::size_t> references;
    for (const auto& [key, unused] : entries)
      references.push_back(text(key));
    for (const auto& [unused, entry] : entries)
      references.push_back(object(entry));
    const auto index = begin();
    header(dictionaryMarker, entries.size());
    for (const auto reference : references)
      number(reference, referenceSize_);
    return index;
  }

  std::size_t object(const PropertyList& one) {
    if (const auto* string = one.string())
      return text(*string);
    if (const auto* items = one.array())
      return array(*items);
    if (const auto* entries = one.dictionary())
      return dictionary(*entries);
    const auto index = begin();
    if (const auto* boolean = one.boolean()) {
      number(*boolean ? trueMarker : falseMarker, 1);
    } else if (const auto* whole = one.integer()) {
      integer(*whole);
    } else if (const auto* large = one.largeInteger()) {
      number(integerMarker | 4, 1);
      number(*large, 16);
    } else if (const auto* real = one.real()) {
      number(realMarker | 3, 1);
      number(std::bit_cast<std::uint64_t>(*real), 8);
    } else if (const auto* date = one.date()) {
      number(dateMarker, 1);
      number(std::bit_cast<std::uint64_t>(date->secondsSinceReferenceDate), 8);
    } else if (const auto* uid = one.uid()) {
      const auto size = bytesFor(uid->value);
      number(uidMarker | (size - 1), 1);
      number(uid->value, size);
    } else {
      const auto& bytes = one.data()->bytes;
      header(dataMarker, bytes.size());
      out_.insert(out_.end(), bytes.begin(), bytes.end());
    }
    return index;
  }

  std::vector<std::uint8_t> out_;
  std::vector<std::size_t> offsets_;
  std::unordered_map<std::string, std::size_t> texts_;
  std::size_t referenceSize_ = 1;
};

} // namespace

PropertyList detail::parseBinaryPropertyList(std::string_view bytes) {
  return Reader(bytes).read();
}

Data PropertyList::binary() const {
  return Writer().write(*this);
}

} // namespace tavrin
