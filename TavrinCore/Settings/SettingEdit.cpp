#include "TavrinCore/Settings/SettingEdit.h"

#include "TavrinCore/Settings/SettingSettling.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

[[noreturn]] void throwUnknown(const DockWidget& widget, std::string_view path) {
  throw SettingError(translated("a {kind} widget has no setting \"{path}\"",
                                {{"kind", widget.kind.title()}, {"path", path}}),
                     SettingError::Fault::unknownSetting);
}

/// Puts the value into the record. Throws SettingError for one that its line does not allow.
void put(const DockWidget& widget, const std::vector<FieldInfo>& fields, JSONValue& record,
         std::string_view path, const JSONValue& value) {
  const auto dot = path.find('.');
  const auto field = std::ranges::find(fields, path.substr(0, dot), &FieldInfo::key);
  if (field == fields.end())
    throwUnknown(widget, path);
  auto& object = *record.object();
  if (dot != std::string_view::npos) {
    if (field->type != FieldType::record)
      throwUnknown(widget, path);
    auto& nested = object[field->key];
    if (nested.object() == nullptr)
      nested = freshRecord(field->fields);
    put(widget, field->fields, nested, path.substr(dot + 1), value);
    return;
  }
  if (value.isNull() && !field->isNullable)
    throw SettingError(translated("\"{key}\" must be {allowed}",
                                  {{"key", field->key}, {"allowed", allowedText(*field)}}));
  if (const auto clause = refusalOf({*field}, JSONValue::Object{{field->key, value}});
      !clause.empty())
    throw SettingError(clause);
  if (value.isNull())
    object.erase(field->key);
  else
    object[field->key] = value;
}

/// `edited` with what others added to and took out of `before`.
JSONValue mergedList(const JSONValue::Array& before, const JSONValue::Array& edited,
                     const JSONValue::Array& current) {
  const auto has = [](const JSONValue::Array& list, const JSONValue& one) {
    return std::ranges::count(list, one) > 0;
  };
  JSONValue::Array merged;
  for (const auto& one : edited)
    if (has(current, one) || !has(before, one))
      merged.push_back(one);
  for (const auto& one : current)
    if (!has(before, one) && !has(edited, one))
      merged.push_back(one);
  return merged;
}

/// The value as it is once it is stored: a name without blanks around it, a path from the root.
JSONValue normalized(const DockWidget& widget, const std::string& path, const JSONValue& value,
                     const SettingSystem& system) {
  try {
    return valueAt(withValues(widget, {{path, value}}, system), path);
  } catch (const std::runtime_error&) {
    return value;
  }
}

/// The value to store, where others may have changed it since its editor saw it.
JSONValue reconciled(const DockWidget& widget, const SettingValue& edit,
                     const SettingSystem& system) {
  const auto current = valueAt(widget, edit.path);
  if (!edit.before || *edit.before == current || edit.value == current)
    return edit.value;
  const auto before = normalized(widget, edit.path, *edit.before, system);
  if (before == current)
    return edit.value;
  const auto value = normalized(widget, edit.path, edit.value, system);
  if (before.array() != nullptr && value.array() != nullptr && current.array() != nullptr)
    return mergedList(*before.array(), *value.array(), *current.array());
  throw SettingError(
      translated("\"{path}\" was changed elsewhere meanwhile, to {value}",
                 {{"path", edit.path},
                  {"value", current.isNull() ? translated("no value") : current.compact()}}));
}

} // namespace

JSONValue freshRecord(const std::vector<FieldInfo>& fields) {
  JSONValue::Object record;
  for (const auto& field : fields)
    if (!field.defaultValue.isNull())
      record.emplace(field.key, field.defaultValue);
  return record;
}

std::string checkedName(std::string_view text) {
  const auto name = trimmed(text);
  if (name.empty())
    throw SettingError(translated("a name must not be blank"));
  return std::string(name);
}

int checkedSpan(const DockWidget::Kind& kind, const JSONValue& value) {
  const auto span = value.integerValue();
  if (span && *span >= 1 && *span <= kind.maxSpan())
    return static_cast<int>(*span);
  const auto given = value.string() != nullptr ? *value.string() : value.compact();
  throw SettingError(
      kind.maxSpan() == 1
          ? translated("the span of a {kind} widget must be 1, not \"{given}\"",
                       {{"kind", kind.title()}, {"given", given}})
          : translated("the span of a {kind} widget must be 1 to {most}, not \"{given}\"",
                       {{"kind", kind.title()}, {"most", kind.maxSpan()}, {"given", given}}));
}

DockWidget withValues(const DockWidget& widget, const std::vector<SettingValue>& values,
                      const SettingSystem& system) {
  const auto fields = describeSettings(widget.kind);
  DockWidget edited = widget;
  auto settings = settingsJSON(widget.kind);
  std::set<std::string> named;
  for (const auto& edit : values) {
    const auto& path = edit.path;
    const auto value = reconciled(widget, edit, system);
    if (path == "name") {
      if (value.string() == nullptr)
        throw SettingError(translated("a name must be text"));
      edited.name = checkedName(*value.string());
    } else if (path == "span") {
      edited.span = checkedSpan(widget.kind, value);
    } else {
      named.insert(path);
      put(widget, fields, settings, path, value);
    }
  }
  if (!named.empty())
    edited.kind = withSettled({widget.kind, named, system}, settings);
  return edited;
}

DockWidget::Kind withSettled(const SettingChange& change, const JSONValue& settings) {
  try {
    auto settled = withSettings(change.before, settings);
    settle(settled, change);
    return settled;
  } catch (const CodingError& error) {
    throw SettingError(error.what());
  }
}

JSONValue valueAt(const DockWidget& widget, std::string_view path) {
  if (path == "name")
    return widget.name;
  if (path == "span")
    return widget.span;
  auto value = settingsJSON(widget.kind);
  while (true) {
    const auto dot = path.find('.');
    const auto* member = value.member(path.substr(0, dot));
    if (member == nullptr)
      return {};
    auto inner = *member;
    value = std::move(inner);
    if (dot == std::string_view::npos)
      return value;
    path.remove_prefix(dot + 1);
  }
}

} // namespace tavrin
