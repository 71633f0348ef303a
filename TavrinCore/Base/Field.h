#pragma once

#include "TavrinCore/Text/Texts.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace tavrin {

class JSONValue;

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

/// What an enumeration's cases are called for the user, in the order of their `EnumNames`.
/// Specialise with `static constexpr auto titles = std::to_array<std::string_view>({marked("…")});`
template <class E> struct EnumTitles;

template <class E>
concept TitledEnum = NamedEnum<E> && requires {
  EnumTitles<E>::titles;
};

/// In the user's language. Empty for a value that is none of the cases.
template <TitledEnum E> std::string_view title(E value) {
  constexpr auto& names = EnumNames<E>::names;
  static_assert(std::size(names) == std::size(EnumTitles<E>::titles));
  for (std::size_t i = 0; i < std::size(names); ++i)
    if (names[i].first == value)
      return translation(EnumTitles<E>::titles[i]);
  return {};
}

template <class R>
concept Record = requires {
  R::fields();
};

/// The bounds an editor offers, in stored units; decoding does not apply them.
struct FieldRange {
  double lower = 0;
  double upper = 0;
  bool operator==(const FieldRange&) const = default;
};

/// What a value stands for where its type does not say so: which control suits it, and what it is
/// checked against. Of a list it tells what each element is.
enum class FieldRole {
  plain,
  /// "#FBBF24".
  colour,
  /// An absolute path, or one that begins with "~".
  file,
  folder,
  /// The name of a place, which `latitude` and `longitude` of the same record locate.
  city,
  latitude,
  longitude,
  /// An identifier such as Europe/Berlin.
  timeZone,
  /// The identifiers of the calendar service.
  calendar,
  account,
  reminderList,
  /// A link's name such as eth0.
  networkLink,
  /// A player's name on the session bus.
  player,
  /// An AppEntry.
  application,
  /// A desktop entry's name, with an action of it after a slash.
  applicationAction,
  /// A name of the symbol table.
  symbol,
  /// A line for the user's shell.
  command,
  /// "owner/name".
  repository,
  /// An address on the web.
  link,
  severalLines,
  /// A Hotkey.
  shortcut,
  dateAndTime,
};

/// One value that a setting may take, and what it is called.
struct FieldChoice {
  std::string value;
  std::string title;
  bool operator==(const FieldChoice&) const = default;
};

/// How a stored number is shown: divided by `factor`, before `unit`.
struct FieldDisplay {
  std::string_view unit = {};
  double factor = 1;
  bool operator==(const FieldDisplay&) const = default;
};

/// When a setting has an effect: where another one of the same record is this, or is not.
struct FieldCondition {
  /// Empty for always.
  std::string_view key = {};
  /// Compact JSON; "null" is also a key that is absent.
  std::string_view value = {};
  bool isNegated = false;

  bool holds(const JSONValue& record) const;
  bool operator==(const FieldCondition&) const = default;
};

/// What editors and the command line know of a field beside its coding. Texts are literals in
/// English; whoever shows them translates them. scripts/texts takes them from `titled` and its
/// like.
struct FieldHints {
  std::string_view title = {};
  /// One sentence on what it does.
  std::string_view help = {};
  /// Fields of one group stand together under its title; empty for the ungrouped, which come first.
  std::string_view group = {};
  /// What the stored number counts ("s", "ml"), for display; empty for plain numbers.
  std::string_view unit = {};
  /// Bounds the numbers, also those in a list; the length of a list of anything else.
  std::optional<FieldRange> range = {};
  FieldRole role = FieldRole::plain;
  /// What having no value, or an empty one, means: "Automatic". Empty where it means nothing more.
  std::string_view absent = {};
  FieldCondition condition = {};
  /// By how much a stepper goes, in stored units; 0 for one of what is shown.
  double step = 0;
  FieldDisplay display = {};
  /// In place of `display` where it depends on the record's other settings.
  FieldDisplay (*displayBy)(const JSONValue& record) = nullptr;
  /// The values that a text may take, where they depend on the record's other settings.
  std::vector<FieldChoice> (*choicesBy)(const JSONValue& record) = nullptr;
  /// What a value of the right type and range may lack: a clause that follows "must be".
  std::optional<std::string> (*fault)(const JSONValue& value) = nullptr;
  /// Kept by the program itself; editors do not show it.
  bool isHidden = false;
};

