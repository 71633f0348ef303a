#pragma once

#include "TavrinCore/Base/Data.h"
#include "TavrinCore/Base/Date.h"
#include "TavrinCore/Base/Field.h"
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
/// `decode<R>` and `encode` are derived from it, and `describe<R>` of FieldInfo.h for editors. A
/// key that is missing or null leaves an optional field at the value of a default-constructed
/// record; a value of the wrong type is an error either way. Keys that the table does not name are
/// ignored; a record with a member `JSONValue::Object unrecognized` keeps them there and writes
/// them back. An `int` holds what whole numbers people set; one beyond it counts as the nearest it
/// holds.
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
        const auto lower = static_cast<Wide>(field.bounds.lower);
        const auto upper = static_cast<Wide>(field.bounds.upper);
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
    constexpr auto fields = codedFields<R>();
    std::apply([&](const auto&... field) { (detail::decodeField(record, field, *object), ...); },
               fields);
    if constexpr (detail::KeepsUnrecognized<R>)
      record.unrecognized = unknownMembers(json);
    return record;
  }
  static JSONValue encode(const R& record) {
    JSONValue::Object object;
    constexpr auto fields = codedFields<R>();
    std::apply([&](const auto&... field) { (detail::encodeField(record, field, object), ...); },
               fields);
    if constexpr (detail::KeepsUnrecognized<R>)
      object.insert(record.unrecognized.begin(), record.unrecognized.end());
    return object;
  }
  /// The members of an object that the table does not name.
  static JSONValue::Object unknownMembers(const JSONValue& json) {
    JSONValue::Object unknown;
    constexpr auto fields = codedFields<R>();
    for (const auto& member : *json.object())
      if (!std::apply([&](const auto&... field) { return ((field.key == member.first) || ...); },
                      fields))
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

} // namespace tavrin
