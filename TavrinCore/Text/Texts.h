#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tavrin {

class TextCatalogue;

/// Texts for users are written in English where they are shown, as whole sentences with named
/// places, and are looked up in the catalogue of the user's language by that English text.
/// scripts/texts collects what stands in the calls below into po/tavrin.pot; what is given to them
/// is therefore a literal.

/// What stands in a text's place "{name}".
class TextPlace {
public:
  TextPlace(std::string_view name, std::string_view value) : name_(name), value_(value) {}
  TextPlace(std::string_view name, const char* value) : name_(name), value_(value) {}
  TextPlace(std::string_view name, const std::string& value) : name_(name), value_(value) {}
  template <std::integral Number>
  TextPlace(std::string_view name, Number value)
      : name_(name), value_(std::to_string(value)), isNumber_(true) {}
  /// With its thousands apart.
  static TextPlace ofCount(std::string_view name, long long count);
  /// With as many digits as tell it, and the language's decimal separator.
  TextPlace(std::string_view name, double value);
  /// A toolkit's text.
  template <class Text>
  requires requires(const Text& text) {
    { text.toStdString() } -> std::same_as<std::string>;
  }
  TextPlace(std::string_view name, const Text& value) : name_(name), value_(value.toStdString()) {}

  std::string_view name() const { return name_; }
  const std::string& value() const { return value_; }
  /// Numbers take no direction of their own.
  bool isNumber() const { return isNumber_; }

private:
  std::string_view name_;
  std::string value_;
  bool isNumber_ = false;
};

using TextPlaces = std::initializer_list<TextPlace>;

/// `english` in the user's language; itself where there is no translation.
std::string translated(std::string_view english);

/// The same with its places filled: translated("Delete “{name}”?", {{"name", name}}). A translation
/// that lacks one of the text's places, or has one that is not given, counts as none. In a language
/// that is written from right to left, what is filled in is isolated from the direction of the
/// words around it (Unicode Standard Annex 9).
std::string translated(std::string_view english, TextPlaces places);

/// The text for `count` things by the language's own rule: plural("{count} file", "{count} files",
/// n). The place "{count}" is filled in by itself, and may be missing.
std::string plural(std::string_view one, std::string_view many, long long count,
                   TextPlaces places = {});

/// A text that has several meanings in English, which `context` tells apart.
std::string translatedIn(std::string_view context, std::string_view english,
                         TextPlaces places = {});

/// Marks a text in a table; whoever shows it translates it.
constexpr const char* marked(const char* english) {
  return english;
}

/// Without a copy, for texts of tables: lives as long as `english` and the catalogue in use.
std::string_view translation(std::string_view english);

/// The language the texts are in, such as "de"; "en" without a catalogue.
std::string textLanguage();

/// Whether that language is written from right to left.
bool isRightToLeft();

/// From here on texts come from `catalogue`, which is not copied and has to stay; none for English.
/// To be called before there are threads. `language` is an identifier such as "de" or "pt_BR".
void useTexts(const TextCatalogue* catalogue, std::string_view language);

} // namespace tavrin
