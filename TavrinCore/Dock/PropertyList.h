#pragma once

#include "TavrinCore/Base/Data.h"
#include "TavrinCore/Base/Date.h"

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tavrin {

/// Bytes that are no property list, or a property list that cannot be written. `what()` is a
/// clause that can follow "because".
class PropertyListError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A property list, as a value. What is read is kept whole: a number keeps its sort, a date its
/// fraction of a second, and two dictionaries are equal when their entries are.
class PropertyList {
public:
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList, std::less<>>;
  /// A reference inside an archive; only the binary form has it. In XML it becomes a dictionary
  /// with the one key "CF$UID".
  struct UID {
    std::uint64_t value = 0;
    bool operator==(const UID&) const = default;
  };

  PropertyList() : value_(Dictionary{}) {}
  PropertyList(bool value) : value_(value) {}
  PropertyList(int value) : value_(std::int64_t{value}) {}
  PropertyList(std::int64_t value) : value_(value) {}
  /// Whole numbers that fit are held as `std::int64_t`.
  PropertyList(std::uint64_t value);
  PropertyList(double value) : value_(value) {}
  PropertyList(std::string value) : value_(std::move(value)) {}
  PropertyList(std::string_view value) : value_(std::string(value)) {}
  PropertyList(const char* value) : value_(std::string(value)) {}
  PropertyList(Date value) : value_(value) {}
  PropertyList(Data value) : value_(std::move(value)) {}
  PropertyList(UID value) : value_(value) {}
  PropertyList(Array value) : value_(std::move(value)) {}
  PropertyList(Dictionary value) : value_(std::move(value)) {}

  static constexpr std::size_t maximumSize = 64 * 1024 * 1024;
  static constexpr std::size_t maximumDepth = 128;

  /// Reads either form. Throws PropertyListError: neither form, cut short, a value that its tag
  /// does not allow, entities, deeper than `maximumDepth`, longer than `maximumSize`, a whole
  /// number beyond 64 bits, or shared objects that would grow beyond all measure.
  static PropertyList parse(std::string_view bytes);

  /// The XML form, keys sorted. Dates lose what is below a second. Throws PropertyListError for
  /// texts with characters that XML cannot hold and dates outside the years 0 to 32767.
  std::string xml() const;
  /// The binary form. Throws PropertyListError for texts that are no UTF-8.
  Data binary() const;

  const bool* boolean() const { return std::get_if<bool>(&value_); }
  const std::int64_t* integer() const { return std::get_if<std::int64_t>(&value_); }
  /// A whole number beyond the range of `integer`.
  const std::uint64_t* largeInteger() const { return std::get_if<std::uint64_t>(&value_); }
  const double* real() const { return std::get_if<double>(&value_); }
  const std::string* string() const { return std::get_if<std::string>(&value_); }
  const Date* date() const { return std::get_if<Date>(&value_); }
  const Data* data() const { return std::get_if<Data>(&value_); }
  const UID* uid() const { return std::get_if<UID>(&value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value_); }
  Array* array() { return std::get_if<Array>(&value_); }
  Dictionary* dictionary() { return std::get_if<Dictionary>(&value_); }

  /// An entry of a dictionary; null when this is none or has no such key.
  const PropertyList* entry(std::string_view key) const;

  /// Defaulted where the class is complete: asked for before, a standard library takes the class for
  /// one that may be moved byte by byte, which its dictionaries may not.
  bool operator==(const PropertyList&) const;

private:
  std::variant<bool, std::int64_t, std::uint64_t, double, std::string, Date, Data, UID, Array,
               Dictionary>
      value_;
};

namespace detail {
PropertyList parseXMLPropertyList(std::string_view bytes);
PropertyList parseBinaryPropertyList(std::string_view bytes);
} // namespace detail

} // namespace tavrin
