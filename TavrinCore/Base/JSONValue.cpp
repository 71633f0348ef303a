#include "TavrinCore/Base/JSONValue.h"

#include "TavrinCore/Text/JSONText.h"
#include "TavrinCore/Text/Numbers.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <charconv>
#include <cmath>
#include <simdjson.h>

namespace tavrin {
namespace {

namespace ondemand = simdjson::ondemand;

/// RFC 8259, section 2.
constexpr std::string_view jsonSpace = " \t\n\r";

bool isLower(char c) {
  return c >= 'a' && c <= 'z';
}

/// The parser's sentence as a clause that can follow "because".
std::string clause(simdjson::error_code error) {
  if (error == simdjson::EMPTY)
    return translated("there is nothing in it");
  if (textLanguage() != "en")
    return translated("it is not written as JSON asks");
  std::string text = simdjson::error_message(error);
  if (text.size() > 1 && text[0] >= 'A' && text[0] <= 'Z' && (isLower(text[1]) || text[1] == ' '))
    text[0] = static_cast<char>(text[0] - 'A' + 'a');
  if (text.ends_with('.'))
    text.pop_back();
  return text;
}

template <class T> T unwrap(simdjson::simdjson_result<T> result) {
  T value;
  if (const auto error = std::move(result).get(value))
    throw JSONError(clause(error));
  return value;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The number grammar of RFC 8259, section 6.
bool isNumber(std::string_view text) {
  std::size_t i = 0;
  const auto digits = [&] {
    const std::size_t start = i;
    while (i < text.size() && isDigit(text[i]))
      ++i;
    return i > start;
  };
  if (i < text.size() && text[i] == '-')
    ++i;
  if (i < text.size() && text[i] == '0')
    ++i;
  else if (!digits())
    return false;
  if (i < text.size() && text[i] == '.') {
    ++i;
    if (!digits())
      return false;
  }
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
      ++i;
    if (!digits())
      return false;
  }
  return i == text.size();
}

JSONValue::Number readNumber(std::string_view token) {
  const auto text = trimmed(token, jsonSpace);
  if (!isNumber(text))
    throw JSONError(translated("a number is not written as JSON asks"));
  return {std::string(text)};
}

/// `source` is the document or a value in it; a number that is the whole document never gets here.
template <class Source> JSONValue read(Source& source, std::size_t depth) {
  if (depth > JSONValue::maximumDepth)
    throw JSONError(translated("the values are nested too deeply"));
  switch (unwrap(source.type())) {
  case ondemand::json_type::array: {
    JSONValue::Array array;
    for (auto item : unwrap(source.get_array())) {
      ondemand::value value = unwrap(std::move(item));
      array.push_back(read(value, depth + 1));
    }
    return array;
  }
  case ondemand::json_type::object: {
    JSONValue::Object object;
    for (auto item : unwrap(source.get_object())) {
      ondemand::field field = unwrap(std::move(item));
      std::string key(unwrap(field.unescaped_key()));
      ondemand::value value = field.value();
      object.insert_or_assign(std::move(key), read(value, depth + 1));
    }
    return object;
  }
  case ondemand::json_type::number: {
    if constexpr (std::is_same_v<Source, ondemand::value>)
      return readNumber(source.raw_json_token());
    else
      throw JSONError(translated("a number is not written as JSON asks"));
  }
  case ondemand::json_type::string:
    return std::string(unwrap(source.get_string()));
  case ondemand::json_type::boolean:
    return unwrap(source.get_bool());
  case ondemand::json_type::null:
    if (!unwrap(simdjson::simdjson_result<bool>(source.is_null())))
      throw JSONError(translated("a value is neither null nor anything else"));
    return nullptr;
  }
  throw JSONError(translated("a value is of no JSON type"));
}

/// What stands behind the backslash for `c`; 'u' where that is four digits, 0 where none is wanted.
char escapeOf(char c) {
  switch (c) {
  case '"':
  case '\\':
    return c;
  case '\n':
    return 'n';
  case '\r':
    return 'r';
  case '\t':
    return 't';
  default:
    return static_cast<unsigned char>(c) < 0x20 ? 'u' : '\0';
  }
}

/// `indent` below 0 writes everything on one line.
void write(std::string& out, const JSONValue& value, int indent);

void breakLine(std::string& out, int indent) {
  if (indent < 0)
    return;
  out += '\n';
  out.append(static_cast<std::size_t>(indent) * 2, ' ');
}

void writeArray(std::string& out, const JSONValue::Array& array, int indent) {
  out += '[';
  const int inner = indent < 0 ? -1 : indent + 1;
  for (bool first = true; const auto& item : array) {
    if (!first)
      out += ',';
    first = false;
    breakLine(out, inner);
    write(out, item, inner);
  }
  if (!array.empty())
    breakLine(out, indent);
  out += ']';
}

void writeObject(std::string& out, const JSONValue::Object& object, int indent) {
  out += '{';
  const int inner = indent < 0 ? -1 : indent + 1;
  for (bool first = true; const auto& [key, item] : object) {
    if (!first)
      out += ',';
    first = false;
    breakLine(out, inner);
    appendJSONText(out, key);
    out += indent < 0 ? ":" : ": ";
    write(out, item, inner);
  }
  if (!object.empty())
    breakLine(out, indent);
  out += '}';
}

void write(std::string& out, const JSONValue& value, int indent) {
  if (value.isNull())
    out += "null";
  else if (const auto* boolean = value.boolean())
    out += *boolean ? "true" : "false";
  else if (const auto* number = value.number())
    out += number->text;
  else if (const auto* string = value.string())
    appendJSONText(out, *string);
  else if (const auto* array = value.array())
    writeArray(out, *array, indent);
  else
    writeObject(out, *value.object(), indent);
}

template <class T> std::string shortestText(T value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return {buffer, result.ptr};
}

} // namespace

void appendJSONText(std::string& out, std::string_view text) {
  static constexpr char digits[] = "0123456789abcdef";
  out += '"';
  const char* from = text.data();
  const char* const end = from + text.size();
  while (from != end) {
    const char* const plain = from;
    char escape = 0;
    while (from != end && (escape = escapeOf(*from)) == 0)
      ++from;
    out.append(plain, from);
    if (from == end)
      break;
    out += '\\';
    out += escape;
    if (escape == 'u')
      out.append("00").append(1, digits[*from >> 4]).append(1, digits[*from & 15]);
    ++from;
  }
  out += '"';
}

std::size_t jsonTextLength(std::string_view text) {
  std::size_t length = text.size() + 2;
  for (const char c : text)
    if (const char escape = escapeOf(c))
      length += escape == 'u' ? 5 : 1;
  return length;
}

JSONValue::JSONValue(int value) : value_(Number{shortestText(value)}) {}
JSONValue::JSONValue(std::int64_t value) : value_(Number{shortestText(value)}) {}
JSONValue::JSONValue(double value) {
  if (!std::isfinite(value))
    throw JSONError(translated("a number that is not finite has no JSON form"));
  value_ = Number{shortestText(value)};
}

JSONValue JSONValue::parse(std::string_view text) {
  if (text.size() > maximumSize)
    throw JSONError(translated("the text is too long"));
  if (const auto whole = trimmed(text, jsonSpace); isNumber(whole))
    return readNumber(whole);
  ondemand::parser parser;
  const simdjson::padded_string padded(text);
  ondemand::document document = unwrap(parser.iterate(padded));
  JSONValue value = read(document, 0);
  if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
    throw JSONError(translated("there is more after the value"));
  return value;
}

std::string JSONValue::prettyPrinted() const {
  std::string out;
  write(out, *this, 0);
  return out;
}

std::string JSONValue::compact() const {
  std::string out;
  write(out, *this, -1);
  return out;
}

const JSONValue* JSONValue::member(std::string_view key) const {
  const auto* members = object();
  if (members == nullptr)
    return nullptr;
  const auto found = members->find(key);
  return found == members->end() ? nullptr : &found->second;
}

std::optional<double> JSONValue::doubleValue() const {
  const auto* number = this->number();
  if (number == nullptr)
    return std::nullopt;
  double value = 0;
  const char* end = number->text.data() + number->text.size();
  const auto result = doubleFromChars(number->text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end)
    return std::nullopt;
  return value;
}

std::optional<std::int64_t> JSONValue::integerValue() const {
  const auto* number = this->number();
  if (number == nullptr)
    return std::nullopt;
  std::int64_t whole = 0;
  const char* end = number->text.data() + number->text.size();
  const auto result = std::from_chars(number->text.data(), end, whole);
  if (result.ec == std::errc() && result.ptr == end)
    return whole;
  const auto value = doubleValue();
  constexpr double exact = 9'007'199'254'740'992; // 2^53: above it a double skips whole numbers
  if (!value || std::floor(*value) != *value || std::fabs(*value) > exact)
    return std::nullopt;
  return static_cast<std::int64_t>(*value);
}

bool JSONValue::operator==(const JSONValue&) const = default;

} // namespace tavrin
