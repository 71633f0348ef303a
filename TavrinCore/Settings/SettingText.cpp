#include "TavrinCore/Settings/SettingText.h"

#include "TavrinCore/Base/Data.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Settings/SettingError.h"
#include "TavrinCore/Text/Numbers.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <memory>
#include <unicode/listformatter.h>

namespace tavrin {
namespace {

std::string lowered(std::string_view text) {
  std::string result(text);
  for (auto& c : result)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

[[noreturn]] void refuse(const FieldInfo& field, std::string_view text) {
  throw SettingError(
      translated("\"{key}\" must be {allowed}, not \"{text}\"",
                 {{"key", field.key}, {"allowed", allowedText(field)}, {"text", text}}));
}

/// A range bounds the numbers in a list, and the length of a list of anything else.
bool rangeCountsElements(const FieldInfo& list) {
  return list.elementType != FieldType::integer && list.elementType != FieldType::number;
}

bool isHotkey(const FieldInfo& field) {
  static const auto hotkeyFields = describe<Hotkey>();
  return field.type == FieldType::record &&
         std::ranges::equal(field.fields, hotkeyFields, {}, &FieldInfo::key, &FieldInfo::key);
}

bool isSeconds(const FieldInfo& field) {
  return field.unit == "s";
}

std::string numberText(const FieldInfo& field, double value) {
  if (isSeconds(field))
    return durationText(value);
  const bool sticks = field.unit == "°" || field.unit == "%";
  return field.unit.empty()
             ? fmt::format("{}", value)
             : fmt::format("{}{}{}", value, sticks ? "" : " ", translation(field.unit));
}

JSONValue switchFromText(const FieldInfo& field, std::string_view text) {
  const auto word = lowered(text);
  for (const std::string_view yes :
       {std::string_view("yes"), std::string_view("true"), std::string_view("on"),
        std::string_view("1"), translation("yes")})
    if (word == yes)
      return true;
  for (const std::string_view no :
       {std::string_view("no"), std::string_view("false"), std::string_view("off"),
        std::string_view("0"), translation("no")})
    if (word == no)
      return false;
  refuse(field, text);
}

std::optional<double> plainNumber(std::string_view text, std::string_view unit) {
  double value = 0;
  const auto [end, error] = doubleFromChars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || !std::isfinite(value))
    return std::nullopt;
  auto rest = text.substr(static_cast<std::size_t>(end - text.data()));
  while (rest.starts_with(' '))
    rest.remove_prefix(1);
  const bool isUnit =
      !unit.empty() && (lowered(rest) == lowered(unit) || rest == translation(unit));
  return rest.empty() || isUnit ? std::optional(value) : std::nullopt;
}

JSONValue numberFromText(const FieldInfo& field, std::string_view text) {
  const auto value = isSeconds(field) ? durationFromText(text) : plainNumber(text, field.unit);
  const bool isInRange =
      value && (!field.range || (*value >= field.range->lower && *value <= field.range->upper));
  if (!isInRange)
    refuse(field, text);
  if (field.type == FieldType::number)
    return *value;
  if (*value != std::floor(*value) || std::abs(*value) > 9e15)
    refuse(field, text);
  return static_cast<std::int64_t>(*value);
}

JSONValue choiceFromText(const FieldInfo& field, std::string_view text) {
  const auto word = lowered(text);
  std::vector<std::string> begun;
  for (const auto& choice : field.choices) {
    if (lowered(choice) == word)
      return choice;
    if (!word.empty() && lowered(choice).starts_with(word))
      begun.push_back(choice);
  }
  if (begun.size() == 1)
    return begun.front();
  refuse(field, text);
}

JSONValue jsonFromText(const FieldInfo& field, std::string_view text) {
  try {
    auto value = JSONValue::parse(text);
    if (const auto clause = refusalOf({field}, JSONValue::Object{{field.key, value}});
        !clause.empty())
      throw SettingError(clause);
    return value;
  } catch (const JSONError&) {
    refuse(field, text);
  }
}

/// A list of applications, each of which may be told by its name alone.
bool listsApplications(const FieldInfo& field) {
  return field.role == FieldRole::application && field.elementType == FieldType::record;
}

JSONValue listFromText(const FieldInfo& field, std::string_view text) {
  const bool hasPlainItems =
      field.elementType != FieldType::record && field.elementType != FieldType::list;
  for (const std::string_view nothing :
       {std::string_view("none"), std::string_view("null"), std::string_view("empty"),
        translation("none"), translation("empty")})
    if (lowered(text) == nothing)
      text = {};
  const bool namesApplications = listsApplications(field);
  if (text.starts_with('[') || (!text.empty() && !hasPlainItems && !namesApplications))
    return jsonFromText(field, text);
  JSONValue::Array values;
  const auto element = field.element();
  while (!text.empty()) {
    const auto end = std::min(text.find(','), text.size());
    auto item = text.substr(0, end);
    while (item.starts_with(' '))
      item.remove_prefix(1);
    while (item.ends_with(' '))
      item.remove_suffix(1);
    if (namesApplications && item.empty())
      refuse(field, "");
    values.push_back(namesApplications && !item.starts_with('{')
                         ? JSONValue(JSONValue::Object{{"path", std::string(item)}})
                         : settingFromText(element, item, {}));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (rangeCountsElements(field) && field.range &&
      !(static_cast<double>(values.size()) >= field.range->lower &&
        static_cast<double>(values.size()) <= field.range->upper))
    refuse(field, translated("a list of {number}", {{"number", values.size()}}));
  return values;
}

/// What a text of that role is.
constexpr std::string_view allowedText(FieldRole role) {
  switch (role) {
  case FieldRole::colour:
    return marked("a colour such as #FBBF24");
  case FieldRole::file:
  case FieldRole::folder:
    return marked("an absolute path");
  case FieldRole::timeZone:
    return marked("a time zone such as Europe/Berlin");
  case FieldRole::symbol:
    return marked("the name of a symbol such as bolt.fill");
  case FieldRole::repository:
    return marked("a repository written owner/name");
  case FieldRole::link:
    return marked("an address such as https://example.org");
  default:
    return marked("text");
  }
}

std::string rangeText(const FieldInfo& field) {
  return translated("{least} to {most}", {{"least", numberText(field, field.range->lower)},
                                          {"most", numberText(field, field.range->upper)}});
}

std::string scalarAllowedText(const FieldInfo& field) {
  switch (field.type) {
  case FieldType::boolean:
    return translated("yes or no");
  case FieldType::integer:
  case FieldType::number:
    if (field.range)
      return rangeText(field);
    return isSeconds(field)                   ? translated("a length of time such as 25m")
           : field.type == FieldType::integer ? translated("a whole number")
                                              : translated("a number");
  case FieldType::choice:
    return alternatives(field.choices);
  case FieldType::date:
    return translated("a date such as 2026-12-24T18:00, tomorrow or +14d");
  case FieldType::uuid:
    return translated("an identifier such as 6F9619FF-8B86-D011-B42D-00C04FC964FF");
  case FieldType::data:
    return translated("base64 text");
  case FieldType::record:
    return isHotkey(field) ? translated("a shortcut such as ctrl+alt+P")
                           : translated("a JSON object");
  case FieldType::list:
    return translated("a list");
  case FieldType::text:
    return translated(allowedText(field.role));
  }
  return translated("text");
}

/// Whether a value that is there has its line's type and lies in its range.
bool isAllowed(const FieldInfo& field, const JSONValue& value) {
  const auto number = value.doubleValue();
  switch (field.type) {
  case FieldType::boolean:
    return value.boolean() != nullptr;
  case FieldType::integer:
  case FieldType::number:
    return number && (field.type == FieldType::number || value.integerValue()) &&
           (!field.range || (*number >= field.range->lower && *number <= field.range->upper));
  case FieldType::text:
    return value.string() != nullptr;
  case FieldType::choice:
    return value.string() != nullptr && std::ranges::count(field.choices, *value.string()) > 0;
  case FieldType::date:
    return number.has_value();
  case FieldType::uuid:
    return value.string() != nullptr && UUID::parse(*value.string());
  case FieldType::data:
    return value.string() != nullptr && Data::fromBase64(*value.string());
  case FieldType::list:
    return value.array() != nullptr &&
           (!field.range || !rangeCountsElements(field) ||
            (static_cast<double>(value.array()->size()) >= field.range->lower &&
             static_cast<double>(value.array()->size()) <= field.range->upper));
  case FieldType::record:
    return value.object() != nullptr;
  }
  return false;
}

std::optional<Hotkey> storedHotkey(const JSONValue& value) {
  try {
    return decode<Hotkey>(value);
  } catch (const CodingError&) {
    return std::nullopt;
  }
}

std::string refusalAt(const FieldInfo& field, const JSONValue& value, const std::string& path) {
  // Its modifiers are a number, which their line does not tell.
  if (isHotkey(field) && storedHotkey(value))
    return {};
  if (!isAllowed(field, value))
    return translated(
        "\"{path}\" must be {allowed}, not {value}",
        {{"path", path}, {"allowed", allowedText(field)}, {"value", value.compact()}});
  if (field.type == FieldType::record) {
    auto clause = refusalOf(field.fields, value);
    return clause.empty()
               ? clause
               : translated("in \"{path}\" {clause}", {{"path", path}, {"clause", clause}});
  }
  if (field.type == FieldType::list) {
    const auto element = field.element();
    for (std::size_t i = 0; i < value.array()->size(); ++i)
      if (auto clause = refusalAt(element, (*value.array())[i], fmt::format("{}.{}", path, i));
          !clause.empty())
        return clause;
  }
  return {};
}

/// As the language of the texts writes lists; English without a comma before the last word.
std::string joined(const std::vector<std::string>& words, const char* last,
                   UListFormatterType type) {
  if (textLanguage() != "en") {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::ListFormatter> lists(icu::ListFormatter::createInstance(
        icu::Locale(textLanguage().c_str()), type, ULISTFMT_WIDTH_WIDE, error));
    std::vector<icu::UnicodeString> parts;
    for (const auto& word : words)
      parts.push_back(icu::UnicodeString::fromUTF8(word));
    icu::UnicodeString list;
    std::string text;
    if (lists != nullptr)
      lists->format(parts.data(), static_cast<std::int32_t>(parts.size()), list, error);
    if (U_SUCCESS(error))
      return list.toUTF8String(text);
  }
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i)
    text += (i == 0 ? "" : i + 1 == words.size() ? last : ", ") + words[i];
  return text;
}

} // namespace

std::string alternatives(const std::vector<std::string>& words) {
  return joined(words, " or ", ULISTFMT_TYPE_OR);
}

std::string enumeration(const std::vector<std::string>& words) {
  return joined(words, " and ", ULISTFMT_TYPE_AND);
}

std::string noneCalled(std::string_view what, std::string_view reference,
                       const std::vector<std::string>& names) {
  std::string quoted;
  for (const auto& name : names)
    quoted += fmt::format("{}\"{}\"", quoted.empty() ? "" : ", ", name);
  const TextPlaces places = {{"thing", translation(what)}, {"name", reference}, {"names", quoted}};
  return names.empty() ? translated("no {thing} is called \"{name}\"; there are none yet", places)
         : names.size() == 1
             ? translated("no {thing} is called \"{name}\"; there is {names}", places)
             : translated("no {thing} is called \"{name}\"; there are {names}", places);
}

JSONValue settingFromText(const FieldInfo& field, std::string_view text, Date now) {
  if (field.isNullable &&
      (lowered(text) == "null" || lowered(text) == "none" || text == translation("none")))
    return {};
  switch (field.type) {
  case FieldType::boolean:
    return switchFromText(field, text);
  case FieldType::integer:
  case FieldType::number:
    return numberFromText(field, text);
  case FieldType::text:
    return text;
  case FieldType::choice:
    return choiceFromText(field, text);
  case FieldType::date:
    if (const auto date = dateFromText(text, now))
      return date->secondsSinceReferenceDate;
    refuse(field, text);
  case FieldType::uuid:
    if (const auto id = UUID::parse(text))
      return id->text();
    refuse(field, text);
  case FieldType::data:
    if (!Data::fromBase64(text))
      refuse(field, text);
    return text;
  case FieldType::list:
    return listFromText(field, text);
  case FieldType::record:
    return isHotkey(field) && !text.starts_with('{') ? encode(hotkeyFromText(text))
                                                     : jsonFromText(field, text);
  }
  refuse(field, text);
}

std::string settingText(const FieldInfo& field, const JSONValue& value) {
  if (value.isNull())
    return translated("none");
  const auto number = value.doubleValue();
  if (field.type == FieldType::boolean && value.boolean() != nullptr)
    return *value.boolean() ? translated("yes") : translated("no");
  if ((field.type == FieldType::integer || field.type == FieldType::number) && number)
    return numberText(field, *number);
  if (field.type == FieldType::date && number)
    return dateText({*number});
  if (field.type == FieldType::list && value.array() != nullptr) {
    std::string text;
    for (const auto& item : *value.array())
      text += (text.empty() ? "" : ", ") + settingText(field.element(), item);
    return text.empty() ? translated("empty") : text;
  }
  if (const auto hotkey = isHotkey(field) ? storedHotkey(value) : std::nullopt)
    return hotkeyText(*hotkey);
  if (const auto* string = value.string())
    return string->empty() ? translated("empty") : *string;
  return value.compact();
}

std::string allowedText(const FieldInfo& field) {
  std::string text;
  if (field.type != FieldType::list) {
    text = scalarAllowedText(field);
  } else if (rangeCountsElements(field) && field.range) {
    text = translated("a list of {least} to {most}",
                      {{"least", field.range->lower}, {"most", field.range->upper}});
  } else {
    text =
        listsApplications(field)
            ? translated("a list of applications by their names, such as vim, org.gnome.Terminal")
            : translated("a list, each {allowed}",
                         {{"allowed", scalarAllowedText(field.element())}});
  }
  return field.isNullable ? translated("{allowed}, or null", {{"allowed", text}}) : text;
}

std::string refusalOf(const std::vector<FieldInfo>& fields, const JSONValue& settings) {
  if (settings.object() == nullptr)
    return translated("the settings must be a JSON object");
  for (const auto& [key, value] : *settings.object()) {
    const auto field = std::ranges::find(fields, key, &FieldInfo::key);
    if (field == fields.end()) {
      std::vector<std::string> keys;
      for (const auto& known : fields)
        keys.push_back(known.key);
      return keys.empty() ? translated("there is nothing to set, so no \"{key}\"", {{"key", key}})
                          : translated("there is no setting \"{key}\", only {keys}",
                                       {{"key", key}, {"keys", enumeration(keys)}});
    }
    // Null stands for a key that is left out.
    if (value.isNull() && !field->isRequired)
      continue;
    if (auto clause = refusalAt(*field, value, key); !clause.empty())
      return clause;
  }
  for (const auto& field : fields)
    if (field.isRequired && settings.member(field.key) == nullptr)
      return translated("\"{key}\" is missing", {{"key", field.key}});
  return {};
}

} // namespace tavrin