template <class R, class M> struct DescribedField;

/// One line of a record's table, as coding needs it.
template <class R, class M> struct Field {
  std::string_view key;
  M R::*member;
  bool isRequired;
  bool clampsOnDecoding = false;
  /// Of what is clamped.
  FieldRange bounds = {};

  constexpr DescribedField<R, M> titled(std::string_view text) const;
  /// A decoded number outside the range becomes the nearest bound.
  constexpr DescribedField<R, M> clamped(double lower, double upper) const;
  /// Editors do not show it.
  constexpr DescribedField<R, M> hidden() const;
};

/// A line with what editors are told.
template <class R, class M> struct DescribedField : Field<R, M> {
  FieldHints hints = {};

  constexpr DescribedField titled(std::string_view text) const {
    return with(&FieldHints::title, text);
  }
  constexpr DescribedField helped(std::string_view sentence) const {
    return with(&FieldHints::help, sentence);
  }
  constexpr DescribedField grouped(std::string_view group) const {
    return with(&FieldHints::group, group);
  }
  constexpr DescribedField in(std::string_view unitSymbol) const {
    return with(&FieldHints::unit, unitSymbol);
  }
  constexpr DescribedField ranging(double lower, double upper) const {
    return with(&FieldHints::range, std::optional(FieldRange{lower, upper}));
  }
  constexpr DescribedField clamped(double lower, double upper) const {
    DescribedField copy = ranging(lower, upper);
    copy.clampsOnDecoding = true;
    copy.bounds = {lower, upper};
    return copy;
  }
  constexpr DescribedField as(FieldRole role) const { return with(&FieldHints::role, role); }
  constexpr DescribedField absentAs(std::string_view meaning) const {
    return with(&FieldHints::absent, meaning);
  }
  constexpr DescribedField enabledWhen(std::string_view key, std::string_view json) const {
    return with(&FieldHints::condition, FieldCondition{key, json, false});
  }
  constexpr DescribedField enabledUnless(std::string_view key, std::string_view json) const {
    return with(&FieldHints::condition, FieldCondition{key, json, true});
  }
  constexpr DescribedField stepping(double step) const { return with(&FieldHints::step, step); }
  /// `factor` stored units are one that is shown: shownIn("min", 60) of seconds.
  constexpr DescribedField shownIn(std::string_view unit, double factor) const {
    return with(&FieldHints::display, FieldDisplay{unit, factor});
  }
  constexpr DescribedField shownBy(FieldDisplay (*display)(const JSONValue&)) const {
    return with(&FieldHints::displayBy, display);
  }
  constexpr DescribedField choosing(std::vector<FieldChoice> (*choices)(const JSONValue&)) const {
    return with(&FieldHints::choicesBy, choices);
  }
  constexpr DescribedField checked(std::optional<std::string> (*fault)(const JSONValue&)) const {
    return with(&FieldHints::fault, fault);
  }
  constexpr DescribedField hidden() const { return with(&FieldHints::isHidden, true); }

private:
  template <class T> constexpr DescribedField with(T FieldHints::*hint, T value) const {
    DescribedField copy = *this;
    copy.hints.*hint = value;
    return copy;
  }
};

template <class R, class M>
constexpr DescribedField<R, M> Field<R, M>::titled(std::string_view text) const {
  return DescribedField<R, M>{*this}.titled(text);
}
template <class R, class M>
constexpr DescribedField<R, M> Field<R, M>::clamped(double lower, double upper) const {
  return DescribedField<R, M>{*this}.clamped(lower, upper);
}
template <class R, class M> constexpr DescribedField<R, M> Field<R, M>::hidden() const {
  return DescribedField<R, M>{*this}.hidden();
}

template <class R, class M> constexpr Field<R, M> required(std::string_view key, M R::*member) {
  return {key, member, true};
}
template <class R, class M> constexpr Field<R, M> optional(std::string_view key, M R::*member) {
  return {key, member, false};
}

namespace detail {
template <class R, class M> constexpr Field<R, M> codedField(const Field<R, M>& field) {
  return field;
}
} // namespace detail

/// The record's table without what is said for editors: what coding carries along.
template <Record R> constexpr auto codedFields() {
  return std::apply([](const auto&... field) { return std::tuple{detail::codedField(field)...}; },
                    R::fields());
}

} // namespace tavrin
