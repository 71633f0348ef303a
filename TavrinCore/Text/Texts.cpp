#include "TavrinCore/Text/Texts.h"

#include "TavrinCore/Text/CodePoints.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/TextCatalogue.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <optional>
#include <unicode/dcfmtsym.h>
#include <unicode/uchar.h>

namespace tavrin {
namespace {

constexpr std::string_view countPlace = "count";

struct Use {
  const TextCatalogue* catalogue = nullptr;
  std::string language = "en";
  bool isRightToLeft = false;
};

Use& use() {
  static Use one;
  return one;
}

/// The next "{name}" of `text` from `from` on: where it begins, and its name. Names are letters.
struct Place {
  std::size_t begin;
  std::string_view name;
  std::size_t end() const { return begin + name.size() + 2; }
};

std::optional<Place> placeFrom(std::string_view text, std::size_t from) {
  while ((from = text.find('{', from)) != std::string_view::npos) {
    const auto end = text.find_first_of("{}", from + 1);
    if (end == std::string_view::npos)
      return std::nullopt;
    const auto name = text.substr(from + 1, end - from - 1);
    const bool isName = !name.empty() && std::ranges::all_of(name, [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    });
    if (text[end] == '}' && isName)
      return Place{from, name};
    from = end + (text[end] == '}' ? 1 : 0);
  }
  return std::nullopt;
}

bool hasPlace(std::string_view text, std::string_view name) {
  for (auto place = placeFrom(text, 0); place; place = placeFrom(text, place->end()))
    if (place->name == name)
      return true;
  return false;
}

/// Whether a translation says all that its text does, and nothing that nobody tells.
bool suits(std::string_view translation, std::string_view english, bool countMayLack) {
  for (auto place = placeFrom(translation, 0); place; place = placeFrom(translation, place->end()))
    if (!hasPlace(english, place->name) && !(countMayLack && place->name == countPlace))
      return false;
  for (auto place = placeFrom(english, 0); place; place = placeFrom(english, place->end()))
    if (!hasPlace(translation, place->name) && !(countMayLack && place->name == countPlace))
      return false;
  return true;
}

/// Whether a translation has a direction of its own: that of its first letter outside places, which
/// are isolated.
bool beginsRightToLeft(std::string_view text) {
  bool isInPlace = false;
  UCharDirection found = U_OTHER_NEUTRAL;
  forEachCharacter(text, [&](UChar32 character, std::string_view) {
    isInPlace = character == '{' || (isInPlace && character != '}');
    const auto direction = isInPlace ? U_OTHER_NEUTRAL : u_charDirection(character);
    if (direction == U_LEFT_TO_RIGHT || direction == U_RIGHT_TO_LEFT ||
        direction == U_RIGHT_TO_LEFT_ARABIC)
      found = direction;
    return found == U_OTHER_NEUTRAL;
  });
  return found == U_RIGHT_TO_LEFT || found == U_RIGHT_TO_LEFT_ARABIC;
}

class Filling {
public:
  Filling(TextPlaces places, const TextPlace* count, bool isolates)
      : places_(places), count_(count), isolates_(isolates) {}

  std::string of(std::string_view text) const {
    std::string filled;
    std::size_t done = 0;
    for (auto place = placeFrom(text, 0); place; place = placeFrom(text, place->end())) {
      const auto* value = named(place->name);
      if (value == nullptr)
        continue;
      filled += text.substr(done, place->begin - done);
      append(filled, *value);
      done = place->end();
    }
    filled += text.substr(done);
    // One whose letters are all foreign would run the other way.
    const bool isMixed = filled.find("\u2068") != std::string::npos;
    return isolates_ && isMixed && !beginsRightToLeft(text) ? "\u200F" + filled : filled;
  }

private:
  const TextPlace* named(std::string_view name) const {
    const auto found = std::ranges::find(places_, name, &TextPlace::name);
    if (found != places_.end())
      return found;
    return count_ != nullptr && name == count_->name() ? count_ : nullptr;
  }

  void append(std::string& filled, const TextPlace& value) const {
    filled += isolates_ && !value.isNumber() ? isolated(value.value()) : value.value();
  }

  TextPlaces places_;
  const TextPlace* count_;
  bool isolates_;
};

} // namespace

TextPlace::TextPlace(std::string_view name, double value)
    : name_(name), value_(fmt::format("{}", value)), isNumber_(true) {
  const auto point = value_.find('.');
  if (point != std::string::npos)
    value_.replace(point, 1, decimalSeparator());
}

TextPlace TextPlace::ofCount(std::string_view name, long long count) {
  TextPlace place(name, countText(count));
  place.isNumber_ = true;
  return place;
}

std::string_view translation(std::string_view english) {
  // The text that is empty names the catalogue's own header.
  const auto* catalogue = use().catalogue;
  if (catalogue == nullptr || english.empty())
    return english;
  const auto found = catalogue->find(english);
  return found.empty() ? english : found;
}

std::string translated(std::string_view english) {
  return std::string(translation(english));
}

std::string translated(std::string_view english, TextPlaces places) {
  const auto found = translation(english);
  const bool isTranslated = found.data() != english.data() && suits(found, english, false);
  return Filling(places, nullptr, isTranslated && use().isRightToLeft)
      .of(isTranslated ? found : english);
}

std::string plural(std::string_view one, std::string_view many, long long count,
                   TextPlaces places) {
  const auto size = count < 0 ? 0ULL - static_cast<unsigned long long>(count)
                              : static_cast<unsigned long long>(count);
  const auto english = size == 1 ? one : many;
  const auto* catalogue = use().catalogue;
  const auto found = catalogue != nullptr ? catalogue->find(one, size) : std::string_view();
  const bool isTranslated = !found.empty() && suits(found, many, true);
  const auto counted = TextPlace::ofCount(countPlace, count);
  return Filling(places, &counted, isTranslated && use().isRightToLeft)
      .of(isTranslated ? found : english);
}

std::string translatedIn(std::string_view context, std::string_view english, TextPlaces places) {
  const auto* catalogue = use().catalogue;
  const auto found = catalogue != nullptr ? catalogue->find(context, english) : std::string_view();
  const bool isTranslated = !found.empty() && suits(found, english, false);
  return Filling(places, nullptr, isTranslated && use().isRightToLeft)
      .of(isTranslated ? found : english);
}

std::string textLanguage() {
  return use().language;
}

bool isRightToLeft() {
  return use().isRightToLeft;
}

void useTexts(const TextCatalogue* catalogue, std::string_view language) {
  auto& one = use();
  one.catalogue = catalogue;
  one.language = catalogue != nullptr ? std::string(language) : "en";
  // By the script that a language is written in when its identifier names none.
  constexpr std::array<std::string_view, 10> rightToLeft{"ar", "arc", "ckb", "dv", "fa",
                                                         "he", "ps",  "sd",  "ug", "ur"};
  one.isRightToLeft =
      std::ranges::count(rightToLeft, one.language.substr(0, one.language.find_first_of("_@-"))) >
      0;
}

} // namespace tavrin
