#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tavrin {

/// A text that is no JSON value, or one beyond the bounds of `JSONValue::parse`.
class JSONError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A generic JSON value (RFC 8259). A number is its text as written, so that 1e400,
/// 12345678901234567890123 and 1.0 come back unchanged; two numbers are equal when
/// their texts are. Objects are held in key order; of a repeated key the last value counts.
class JSONValue {
public:
  struct Number {
    std::string text;
    bool operator==(const Number&) const = default;
  };
  using Array = std::vector<JSONValue>;
  using Object = std::map<std::string, JSONValue, std::less<>>;

  JSONValue() = default;
  JSONValue(std::nullptr_t) {}
  JSONValue(bool value) : value_(value) {}
  JSONValue(int value);
  JSONValue(std::int64_t value);
  /// The shortest text that reads back as the same double. Throws JSONError when not finite.
  JSONValue(double value);
  JSONValue(Number value) : value_(std::move(value)) {}
  JSONValue(std::string value) : value_(std::move(value)) {}
  JSONValue(std::string_view value) : value_(std::string(value)) {}
  JSONValue(const char* value) : value_(std::string(value)) {}
  JSONValue(Array value) : value_(std::move(value)) {}
  JSONValue(Object value) : value_(std::move(value)) {}

  static constexpr std::size_t maximumDepth = 256;
  static constexpr std::size_t maximumSize = 64 * 1024 * 1024;

  /// Reads one JSON text. Throws JSONError: not UTF-8, not JSON, nested deeper than
  /// `maximumDepth`, longer than `maximumSize` bytes.
  static JSONValue parse(std::string_view text);

  /// Indented by two spaces, keys sorted, ends without a line break.
  std::string prettyPrinted() const;
  /// On one line, keys sorted.
  std::string compact() const;

  bool isNull() const { return std::holds_alternative<std::nullptr_t>(value_); }
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  const Number* number() const { return std::get_if<Number>(&value_); }
  const std::string* string() const { return std::get_if<std::string>(&value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Object* object() const { return std::get_if<Object>(&value_); }
  Array* array() { return std::get_if<Array>(&value_); }
  Object* object() { return std::get_if<Object>(&value_); }

  /// The member of an object; null when this is no object or has no such member.
  const JSONValue* member(std::string_view key) const;

  /// The number as a double; no value when this is no number or it is beyond a double's range.
  std::optional<double> doubleValue() const;
  /// The number when it is whole and fits ("5", "5.0", "5e0"); no value otherwise.
  std::optional<std::int64_t> integerValue() const;

  /// Defaulted where the class is complete: asked for before, a standard library takes the class for
  /// one that may be moved byte by byte, which its dictionaries may not.
  bool operator==(const JSONValue&) const;

private:
  std::variant<std::nullptr_t, bool, Number, std::string, Array, Object> value_;
};

} // namespace tavrin
