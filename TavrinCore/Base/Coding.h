#pragma once

#include "TavrinCore/Base/Data.h"
#include "TavrinCore/Base/Date.h"
#include "TavrinCore/Base/JSONValue.h"
#include "TavrinCore/Base/UUID.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// JSON coding of records. A record states its keys once, in a static `fields()`:
///
///     struct TimerSettings {
///       std::vector<double> presets = {300, 600};
///       std::string tintHex = "#FF9F0A";
///       static constexpr auto fields() {
///         return std::tuple{optional("presets", &TimerSettings::presets).titled("Presets"),
///                           optional("tintHex", &TimerSettings::tintHex).titled("Tint")};
///       }
///       bool operator==(const TimerSettings&) const = default;
///     };
///
/// `decode<R>`, `encode` and `describe<R>` are derived from it. A key that is missing or null
/// leaves an optional field at the value of a default-constructed record; a value of the wrong
/// type is an error either way. Keys that the table does not name are ignored; a record with a
/// member `JSONValue::Object unrecognized` keeps them there and writes them back. An `int` holds
/// what whole numbers people set; one beyond it counts as the nearest it holds.
namespace tavrin {

/// JSON that does not fit the record it is read as. `what()` is a clause that can follow
/// "because", with the path of keys to the fault: `"pomodoro._0.focus" must be a number`.
class CodingError : public std::runtime_error {
public:
  explicit CodingError(const std::string& message) : std::runtime_error(message) {}
  CodingError(std::string path, std::string fault);

