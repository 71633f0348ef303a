#include "TavrinCommand/Widgets/WidgetCommands.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"

#include "TavrinCommand/Base/Completers.h"
#include "TavrinCore/Text/Texts.h"
#include <CLI/App.hpp>
#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr int nameWidth = 32;
constexpr int valueWidth = 44;

/// A slot that does not show the widget has a mark.
Table::Cell slotCell(const DockWidget& widget, const std::string& fault) {
  if (!widget.slot)
    return {"-", TextStyle::dim};
  return fault.empty() ? Table::Cell(std::to_string(*widget.slot), TextStyle::good)
                       : Table::Cell(fmt::format("{}!", *widget.slot), TextStyle::bad);
}

JSONValue widgetJSON(const DockWidget& widget) {
  JSONValue::Object object{{"id", widget.id.text()},
                           {"name", widget.name},
                           {"kind", widget.kind.key()},
                           {"span", widget.span},
                           {"slot", widget.slot ? JSONValue(*widget.slot) : JSONValue()},
                           {"settings", settingsJSON(widget.kind)}};
  return object;
}

std::string_view typeName(FieldType type) {
  constexpr std::array<std::string_view, 10> names = {
      "boolean", "integer", "number", "text", "choice", "date", "uuid", "data", "list", "record"};
  return names[static_cast<std::size_t>(type)];
}

JSONValue fieldsJSON(const std::vector<FieldInfo>& fields) {
  JSONValue::Array list;
  for (const auto& field : fields) {
    JSONValue::Object line{{"key", field.key},
                           {"title", field.title},
                           {"type", typeName(field.type)},
                           {"default", field.defaultValue},
                           {"isNullable", field.isNullable}};
    if (!field.unit.empty())
      line.emplace("unit", field.unit);
    if (field.range) {
      line.emplace("minimum", field.range->lower);
      line.emplace("maximum", field.range->upper);
    }
    if (!field.choices.empty())
      line.emplace("choices", JSONValue::Array(field.choices.begin(), field.choices.end()));
    if (field.elementType)
      line.emplace("elements", typeName(*field.elementType));
    if (!field.fields.empty())
      line.emplace("fields", fieldsJSON(field.fields));
    list.emplace_back(std::move(line));
  }
  return list;
}

/// An entry that this build cannot read, as far as it can be told.
std::string unrecognizedText(const JSONValue& raw, const char* key) {
  const auto* value = raw.member(key);
  return value != nullptr && value->string() != nullptr ? *value->string() : "?";
}

void list(CommandContext& context) {
  const WidgetLibrary library(context);
  if (context.printsJSON()) {
    JSONValue::Array widgets;
    for (const auto& widget : library.file().widgets)
      widgets.push_back(widgetJSON(widget));
    JSONValue::Array unrecognized;
    for (const auto& entry : library.file().unrecognized)
      unrecognized.push_back(entry.raw);
    context.print(JSONValue::Object{{"widgets", std::move(widgets)},
                                    {"unrecognized", std::move(unrecognized)}});
    return;
  }
  Table table({{translated("SLOT"), true},
               {translated("NAME"), false, nameWidth},
               {translated("KIND")},
               {translated("SPAN"), true},
               {translated("ID")}});
  std::vector<std::string> faults;
  for (const auto& widget : library.file().widgets) {
    const auto fault = slotFault(library.file(), widget);
    if (!fault.empty())
      faults.push_back(fmt::format("\"{}\": {}", printable(widget.name), printable(fault)));
    table.add({slotCell(widget, fault),
               {widget.name, TextStyle::bold},
               std::string(widget.kind.key()),
               std::to_string(widget.span),
               {widget.id.text().substr(0, 8), TextStyle::dim}});
  }
  for (const auto& entry : library.file().unrecognized)
    table.add({{"?", TextStyle::dim},
               {unrecognizedText(entry.raw, "name"), TextStyle::dim},
               {translated("unknown to this version"), TextStyle::dim},
               "",
               {unrecognizedText(entry.raw, "id").substr(0, 8), TextStyle::dim}});
  if (table.isEmpty()) {
    context.say(translated("There are no widgets yet. `tavrin start --starter` makes a first set,\n"
                           "`tavrin widgets add KIND` a single one."));
    return;
  }
  table.print(context.console());
  for (const auto& fault : faults)
    context.say(fault);
  if (!faults.empty())
    context.say(translated("`tavrin widgets place NAME` gives a widget a free slot."));
}

void addFieldRows(Table& table, const std::vector<FieldInfo>& fields, const JSONValue* values,
                  const std::string& prefix) {
  for (const auto& field : fields) {
    const auto* value = values == nullptr ? nullptr : values->member(field.key);
    const bool hasRows = field.type == FieldType::record && !field.fields.empty();
    const auto shown = value == nullptr ? JSONValue() : *value;
    std::vector<Table::Cell> row{{prefix + field.key, TextStyle::accent}, translated(field.title)};
    if (values != nullptr)
      row.emplace_back(hasRows && !shown.isNull() ? "" : settingText(field, shown),
                       TextStyle::bold);
    row.emplace_back(allowedText(field));
    row.emplace_back(
        hasRows && !field.defaultValue.isNull() ? "" : settingText(field, field.defaultValue),
        TextStyle::dim);
    table.add(std::move(row));
    if (hasRows)
      addFieldRows(table, field.fields, values == nullptr ? nullptr : &shown,
                   prefix + field.key + ".");
  }
}

