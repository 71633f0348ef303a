#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class FieldType { boolean, integer, number, text, choice, date, uuid, data, list, record };

/// A table line without its C++ types, for editors and the command line.
struct FieldInfo : FieldHints {
  std::string key;
  FieldType type = FieldType::text;
  bool isRequired = false;
  /// The value may be absent altogether (std::optional).
  bool isNullable = false;
  /// The texts of a choice; for a list of choices those of its elements.
  std::vector<std::string> choices;
  /// What each of `choices` is called.
  std::vector<std::string> choiceTitles;
  /// The type of a list's elements.
  std::optional<FieldType> elementType;
  /// What a new record holds; null when absent.
  JSONValue defaultValue;
  /// The lines of a nested record, or of a list's element records.
  std::vector<FieldInfo> fields;

  /// How its numbers are shown beside the record's other settings.
  FieldDisplay displayIn(const JSONValue& record) const;
  /// The values to choose from beside the record's other settings; empty where any may be given.
  std::vector<FieldChoice> choicesIn(const JSONValue& record) const;
  /// What one element of a list is, as a line of its own.
  FieldInfo element() const;
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
    for (const auto& [value, name] : EnumNames<T>::names) {
      info.choices.emplace_back(name);
      if constexpr (TitledEnum<T>)
        info.choiceTitles.emplace_back(tavrin::title(value));
      else
        info.choiceTitles.emplace_back(name);
    }
  } else if constexpr (Record<T>) {
    info.fields = describe<T>();
  }
}

template <class R, class M> FieldHints hintsOf(const Field<R, M>&) {
  return {};
}
template <class R, class M> FieldHints hintsOf(const DescribedField<R, M>& field) {
  return field.hints;
}

template <class R, class M>
FieldInfo describeField(const R& fresh, const Field<R, M>& field, const FieldHints& hints) {
  using Value = typename OptionalTraits<M>::Value;
  FieldInfo info;
  static_cast<FieldHints&>(info) = hints;
  info.key = field.key;
  if (info.title.empty())
    info.title = field.key;
  info.type = fieldType<Value>();
  info.isRequired = field.isRequired;
  info.isNullable = OptionalTraits<M>::isOptional;
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
        return std::vector<FieldInfo>{
            detail::describeField(fresh, field, detail::hintsOf(field))...};
      },
      R::fields());
}

} // namespace tavrin
