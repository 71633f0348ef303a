#include "TavrinHost/Widgets/SettingEditing.h"

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Settings/SettingEdit.h"
#include "TavrinCore/Settings/SettingSettling.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/HostError.h"
#include "TavrinWidgetsUI/Kit/Pictures/SymbolTable.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <set>

namespace tavrin {
namespace {

const FieldInfo* fieldOf(const std::vector<FieldInfo>& fields, std::string_view key) {
  const auto found = std::ranges::find(fields, key, &FieldInfo::key);
  return found == fields.end() ? nullptr : &*found;
}

[[noreturn]] void throwUnknownKey(const std::vector<FieldInfo>& fields, std::string_view key,
                                  std::string_view whose) {
  std::vector<std::string> keys;
  for (const auto& field : fields)
    keys.push_back(field.key);
  throw HostError(ExitCode::notFound,
                  keys.empty()
                      ? translated("{whose} has no settings", {{"whose", whose}})
                      : translated("{whose} has no setting \"{key}\"; it has {keys}",
                                   {{"whose", whose}, {"key", key}, {"keys", enumeration(keys)}}));
}

void assignInRecord(const std::vector<FieldInfo>& fields, JSONValue& record, std::string_view path,
                    std::string_view whose, const std::string& text, Date now);

void assignInElement(const FieldInfo& list, JSONValue& values, std::string_view path,
                     const std::string& text, Date now) {
  const auto dot = path.find('.');
  const auto place = path.substr(0, dot);
  std::size_t index = 0;
  const auto [end, error] = std::from_chars(place.data(), place.data() + place.size(), index);
  auto* array = values.array();
  if (error != std::errc() || end != place.data() + place.size() || array == nullptr ||
      index >= array->size())
    throw HostError(ExitCode::notFound,
                    translated("\"{key}\" has no element {place}; they are counted from 0",
                               {{"key", list.key}, {"place", place}}));
  if (dot == std::string_view::npos || list.elementType != FieldType::record) {
    (*array)[index] = settingFromText(list.element(), text, now);
    return;
  }
  assignInRecord(list.fields, (*array)[index], path.substr(dot + 1),
                 fmt::format("\"{}\"", list.key), text, now);
}

void assignInRecord(const std::vector<FieldInfo>& fields, JSONValue& record, std::string_view path,
                    std::string_view whose, const std::string& text, Date now) {
  const auto dot = path.find('.');
  const auto* field = fieldOf(fields, path.substr(0, dot));
  if (field == nullptr)
    throwUnknownKey(fields, path.substr(0, dot), whose);
  auto& object = *record.object();
  if (dot != std::string_view::npos && field->type == FieldType::list) {
    assignInElement(*field, object[field->key], path.substr(dot + 1), text, now);
  } else if (dot != std::string_view::npos && field->type == FieldType::record) {
    auto& nested = object[field->key];
    if (nested.object() == nullptr)
      nested = freshRecord(field->fields);
    assignInRecord(field->fields, nested, path.substr(dot + 1), fmt::format("\"{}\"", field->key),
                   text, now);
  } else if (dot != std::string_view::npos) {
    throw HostError(ExitCode::notFound,
                    translated("\"{key}\" is a single value without parts", {{"key", field->key}}));
  } else {
    auto value = settingFromText(*field, text, now);
    if (value.isNull())
      object.erase(field->key);
    else
      object[field->key] = std::move(value);
  }
}

/// What `work` gives, its refusals as the command's own.
template <class Work> auto refusing(const Work& work) {
  try {
    return work();
  } catch (const SettingError& error) {
    throw hostError(error);
  }
}

} // namespace

Assignment Assignment::parse(std::string_view word) {
  const auto equals = word.find('=');
  if (equals == std::string_view::npos || equals == 0)
    throw HostError(ExitCode::usage,
                    translated("a setting is written key=value, not \"{word}\"", {{"word", word}}));
  return {std::string(word.substr(0, equals)), std::string(word.substr(equals + 1))};
}

HostError hostError(const SettingError& error) {
  return HostError(error.fault() == SettingError::Fault::unknownSetting ? ExitCode::notFound
                                                                        : ExitCode::refusedValue,
                   error.what());
}

SettingSystem settingSystem(const std::filesystem::path& home) {
  const auto isSymbol = [](std::string_view name) {
    return std::ranges::binary_search(symbolTable, name, {}, &SymbolDrawing::name);
  };
  const auto isFolder = [](const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
  };
  const auto isFile = [](const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
  };
  return {home, Calendar::isKnownTimeZone, isSymbol, isFolder, isFile};
}

std::string checkedNameOf(std::string_view text) {
  return refusing([&] { return checkedName(text); });
}

int checkedSpanOf(const DockWidget::Kind& kind, std::string_view text) {
  int span = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), span);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return refusing([&] { return checkedSpan(kind, isNumber ? JSONValue(span) : JSONValue(text)); });
}

DockWidget::Kind withCheckedSettings(const DockWidget::Kind& kind,
                                     const std::vector<FieldInfo>& fields,
                                     const JSONValue& settings, const SettingSystem& system) {
  if (const auto clause = refusalOf(fields, settings); !clause.empty())
    throw HostError(ExitCode::refusedValue, clause);
  return refusing([&] { return withSettled({kind, {}, system}, settings); });
}

DockWidget withAssignments(DockWidget widget, const std::vector<Assignment>& assignments, Date now,
                           const SettingSystem& system) {
  const auto fields = describeSettings(widget.kind);
  auto settings = settingsJSON(widget.kind);
  std::set<std::string> named;
  for (const auto& assignment : assignments) {
    named.insert(assignment.key);
    const bool isSetting = fieldOf(fields, assignment.key) != nullptr;
    if (assignment.key == "name" && !isSetting)
      widget.name = checkedNameOf(assignment.value);
    else if (assignment.key == "span" && !isSetting)
      widget.span = checkedSpanOf(widget.kind, assignment.value);
    else
      refusing([&] {
        assignInRecord(fields, settings, assignment.key,
                       translated("a {title} widget", {{"title", widget.kind.title()}}),
                       assignment.value, now);
      });
  }
  // A value outside its range that was there before is no reason to refuse another change.
  widget.kind = refusing([&] { return withSettled({widget.kind, named, system}, settings); });
  return widget;
}

} // namespace tavrin