  /// The same fault seen from one level further out.
  CodingError inside(std::string_view key) const;

private:
  std::string path_;
  std::string fault_;
};

/// The texts of an enumeration without payloads, in declaration order. Specialise with
/// `static constexpr std::array names = {std::pair{E::first, std::string_view{"first"}}, ...};`
template <class E> struct EnumNames;

template <class E>
concept NamedEnum = std::is_enum_v<E> && requires {
  EnumNames<E>::names;
};

template <NamedEnum E> constexpr std::string_view nameOf(E value) {
  for (const auto& [candidate, name] : EnumNames<E>::names)
    if (candidate == value)
      return name;
  return {};
}

template <NamedEnum E> constexpr std::optional<E> enumNamed(std::string_view text) {
  for (const auto& [value, name] : EnumNames<E>::names)
    if (name == text)
      return value;
  return std::nullopt;
}

/// All cases in declaration order.
template <NamedEnum E> constexpr auto allCases() {
  constexpr auto& names = EnumNames<E>::names;
  std::array<E, std::size(names)> cases{};
  for (std::size_t i = 0; i < cases.size(); ++i)
    cases[i] = names[i].first;
  return cases;
}

template <class R>
concept Record = requires {
  R::fields();
};

/// Decoding and encoding of one type; specialise for types that are no records.
template <class T> struct Coder;

template <class T> T decode(const JSONValue& json) {
  return Coder<T>::decode(json);
}
template <class T> JSONValue encode(const T& value) {
  return Coder<T>::encode(value);
}

namespace detail {
[[noreturn]] void throwWrongType(std::string_view expected);
}

/// The member `key` of an object; an error when it is missing, and for a null that `T` does not
/// allow.
template <class T> T decodeMember(const JSONValue& json, std::string_view key) {
  if (json.object() == nullptr)
    detail::throwWrongType("an object");
  const auto* value = json.member(key);
  if (value == nullptr)
    throw CodingError(std::string(key), "is missing");
  try {
    return decode<T>(*value);
  } catch (const CodingError& error) {
    throw error.inside(key);
  }
}

/// The bounds an editor offers, in stored units; decoding does not apply them.
struct FieldRange {
  double lower = 0;
  double upper = 0;
  bool operator==(const FieldRange&) const = default;
};

/// One line of a record's table.
template <class R, class M> struct Field {
  std::string_view key;
  M R::*member;
  bool isRequired;
  std::string_view title = {};
  /// What the stored number counts ("s", "ml"), for display; empty for plain numbers.
  std::string_view unit = {};
  std::optional<FieldRange> range = {};
  bool clampsOnDecoding = false;

  constexpr Field titled(std::string_view text) const {
    Field copy = *this;
    copy.title = text;
    return copy;
  }
  constexpr Field in(std::string_view unitSymbol) const {
    Field copy = *this;
    copy.unit = unitSymbol;
    return copy;
  }
  constexpr Field ranging(double lower, double upper) const {
    Field copy = *this;
    copy.range = FieldRange{lower, upper};
    return copy;
  }
  /// Like `ranging`, and a decoded number outside the range becomes the nearest bound.
  constexpr Field clamped(double lower, double upper) const {
    Field copy = ranging(lower, upper);
    copy.clampsOnDecoding = true;
    return copy;
  }
};

template <class R, class M> constexpr Field<R, M> required(std::string_view key, M R::*member) {
  return {key, member, true};
}
template <class R, class M> constexpr Field<R, M> optional(std::string_view key, M R::*member) {
  return {key, member, false};
}

enum class FieldType { boolean, integer, number, text, choice, date, uuid, data, list, record };

/// A table line without its C++ types, for editors and the command line.
struct FieldInfo {
  std::string key;
  std::string title;
  FieldType type = FieldType::text;
  bool isRequired = false;
  /// The value may be absent altogether (std::optional).
  bool isNullable = false;
  std::string unit;
  std::optional<FieldRange> range;
  /// The texts of a choice; for a list of choices those of its elements.
  std::vector<std::string> choices;
  /// The type of a list's elements.
  std::optional<FieldType> elementType;
  /// What a new record holds; null when absent.
  JSONValue defaultValue;
  /// The lines of a nested record, or of a list's element records.
  std::vector<FieldInfo> fields;
};

namespace detail {

template <class T> struct OptionalTraits {
  using Value = T;
  static constexpr bool isOptional = false;
};
template <class T> struct OptionalTraits<std::optional<T>> {
  using Value = T;
  static constexpr bool isOptional = true;
};

template <class T> struct ListTraits { static constexpr bool isList = false; };
template <class T> struct ListTraits<std::vector<T>> {
  using Element = T;
  static constexpr bool isList = true;
};

template <class R, class M>
void decodeField(R& record, const Field<R, M>& field, const JSONValue::Object& object) {
  const auto found = object.find(field.key);
  if (found == object.end() || found->second.isNull()) {
    if (field.isRequired)
      throw CodingError(std::string(field.key), "is missing");
    return;
  }
  try {
    if constexpr (std::is_arithmetic_v<M> && !std::is_same_v<M, bool>) {
      if (field.clampsOnDecoding) {
        // Read at full width: also a number that the member cannot hold has a nearest bound.
        using Wide = std::conditional_t<std::is_integral_v<M>, std::int64_t, M>;
        const auto value = decode<Wide>(found->second);
        const auto lower = static_cast<Wide>(field.range->lower);
        const auto upper = static_cast<Wide>(field.range->upper);
        record.*field.member = static_cast<M>(value < lower   ? lower
                                              : value > upper ? upper
                                                              : value);
        return;
      }
    }
    record.*field.member = decode<M>(found->second);
  } catch (const CodingError& error) {
    throw error.inside(field.key);
  }
}

template <class R, class M>
void encodeField(const R& record, const Field<R, M>& field, JSONValue::Object& object) {
  const M& value = record.*field.member;
  if constexpr (OptionalTraits<M>::isOptional) {
    if (value)
      object.emplace(field.key, encode(*value));
  } else {
    object.emplace(field.key, encode(value));
  }
}

template <class R>
concept KeepsUnrecognized = std::same_as<decltype(R::unrecognized), JSONValue::Object>;

} // namespace detail

/// The coding that a record's table gives, also for those that specialise `Coder` around it.
template <Record R> struct RecordCoder {
  static R decode(const JSONValue& json) {
    const auto* object = json.object();
    if (object == nullptr)
      detail::throwWrongType("an object");
    R record{};
    std::apply([&](const auto&... field) { (detail::decodeField(record, field, *object), ...); },
               R::fields());
    if constexpr (detail::KeepsUnrecognized<R>)
      record.unrecognized = unknownMembers(json);
    return record;
  }
  static JSONValue encode(const R& record) {
    JSONValue::Object object;
    std::apply([&](const auto&... field) { (detail::encodeField(record, field, object), ...); },
               R::fields());
    if constexpr (detail::KeepsUnrecognized<R>)
      object.insert(record.unrecognized.begin(), record.unrecognized.end());
    return object;
  }
  /// The members of an object that the table does not name.
  static JSONValue::Object unknownMembers(const JSONValue& json) {
    JSONValue::Object unknown;
    for (const auto& member : *json.object())
      if (!std::apply([&](const auto&... field) { return ((field.key == member.first) || ...); },
                      R::fields()))
        unknown.insert(member);
    return unknown;
  }
};

template <Record R> struct Coder<R> : RecordCoder<R> {};

template <> struct Coder<bool> {
  static bool decode(const JSONValue& json);
  static JSONValue encode(bool value) { return value; }
};
template <> struct Coder<double> {
  static double decode(const JSONValue& json);
  static JSONValue encode(double value) { return value; }
};
template <> struct Coder<std::int64_t> {
  static std::int64_t decode(const JSONValue& json);
  static JSONValue encode(std::int64_t value) { return value; }
};
template <std::integral T>
requires(!std::is_same_v<T, bool> && !std::is_same_v<T, std::int64_t>) struct Coder<T> {
  static T decode(const JSONValue& json) {
    const std::int64_t value = Coder<std::int64_t>::decode(json);
    if constexpr (std::is_same_v<T, int>)
      return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                       std::numeric_limits<int>::max()));
    if (!std::in_range<T>(value))
      detail::throwWrongType("a whole number in range");
    return static_cast<T>(value);
  }
  static JSONValue encode(T value) { return static_cast<std::int64_t>(value); }
};
template <> struct Coder<std::string> {
  static std::string decode(const JSONValue& json);
  static JSONValue encode(const std::string& value) { return value; }
};
template <> struct Coder<Date> {
  static Date decode(const JSONValue& json) { return {Coder<double>::decode(json)}; }
  static JSONValue encode(Date value) { return value.secondsSinceReferenceDate; }
};
template <> struct Coder<UUID> {
  static UUID decode(const JSONValue& json);
  static JSONValue encode(const UUID& value) { return value.text(); }
};
template <> struct Coder<Data> {
  static Data decode(const JSONValue& json);
  static JSONValue encode(const Data& value) { return value.base64(); }
};
template <> struct Coder<JSONValue> {
  static JSONValue decode(const JSONValue& json) { return json; }
  static JSONValue encode(const JSONValue& value) { return value; }
};
template <NamedEnum E> struct Coder<E> {
  static E decode(const JSONValue& json) {
    const auto value = enumNamed<E>(Coder<std::string>::decode(json));
    if (!value) {
      std::string choices = "one of";
      for (const auto& [unused, name] : EnumNames<E>::names)
        choices.append(choices.size() > 6 ? ", " : " ").append(name);
      detail::throwWrongType(choices);
    }
    return *value;
  }
  static JSONValue encode(E value) { return nameOf(value); }
};
template <class T> struct Coder<std::optional<T>> {
  static std::optional<T> decode(const JSONValue& json) {
    if (json.isNull())
      return std::nullopt;
    return Coder<T>::decode(json);
  }
  static JSONValue encode(const std::optional<T>& value) {
    return value ? Coder<T>::encode(*value) : JSONValue();
  }
};
template <class T> struct Coder<std::vector<T>> {
  static std::vector<T> decode(const JSONValue& json) {
    const auto* array = json.array();
    if (array == nullptr)
      detail::throwWrongType("a list");
    std::vector<T> values;
    values.reserve(array->size());
    for (const auto& item : *array) {
      try {
        values.push_back(Coder<T>::decode(item));
      } catch (const CodingError& error) {
        throw error.inside(std::to_string(values.size()));
      }
    }
    return values;
  }
  static JSONValue encode(const std::vector<T>& values) {
    JSONValue::Array array;
    array.reserve(values.size());
    for (const auto& value : values)
      array.push_back(Coder<T>::encode(value));
    return array;
  }
};

