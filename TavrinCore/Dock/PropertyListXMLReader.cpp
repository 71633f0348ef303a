#include "TavrinCore/Dock/PropertyList.h"

#include "TavrinCore/Text/Numbers.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <expat.h>
#include <fmt/format.h>
#include <limits>
#include <memory>
#include <utility>

namespace tavrin {
namespace {

enum class Tag { plist, dict, array, string, integer, real, yes, no, date, data, key };

constexpr std::array tagNames = {
    std::pair{Tag::plist, std::string_view("plist")},
    std::pair{Tag::dict, std::string_view("dict")},
    std::pair{Tag::array, std::string_view("array")},
    std::pair{Tag::string, std::string_view("string")},
    std::pair{Tag::integer, std::string_view("integer")},
    std::pair{Tag::real, std::string_view("real")},
    std::pair{Tag::yes, std::string_view("true")},
    std::pair{Tag::no, std::string_view("false")},
    std::pair{Tag::date, std::string_view("date")},
    std::pair{Tag::data, std::string_view("data")},
    std::pair{Tag::key, std::string_view("key")},
};

constexpr std::string_view blanks = " \t\r\n";

/// `sentence` has a place for the text.
[[noreturn]] void refuse(const char* sentence, std::string_view text) {
  throw PropertyListError(translated(sentence, {{"text", text.substr(0, 40)}}));
}

PropertyList integerFrom(std::string_view source) {
  auto text = trimmed(source, blanks);
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+'))
    text.remove_prefix(1);
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint64_t magnitude = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
  if (error != std::errc() || end != text.data() + text.size())
    refuse(marked("\"{text}\" is no whole number of 64 bits"), source);
  if (!isNegative)
    return magnitude;
  if (magnitude > std::uint64_t{1} << 63)
    refuse(marked("\"{text}\" is no whole number of 64 bits"), source);
  return static_cast<std::int64_t>(~magnitude + 1);
}

PropertyList realFrom(std::string_view source) {
  auto text = trimmed(source, blanks);
  if (text.starts_with('+'))
    text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = doubleFromChars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    refuse(marked("\"{text}\" is no number"), source);
  return value;
}

/// "2026-11-14T21:20:47Z"; the year may have more than four digits.
PropertyList dateFrom(std::string_view source) {
  auto text = trimmed(source, blanks);
  const auto take = [&](std::size_t digits, std::string_view after) {
    const auto number = takeDigits(text, digits);
    if (!number || !text.starts_with(after))
      refuse(marked("\"{text}\" is no date"), source);
    text.remove_prefix(after.size());
    return *number;
  };
  const auto yearDigits = text.find('-');
  if (yearDigits == std::string_view::npos || yearDigits < 4 || yearDigits > 5)
    refuse(marked("\"{text}\" is no date"), source);
  const std::chrono::year year(take(yearDigits, "-"));
  const std::chrono::month month(static_cast<unsigned>(take(2, "-")));
  const std::chrono::day day(static_cast<unsigned>(take(2, "T")));
  const int hour = take(2, ":");
  const int minute = take(2, ":");
  const int second = take(2, "Z");
  const std::chrono::year_month_day date(year, month, day);
  if (!date.ok() || hour > 23 || minute > 59 || second > 60 || !text.empty())
    refuse(marked("\"{text}\" is no date"), source);
  const auto days = std::chrono::sys_days(date).time_since_epoch().count();
  return Date::fromUnixSeconds(double(days) * 86400 + hour * 3600 + minute * 60 + second);
}

PropertyList dataFrom(const std::string& source) {
  std::string packed;
  for (const char c : source)
    if (blanks.find(c) == std::string_view::npos)
      packed += c;
  auto data = Data::fromBase64(packed);
  if (!data)
    refuse(marked("\"{text}\" is no base64 data"), source);
  return std::move(*data);
}

class XMLReader {
public:
  XMLReader() : parser_(XML_ParserCreate(nullptr)) {
    if (!parser_)
      throw std::bad_alloc();
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), started, ended);
    XML_SetCharacterDataHandler(parser_.get(), said);
    XML_SetEntityDeclHandler(parser_.get(), declared);
  }

  PropertyList read(std::string_view bytes) {
    const auto status =
        XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
    if (error_)
      std::rethrow_exception(error_);
    if (status != XML_STATUS_OK)
      throw PropertyListError(fault());
    if (!root_)
      throw PropertyListError(translated("there is no value in it"));
    return std::move(*root_);
  }

private:
  struct Level {
    Tag tag;
    PropertyList value;
    std::optional<std::string> key = {};
  };

  /// The parser's own words are English.
  std::string fault() const {
    const auto line = XML_GetCurrentLineNumber(parser_.get());
    return textLanguage() == "en"
               ? fmt::format("{} in line {}", XML_ErrorString(XML_GetErrorCode(parser_.get())),
                             line)
               : translated("line {number} is not written as XML asks", {{"number", line}});
  }

