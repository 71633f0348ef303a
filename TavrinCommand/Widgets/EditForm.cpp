#include "TavrinCommand/Widgets/EditForm.h"

#include "TavrinCommand/Base/Console.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/SettingChanges.h"
#include "TavrinHost/HostError.h"
#include "TavrinHost/Widgets/SettingEditing.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr std::string_view remark = "// ";
/// What was refused stands behind it, on the form's first line.
constexpr const char* complaintText = marked("NOT SAVED: {reason}");

/// `text` with the mark and the indent before each of its lines.
std::string remarks(std::string_view text, const std::string& indent) {
  std::string result;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    result += indent + std::string(remark) + std::string(text.substr(0, end)) + "\n";
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

std::string indented(std::string text, const std::string& indent) {
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 1)
    text.insert(at + 1, indent);
  return text;
}

JSONValue shownValue(const FieldInfo& field, const JSONValue& value) {
  const auto number = value.doubleValue();
  return field.type == FieldType::date && number ? JSONValue(dateText({*number})) : value;
}

/// Texts are read as the command line reads them, where the setting itself is no text.
JSONValue readValue(const FieldInfo& field, const JSONValue& value, Date now) {
  if (const auto* text = value.string(); text != nullptr && field.type != FieldType::text)
    return settingFromText(field, *text, now);
  if (field.type == FieldType::list && value.array() != nullptr &&
      field.elementType != FieldType::record) {
    const auto element = field.element();
    JSONValue::Array values;
    for (const auto& item : *value.array())
      values.push_back(readValue(element, item, now));
    return values;
  }
  return value;
}

/// Blanks the lines that are remarks, so that a fault is still found at its line.
std::string withoutRemarks(std::string_view form) {
  std::string text;
  while (!form.empty()) {
    const auto end = std::min(form.find('\n'), form.size());
    const auto line = form.substr(0, end);
    const auto first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos || !line.substr(first).starts_with("//"))
      text += line;
    text += '\n';
    form.remove_prefix(std::min(end + 1, form.size()));
  }
  return text;
}

JSONValue parsedForm(std::string_view form) {
  try {
    return JSONValue::parse(withoutRemarks(form));
  } catch (const JSONError& error) {
    throw HostError(ExitCode::refusedValue, translated("the form is no JSON any more: {reason}",
                                                       {{"reason", error.what()}}));
  }
}

[[noreturn]] void throwFormFault(const std::string& fault) {
  throw HostError(ExitCode::refusedValue, fault);
}

} // namespace

std::string withComplaint(std::string_view form, std::string_view complaint) {
  const auto text = std::string(remark) + translated(complaintText);
  if (form.starts_with(text.substr(0, text.find('{'))))
    form.remove_prefix(std::min(form.find('\n') + 1, form.size()));
  return fmt::format("{}{}\n{}", remark,
                     translated(complaintText, {{"reason", printable(complaint)}}), form);
}

std::string editForm(const DockWidget& widget) {
  std::string form =
      remarks(translated("{title} widget. Save and leave the editor to apply the changes.\n"
                         "Lines that begin with // are remarks.",
                         {{"title", widget.kind.title()}}),
              "");
  if (widget.kind.get<ClaudeUsageSettings>() != nullptr)
    form += remarks(translated("The plan's limits are turned on with: tavrin usage connect"), "");
  form += "{\n";
  form += remarks(translated("Name: text"), "  ");
  form += fmt::format("  \"name\": {},\n", JSONValue(widget.name).compact());
  form += remarks(widget.kind.maxSpan() == 1 ? translated("Width in tiles: always 1")
                                             : translated("Width in tiles: 1 to {most}",
                                                          {{"most", widget.kind.maxSpan()}}),
                  "  ");
  form += fmt::format("  \"span\": {},\n", widget.span);
  form += "  \"settings\": {";
  const auto settings = settingsJSON(widget.kind);
  std::string separator = "\n";
  for (const auto& field : describeSettings(widget.kind)) {
    const auto* value = settings.member(field.key);
    const auto shown = shownValue(field, value == nullptr ? JSONValue() : *value);
    form += separator;
    form +=
        remarks(translated("{title}: {field} (new widgets: {defaultValue})",
                           {{"title", translation(field.title)},
                            {"field", allowedText(field)},
                            {"defaultValue", printable(settingText(field, field.defaultValue))}}),
                "    ");
    form += fmt::format("    \"{}\": {}", field.key, indented(shown.prettyPrinted(), "    "));
    separator = ",\n";
  }
  return form + "\n  }\n}\n";
}

DockWidget widgetFromForm(const DockWidget& base, std::string_view form, Date now,
                          const SettingSystem& system) {
  const auto json = parsedForm(form);
  const auto* name = json.member("name");
  const auto* span = json.member("span");
  const auto* settings = json.member("settings");
  if (name == nullptr || name->string() == nullptr)
    throwFormFault(translated("\"name\" must be text"));
  if (span == nullptr || !span->integerValue())
    throwFormFault(translated("\"span\" must be a whole number"));
  if (settings == nullptr || settings->object() == nullptr)
    throwFormFault(translated("\"settings\" must be a JSON object"));
  for (const auto& [key, unused] : *json.object())
    if (key != "name" && key != "span" && key != "settings")
      throwFormFault(
          translated("there is no \"{key}\" here, only name, span and settings", {{"key", key}}));

  auto fields = describeSettings(base.kind);
  const auto before = settingsJSON(base.kind);
  JSONValue::Object values = *settings->object();
  for (auto& [key, value] : values) {
    const auto field = std::ranges::find(fields, key, &FieldInfo::key);
    if (field == fields.end())
      continue;
    const auto* was = before.member(key);
    if (was != nullptr && value == shownValue(*field, *was)) {
      // Left alone: a date keeps its fraction, and what is out of range may stay there.
      value = *was;
      field->range.reset();
    } else {
      value = readValue(*field, value, now);
    }
  }
  DockWidget edited = base;
  edited.name = checkedNameOf(*name->string());
  edited.span = checkedSpanOf(base.kind, std::to_string(*span->integerValue()));
  edited.kind = withCheckedSettings(base.kind, fields, values, system);
  return edited;
}

DockWidget merged(const DockWidget& base, const DockWidget& edited, const DockWidget& current) {
  if (current.kind.index() != base.kind.index())
    return edited;
  DockWidget result = current;
  if (edited.name != base.name)
    result.name = edited.name;
  if (edited.span != base.span)
    result.span = edited.span;
  result.kind = withChanges(current.kind, base.kind, edited.kind);
  return result;
}

} // namespace tavrin