template <Record R> std::vector<FieldInfo> describe();

namespace detail {

template <class T> constexpr FieldType fieldType() {
  if constexpr (std::is_same_v<T, bool>)
    return FieldType::boolean;
  else if constexpr (std::is_integral_v<T>)
    return FieldType::integer;
  else if constexpr (std::is_floating_point_v<T>)
    return FieldType::number;
  else if constexpr (NamedEnum<T>)
    return FieldType::choice;
  else if constexpr (std::is_same_v<T, Date>)
    return FieldType::date;
  else if constexpr (std::is_same_v<T, UUID>)
    return FieldType::uuid;
  else if constexpr (std::is_same_v<T, Data>)
    return FieldType::data;
  else if constexpr (ListTraits<T>::isList)
    return FieldType::list;
  else if constexpr (Record<T>)
    return FieldType::record;
  else
    return FieldType::text;
}

/// Choices and nested lines of a value's or an element's type.
template <class T> void describeType(FieldInfo& info) {
  if constexpr (NamedEnum<T>) {
    for (const auto& [unused, name] : EnumNames<T>::names)
      info.choices.emplace_back(name);
  } else if constexpr (Record<T>) {
    info.fields = describe<T>();
  }
}

template <class R, class M> FieldInfo describeField(const R& fresh, const Field<R, M>& field) {
  using Value = typename OptionalTraits<M>::Value;
  FieldInfo info;
  info.key = field.key;
  info.title = field.title.empty() ? field.key : field.title;
  info.type = fieldType<Value>();
  info.isRequired = field.isRequired;
  info.isNullable = OptionalTraits<M>::isOptional;
  info.unit = field.unit;
  info.range = field.range;
  info.defaultValue = encode(fresh.*field.member);
  if constexpr (ListTraits<Value>::isList) {
    using Element = typename ListTraits<Value>::Element;
    info.elementType = fieldType<Element>();
    describeType<Element>(info);
  } else {
    describeType<Value>(info);
  }
  return info;
}

} // namespace detail

/// The record's table, in its order.
template <Record R> std::vector<FieldInfo> describe() {
  const R fresh{};
  return std::apply(
      [&](const auto&... field) {
        return std::vector<FieldInfo>{detail::describeField(fresh, field)...};
      },
      R::fields());
}

} // namespace tavrin