  void start(std::string_view name) {
    const auto* found = std::find_if(tagNames.begin(), tagNames.end(),
                                     [&](auto& one) { return one.second == name; });
    if (found == tagNames.end())
      throw PropertyListError(
          translated("<{name}> has no meaning there", {{"name", name.substr(0, 40)}}));
    const Tag tag = found->first;
    const bool isOutside = levels_.empty();
    if (isOutside != (tag == Tag::plist))
      throw PropertyListError(translated("<plist> must be around everything"));
    if (!isOutside)
      checkPlace(tag);
    if (levels_.size() > PropertyList::maximumDepth)
      throw PropertyListError(translated("the values are nested too deeply"));
    levels_.push_back({tag, tag == Tag::array ? PropertyList(PropertyList::Array{})
                                              : PropertyList(PropertyList::Dictionary{})});
    text_.clear();
  }

  void checkPlace(Tag tag) const {
    const Level& parent = levels_.back();
    switch (parent.tag) {
    case Tag::plist:
      if (root_ || tag == Tag::key)
        throw PropertyListError(translated("there must be one value in <plist>"));
      return;
    case Tag::dict:
      if (parent.key.has_value() == (tag == Tag::key))
        throw PropertyListError(translated("a dictionary must alternate keys and values"));
      return;
    case Tag::array:
      if (tag == Tag::key)
        throw PropertyListError(translated("a key must stand in a dictionary"));
      return;
    default:
      throw PropertyListError(translated("a simple value must hold no other"));
    }
  }

  void end() {
    Level level = std::move(levels_.back());
    levels_.pop_back();
    std::string text = std::exchange(text_, {});
    switch (level.tag) {
    case Tag::plist:
      return;
    case Tag::key:
      levels_.back().key = std::move(text);
      return;
    case Tag::dict:
      if (level.key)
        throw PropertyListError(
            translated("the key \"{key}\" has no value", {{"key", level.key->substr(0, 40)}}));
      return store(std::move(level.value));
    case Tag::array:
    case Tag::yes:
    case Tag::no:
      return store(level.tag == Tag::array ? std::move(level.value)
                                           : PropertyList(level.tag == Tag::yes));
    case Tag::string:
      return store(std::move(text));
    case Tag::integer:
      return store(integerFrom(text));
    case Tag::real:
      return store(realFrom(text));
    case Tag::date:
      return store(dateFrom(text));
    case Tag::data:
      return store(dataFrom(text));
    }
  }

  void store(PropertyList value) {
    Level& parent = levels_.back();
    if (parent.tag == Tag::plist)
      root_ = std::move(value);
    else if (parent.tag == Tag::array)
      parent.value.array()->push_back(std::move(value));
    else
      parent.value.dictionary()->insert_or_assign(*std::exchange(parent.key, std::nullopt),
                                                  std::move(value));
  }

  void say(std::string_view text) {
    const Tag tag = levels_.back().tag;
    const bool holdsText = tag != Tag::plist && tag != Tag::dict && tag != Tag::array &&
                           tag != Tag::yes && tag != Tag::no;
    if (holdsText)
      text_ += text;
    else if (!trimmed(text, blanks).empty())
      refuse(marked("\"{text}\" is no value"), trimmed(text, blanks));
  }

  /// Exceptions must not pass through the C parser: they stop it and are thrown afterwards.
  template <class Work> static void guarded(void* self, Work work) {
    auto& reader = *static_cast<XMLReader*>(self);
    if (reader.error_)
      return;
    try {
      work(reader);
    } catch (...) {
      reader.error_ = std::current_exception();
      XML_StopParser(reader.parser_.get(), XML_FALSE);
    }
  }
  static void XMLCALL started(void* self, const XML_Char* name, const XML_Char**) {
    guarded(self, [&](XMLReader& reader) { reader.start(name); });
  }
  static void XMLCALL ended(void* self, const XML_Char*) {
    guarded(self, [](XMLReader& reader) { reader.end(); });
  }
  static void XMLCALL said(void* self, const XML_Char* text, int length) {
    guarded(self, [&](XMLReader& reader) {
      reader.say(std::string_view(text, static_cast<std::size_t>(length)));
    });
  }
  static void XMLCALL declared(void* self, const XML_Char*, int, const XML_Char*, int,
                               const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*) {
    guarded(self, [](XMLReader&) { throw PropertyListError(translated("it declares entities")); });
  }

  struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };
  std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser_;
  std::vector<Level> levels_;
  std::string text_;
  std::optional<PropertyList> root_;
  std::exception_ptr error_;
};

} // namespace

PropertyList detail::parseXMLPropertyList(std::string_view bytes) {
  return XMLReader().read(bytes);
}

} // namespace tavrin