void show(CommandContext& context, const std::string& reference) {
  const WidgetLibrary library(context);
  const auto& widget = library.find(reference);
  const auto fields = describeSettings(widget.kind);
  if (context.printsJSON()) {
    auto json = widgetJSON(widget);
    json.object()->emplace("fields", fieldsJSON(fields));
    context.print(json);
    return;
  }
  const auto& console = context.console();
  const TextPlaces places = {{"name", console.styled(printable(widget.name), TextStyle::bold)},
                             {"kind", widget.kind.title()},
                             {"slot", widget.slot.value_or(0)},
                             {"span", widget.span},
                             {"most", widget.kind.maxSpan()}};
  context.say(widget.slot
                  ? translated("{name}  {kind}, slot {slot}, span {span} of {most}", places)
                  : translated("{name}  {kind}, not placed, span {span} of {most}", places));
  context.say(console.styled(widget.id.text(), TextStyle::dim));
  if (const auto fault = slotFault(library.file(), widget); !fault.empty())
    context.say(console.styled(printable(fault), TextStyle::bad));
  if (fields.empty()) {
    context.say(translated("There is nothing to set."));
    return;
  }
  context.say("");
  Table table({{translated("KEY")},
               {translated("SETTING")},
               {translated("VALUE"), false, valueWidth},
               {translated("ALLOWED")},
               {translated("DEFAULT")}});
  const auto settings = settingsJSON(widget.kind);
  addFieldRows(table, fields, &settings, "");
  table.print(console);
}

void kinds(CommandContext& context) {
  if (context.printsJSON()) {
    JSONValue::Array list;
    for (const auto& kind : allKinds())
      list.emplace_back(
          JSONValue::Object{{"key", kind.key}, {"title", kind.title}, {"maxSpan", kind.maxSpan}});
    context.print(list);
    return;
  }
  Table table({{translated("KIND")}, {translated("TITLE")}, {translated("WIDEST"), true}});
  for (const auto& kind : allKinds())
    table.add({{std::string(kind.key), TextStyle::bold},
               translated(kind.title),
               std::to_string(kind.maxSpan)});
  table.print(context.console());
}

void kind(CommandContext& context, const std::string& reference) {
  const auto& info = kindNamed(reference);
  const auto fresh = freshKind(info.key, context.platform().clock().now());
  const auto fields = describeSettings(*fresh);
  if (context.printsJSON()) {
    context.print(JSONValue::Object{{"key", info.key},
                                    {"title", info.title},
                                    {"maxSpan", info.maxSpan},
                                    {"fields", fieldsJSON(fields)}});
    return;
  }
  context.say(plural("{key}  {kind}, up to {count} tile wide",
                     "{key}  {kind}, up to {count} tiles wide", info.maxSpan,
                     {{"key", context.console().styled(info.key, TextStyle::bold)},
                      {"kind", translation(info.title)}}));
  if (fields.empty()) {
    context.say(translated("There is nothing to set."));
    return;
  }
  context.say("");
  Table table({{translated("KEY")},
               {translated("SETTING")},
               {translated("ALLOWED")},
               {translated("DEFAULT"), false, valueWidth}});
  addFieldRows(table, fields, nullptr, "");
  table.print(context.console());
}

} // namespace

void addWidgetListings(CLI::App& group, CommandContext& context) {
  auto* listing = group.add_subcommand("list", translated("List the widgets and their slots"));
  context.addJSONFlag(*listing);
  listing->callback([&context] { list(context); });
  CommandContext::examples(
      *listing, {{"tavrin widgets list", translated("all widgets")},
                 {"tavrin widgets list --json | jq '.widgets[].name'", translated("their names")}});

  auto* showing = group.add_subcommand("show", translated("Show every setting of a widget"));
  auto reference = std::make_shared<std::string>();
  context.complete(
      showing->add_option("NAME", *reference, translated("Name or identifier, or the start of one"))
          ->required(),
      completeWidgets(context));
  context.addJSONFlag(*showing);
  showing->callback([&context, reference] { show(context, *reference); });
  CommandContext::examples(*showing,
                           {{"tavrin widgets show Focus", translated("values, limits, defaults")},
                            {"tavrin widgets show slot1", translated("what stands in slot 1")}});

  auto* kindListing =
      group.add_subcommand("kinds", translated("List the kinds, or the settings of one"));
  auto kindName = std::make_shared<std::string>();
  context.complete(
      kindListing->add_option("KIND", *kindName, translated("A kind, for its settings")),
      completeKinds());
  context.addJSONFlag(*kindListing);
  kindListing->callback([&context, kindName] {
    if (kindName->empty())
      kinds(context);
    else
      kind(context, *kindName);
  });
  CommandContext::examples(*kindListing,
                           {{"tavrin widgets kinds", translated("all kinds")},
                            {"tavrin widgets kinds pomodoro", translated("what a Pomodoro sets")}});
}

void addWidgetCommands(CLI::App& app, CommandContext& context) {
  auto* group = app.add_subcommand("widgets", translated("Make, set and place widgets"));
  group->require_subcommand(0, 1);
  addWidgetListings(*group, context);
  addWidgetEdits(*group, context);
  addBookmarkCommands(*group, context);
  context.addJSONFlag(*group);
  group->callback([group, &context] {
    if (group->get_subcommands().empty())
      list(context);
  });
  CommandContext::examples(
      *group, {{"tavrin widgets", translated("list them")},
               {"tavrin widgets add pomodoro Focus --place", translated("a new one in the Dock")},
               {"tavrin widgets set Focus focus=50m", translated("change a setting")},
               {"tavrin widgets kinds weather", translated("what a kind can be told")}});
}

} // namespace tavrin
