#include "TavrinCore/Settings/SettingRoles.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Bookmarks/WebAddress.h"
#include "TavrinCore/Settings/SettingEdit.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>

namespace tavrin {
namespace {

bool isColour(std::string_view text) {
  const auto isDigit = [](unsigned char c) { return std::isxdigit(c) != 0; };
  return text.size() == 7 && text.front() == '#' && std::ranges::all_of(text.substr(1), isDigit);
}

/// GitHub's names: letters, digits, and a few marks.
bool isRepository(std::string_view text) {
  const auto slash = text.find('/');
  const auto isPart = [](std::string_view part) {
    const auto fits = [](unsigned char c) {
      return std::isalnum(c) != 0 || c == '-' || c == '_' || c == '.';
    };
    return !part.empty() && std::ranges::all_of(part, fits);
  };
  return slash != std::string_view::npos && isPart(text.substr(0, slash)) &&
         isPart(text.substr(slash + 1));
}

std::string faultOfText(const FieldInfo& field, const std::string& path, const std::string& text,
                        const SettingSystem& system) {
  if (fitsRole(field.role, text, system))
    return {};
  if (field.role == FieldRole::link && !trimmed(text).empty()) {
    std::string_view reason = translation(WebAddress::refusal(text));
    if (reason.ends_with('.'))
      reason.remove_suffix(1);
    return translated("\"{path}\" cannot be \"{text}\": {reason}",
                      {{"path", path}, {"text", text}, {"reason", reason}});
  }
  return translated("\"{path}\" must be {allowed}, not \"{text}\"",
                    {{"path", path}, {"allowed", allowedText(field)}, {"text", text}});
}

std::string faultAt(const FieldInfo& field, const std::string& path, const JSONValue& before,
                    const JSONValue& after, const SettingSystem& system) {
  if (after.isNull() || after == before)
    return {};
  if (field.fault != nullptr)
    if (const auto clause = field.fault(after))
      return translated("\"{path}\" must be {clause}", {{"path", path}, {"clause", *clause}});
  if (field.type == FieldType::record)
    return field.role == FieldRole::shortcut ? std::string()
                                             : faultInChanges(field.fields, before, after, system);
  if (const auto* text = after.string(); text != nullptr && field.type == FieldType::text)
    return faultOfText(field, path, *text, system);
  const auto* values = after.array();
  if (field.type != FieldType::list || values == nullptr)
    return {};
  const auto element = field.element();
  const auto* known = before.array();
  for (std::size_t i = 0; i < values->size(); ++i) {
    const auto& value = (*values)[i];
    if (known != nullptr && std::ranges::count(*known, value) > 0)
      continue;
    // Of a record that was changed where it stands, the rest may stay as it is too.
    const bool isSameRecord =
        element.type == FieldType::record && known != nullptr && known->size() == values->size();
    const auto was = isSameRecord ? (*known)[i] : JSONValue();
    if (auto clause = faultAt(element, path, was, value, system); !clause.empty())
      return clause;
  }
  return {};
}

bool isMissing(FieldRole role, const std::string& text, const SettingSystem& system) {
  const auto& isThere = role == FieldRole::folder ? system.isFolder : system.isFile;
  if ((role != FieldRole::folder && role != FieldRole::file) || !isThere || text.empty())
    return false;
  const auto path = pathOfText(text, system.home);
  return path && !isThere(*path);
}

} // namespace

bool fitsRole(FieldRole role, const std::string& text, const SettingSystem& system) {
  switch (role) {
  case FieldRole::colour:
    return isColour(text);
  case FieldRole::repository:
    return isRepository(text);
  case FieldRole::timeZone:
    return !system.isTimeZone || system.isTimeZone(text);
  case FieldRole::symbol:
    return !system.isSymbol || system.isSymbol(text);
  case FieldRole::folder:
  case FieldRole::file:
    return pathOfText(text, system.home).has_value();
  case FieldRole::link:
    return WebAddress::from(text).has_value();
  default:
    return true;
  }
}

std::string faultInChanges(const std::vector<FieldInfo>& fields, const JSONValue& before,
                           const JSONValue& after, const SettingSystem& system) {
  for (const auto& field : fields) {
    const auto* was = before.member(field.key);
    const auto* is = after.member(field.key);
    if (is == nullptr)
      continue;
    if (auto clause = faultAt(field, field.key, was == nullptr ? JSONValue() : *was, *is, system);
        !clause.empty())
      return clause;
  }
  return {};
}

std::string storedFault(const FieldInfo& field, const JSONValue& value,
                        const SettingSystem& system) {
  return value == field.defaultValue ? std::string()
                                     : faultAt(field, field.key, JSONValue(), value, system);
}

std::string settingWarning(const FieldInfo& field, const JSONValue& value,
                           const SettingSystem& system) {
  const auto sentence = [&](const std::string& text) {
    return field.role == FieldRole::folder
               ? translated("There is no folder \"{path}\"", {{"path", text}})
               : translated("There is no file \"{path}\"", {{"path", text}});
  };
  if (const auto* text = value.string(); text != nullptr && isMissing(field.role, *text, system))
    return sentence(*text);
  if (const auto* values = value.array())
    for (const auto& one : *values)
      if (const auto* text = one.string(); text != nullptr && isMissing(field.role, *text, system))
        return sentence(*text);
  return {};
}

} // namespace tavrin
