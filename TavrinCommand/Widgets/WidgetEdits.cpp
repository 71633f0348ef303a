#include "TavrinCommand/Widgets/WidgetCommands.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Widgets/SettingEditing.h"
#include "TavrinHost/Widgets/SlotControl.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"

#include "TavrinCommand/Base/Completers.h"
#include "TavrinCore/Text/Texts.h"
#include <CLI/App.hpp>
#include <algorithm>
#include <charconv>
#include <fmt/format.h>

namespace tavrin {
namespace {

using Words = std::vector<std::string>;

std::vector<Assignment> assignments(const Words& words) {
  std::vector<Assignment> parsed;
  for (const auto& word : words)
    parsed.push_back(Assignment::parse(word));
  return parsed;
}

[[noreturn]] void throwNoFreeSlot() {
  throw HostError(
      ExitCode::noFreeSlot,
      translated("all twelve slots are taken; release one with `tavrin widgets release NAME`"));
}

int checkedSlot(std::string_view text) {
  int slot = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), slot);
  if (error != std::errc() || end != text.data() + text.size() || slot < 1 ||
      slot > DockSlot::count)
    throw HostError(ExitCode::refusedValue,
                    translated("a slot is a number from 1 to {most}, not "
                               "\"{text}\"",
                               {{"most", DockSlot::count}, {"text", text}}));
  return slot;
}

/// Throws HostError when another widget, or an entry of a newer version, has the slot.
void requireFree(const WidgetsFile& file, int slot, const UUID& forWidget) {
  for (const auto& widget : file.widgets)
    if (widget.slot == slot && widget.id != forWidget)
      throw HostError(ExitCode::refusedValue, translated("slot {slot} is taken by \"{name}\"",
                                                         {{"slot", slot}, {"name", widget.name}}));
  for (const auto& entry : file.unrecognized)
    if (const auto* taken = entry.raw.member("slot");
        taken != nullptr && taken->integerValue() == slot)
      throw HostError(ExitCode::refusedValue,
                      translated("slot {slot} is taken by a widget that this version does not know",
                                 {{"slot", slot}}));
}

/// A place in the Dock shows nothing until the slot's program runs.
void remarkUnlessShown(CommandContext& context, const DockWidget& widget) {
  if (widget.slot && !SlotControl(context).process(*widget.slot))
    context.remarkOnce(translated("It is not on the screen yet: `tavrin start` shows it."));
}

void sayPlace(CommandContext& context, const DockWidget& widget) {
  context.say(widget.slot
                  ? translated("\"{name}\" is in slot {slot}.",
                               {{"name", printable(widget.name)}, {"slot", *widget.slot}})
                  : translated("\"{name}\" is not placed.", {{"name", printable(widget.name)}}));
  remarkUnlessShown(context, widget);
}

/// Several widgets, so that a wrong name stops the command before it begins.
std::vector<DockWidget> findAll(const WidgetLibrary& library, const Words& references) {
  std::vector<DockWidget> found;
  for (const auto& reference : references)
    found.push_back(library.find(reference));
  return found;
}

/// What was taken but leads nowhere.
void remarkWarnings(CommandContext& context, const DockWidget& widget,
                    const SettingSystem& system) {
  const auto settings = settingsJSON(widget.kind);
  for (const auto& field : describeSettings(widget.kind))
    if (const auto* value = settings.member(field.key))
      if (const auto warning = settingWarning(field, *value, system); !warning.empty())
        context.remark(fmt::format("tavrin: {}", printable(warning)));
}

struct AddRequest {
  std::string kind;
  std::string name;
  std::string span;
  Words settings;
  bool places = false;
};

void add(CommandContext& context, const AddRequest& request) {
  WidgetLibrary library(context);
  const auto& info = kindNamed(request.kind);
  const auto now = context.platform().clock().now();
  DockWidget draft(UUID(), "", std::nullopt, *freshKind(info.key, now), 1);
  if (!request.span.empty())
    draft.span = checkedSpanOf(draft.kind, request.span);
  const auto system = settingSystem(context.platform().fileManager().homeFolder());
  draft = withAssignments(draft, assignments(request.settings), now, system);
  remarkWarnings(context, draft, system);
  const auto widget = library.change([&](WidgetStore& store) {
    if (request.places && !store.file().freeSlot())
      throwNoFreeSlot();
    auto name = !request.name.empty() ? checkedNameOf(request.name) : draft.name;
    if (name.empty())
      name = freeName(store.file(), translation(info.title));
    auto made = store.create(name, draft.kind);
    if (made.span != draft.span) {
      made.span = draft.span;
      store.update(made);
    }
    return request.places ? store.claimSlot(made.id).value_or(made) : made;
  });
  if (context.printsJSON())
    context.print(encode(widget));
  else
    context.say(widget.slot
                    ? translated("Made {kind} \"{name}\" in slot {slot}.",
                                 {{"kind", translation(info.title)},
                                  {"name", printable(widget.name)},
                                  {"slot", *widget.slot}})
                    : translated("Made {kind} \"{name}\".", {{"kind", translation(info.title)},
                                                             {"name", printable(widget.name)}}));
  remarkUnlessShown(context, widget);
}

/// Finds the widget in the file as it is now and saves what `edit` makes of it.
template <class Edit>
DockWidget editOne(CommandContext& context, const std::string& reference, Edit edit) {
  WidgetLibrary library(context);
  const auto id = library.find(reference).id;
  return library.change([&](WidgetStore& store) {
    const auto current = store.widget(id);
    if (!current)
      throw HostError(ExitCode::notFound,
                      translated("\"{reference}\" is gone", {{"reference", reference}}));
    DockWidget edited = edit(*current, store.file());
    store.update(edited);
    return edited;
  });
}

void set(CommandContext& context, const std::string& reference, const Words& words) {
  const auto changes = assignments(words);
  const auto now = context.platform().clock().now();
  const auto system = settingSystem(context.platform().fileManager().homeFolder());
  JSONValue before;
  const auto widget = editOne(context, reference, [&](const DockWidget& current, const auto&) {
    before = settingsJSON(current.kind);
    return withAssignments(current, changes, now, system);
  });
  remarkWarnings(context, widget, system);
  const auto fields = describeSettings(widget.kind);
  const auto sayOwn = [&](const char* key, const std::string& value) {
    if (std::ranges::count(changes, key, &Assignment::key) > 0 &&
        std::ranges::count(fields, key, &FieldInfo::key) == 0)
      context.say(fmt::format("{} = {}", key, printable(value)));
  };
  sayOwn("name", widget.name);
  sayOwn("span", std::to_string(widget.span));
  const auto settings = settingsJSON(widget.kind);
  const auto valueIn = [](const JSONValue& record, const std::string& key) {
    const auto* value = record.member(key);
    return value == nullptr ? JSONValue() : *value;
  };
  for (const auto& field : fields) {
    const bool wasNamed = std::ranges::any_of(changes, [&](const Assignment& change) {
      return change.key.substr(0, change.key.find('.')) == field.key;
    });
    // One setting may bring another along.
    const auto value = valueIn(settings, field.key);
    if (wasNamed || value != valueIn(before, field.key))
      context.say(fmt::format("{} = {}", field.key, printable(settingText(field, value))));
  }
}

void place(CommandContext& context, const Words& references, const std::string& slotText) {
  if (!slotText.empty() && references.size() > 1)
    throw HostError(ExitCode::usage, translated("--slot is for one widget at a time"));
  if (!slotText.empty()) {
    const int slot = checkedSlot(slotText);
    sayPlace(context,
             editOne(context, references.front(), [&](DockWidget widget, const auto& file) {
               requireFree(file, slot, widget.id);
               widget.slot = slot;
               return widget;
             }));
    return;
  }
  WidgetLibrary library(context);
  for (const auto& widget : findAll(library, references))
    sayPlace(context, library.change([&](WidgetStore& store) {
      const auto current = store.widget(widget.id);
      if (!current)
        throw HostError(ExitCode::notFound,
                        translated("\"{name}\" is gone", {{"name", widget.name}}));
      if (!slotFault(store.file(), *current).empty())
        store.releaseSlot(widget.id);
      auto claimed = store.claimSlot(widget.id);
      if (!claimed)
        throwNoFreeSlot();
      return *claimed;
    }));
}

void release(CommandContext& context, const Words& references) {
  WidgetLibrary library(context);
  for (const auto& widget : findAll(library, references)) {
    library.change([&](WidgetStore& store) {
      store.releaseSlot(widget.id);
      return true;
    });
    context.say(translated("\"{name}\" is no longer placed.", {{"name", printable(widget.name)}}));
  }
}

void remove(CommandContext& context, const Words& references, bool isSure) {
  WidgetLibrary library(context);
  const auto widgets = findAll(library, references);
  for (const auto& widget : widgets) {
    if (!isSure && context.console().isInteractive &&
        !context.console().confirm(
            translated("Remove \"{name}\" with its settings?", {{"name", printable(widget.name)}}),
            false))
      continue;
    library.change([&](WidgetStore& store) {
      store.remove(widget.id);
      return true;
    });
    context.say(translated("Removed {title} \"{name}\".",
                           {{"title", widget.kind.title()}, {"name", printable(widget.name)}}));
  }
}

/// Offers the keys of a kind as "key=", and after the "=" the values where they can be listed.
std::vector<Suggestion> settingSuggestions(const DockWidget::Kind& kind, std::string_view current) {
  std::vector<Suggestion> found;
  const auto equals = current.find('=');
  for (const auto& field : describeSettings(kind)) {
    if (equals == std::string_view::npos) {
      found.push_back({field.key + "=", translated(field.title) + ": " + allowedText(field)});
    } else if (current.substr(0, equals) == field.key) {
      auto values = field.choices;
      if (field.type == FieldType::boolean)
        values = {"yes", "no"};
      for (const auto& value : values)
        found.push_back({field.key + "=" + value});
    }
  }
  if (equals == std::string_view::npos)
    found.push_back({"span=", translated("Tiles wide: 1 to {most}", {{"most", kind.maxSpan()}})});
  return found;
}

Completer completeSettings(CommandContext& context, bool ofNewWidget) {
  return [&context, ofNewWidget](const Words& words, std::string_view current) {
    if (words.empty())
      return std::vector<Suggestion>{};
    if (ofNewWidget)
      return settingSuggestions(
          *freshKind(kindNamed(words.front()).key, context.platform().clock().now()), current);
    return settingSuggestions(WidgetLibrary(context).find(words.front()).kind, current);
  };
}

void addAdding(CLI::App& group, CommandContext& context) {
  auto* command = group.add_subcommand("add", translated("Make a widget"));
  auto request = std::make_shared<AddRequest>();
  context.complete(command->add_option("KIND", request->kind, translated("What it is"))->required(),
                   completeKinds());
  command->add_option("NAME", request->name,
                      translated("What it is called; otherwise after its kind"));
  context.complete(
      command->add_option("--set", request->settings, translated("Settings, as key=value")),
      completeSettings(context, true));
  command->add_option("--span", request->span, translated("How many tiles wide it is"));
  command->add_flag("--place", request->places, translated("Give it the first free slot"));
  context.addJSONFlag(*command);
  command->callback([&context, request] { add(context, *request); });
  CommandContext::examples(
      *command, {{"tavrin widgets add clock", translated("a clock, not placed yet")},
                 {"tavrin widgets add timer Tea --set presets=3m,5m --place",
                  translated("in a slot at once")},
                 {"tavrin widgets add countdown Holidays --set target=2026-12-24 --place",
                  translated("days to a date")}});
}

void addSetting(CLI::App& group, CommandContext& context) {
  auto* command = group.add_subcommand("set", translated("Change settings of a widget"));
  auto reference = std::make_shared<std::string>();
  auto words = std::make_shared<Words>();
  context.complete(command->add_option("NAME", *reference, translated("The widget"))->required(),
                   completeWidgets(context));
  context.complete(
      command->add_option("SETTING", *words, translated("key=value, any number"))->required(),
      completeSettings(context, false));
  command->callback([&context, reference, words] { set(context, *reference, *words); });
  CommandContext::examples(
      *command,
      {{"tavrin widgets set Focus focus=50m shortBreak=10m", translated("lengths of time")},
       {"tavrin widgets set Tea presets=3m,5m,10m", translated("a list")},
       {"tavrin widgets set Holidays target=+14d countsUpAfter=yes",
        translated("a date from now, a switch")},
       {"tavrin widgets set Clock timeZoneID=Asia/Tokyo span=2",
        translated("a text, the width in tiles")},
       {"tavrin widgets set Clock timeZoneID=null", translated("back to no value")}});
}

void addNaming(CLI::App& group, CommandContext& context) {
  auto reference = std::make_shared<std::string>();
  auto value = std::make_shared<std::string>();
  auto* renaming = group.add_subcommand("rename", translated("Call a widget something else"));
  context.complete(renaming->add_option("NAME", *reference, translated("The widget"))->required(),
                   completeWidgets(context));
  renaming->add_option("NEW", *value, translated("Its new name"))->required();
  renaming->callback([&context, reference, value] {
    const auto name = checkedNameOf(*value);
    editOne(context, *reference, [&](DockWidget widget, const auto&) {
      widget.name = name;
      return widget;
    });
    context.say(translated("It is called \"{name}\" now.", {{"name", printable(name)}}));
  });
  CommandContext::examples(
      *renaming, {{"tavrin widgets rename Timer \"Green tea\"", translated("a new name")}});

  auto* spanning = group.add_subcommand("span", translated("Set how many tiles wide a widget is"));
  context.complete(spanning->add_option("NAME", *reference, translated("The widget"))->required(),
                   completeWidgets(context));
  spanning->add_option("TILES", *value, translated("1, or up to what its kind allows"))->required();
  spanning->callback([&context, reference, value] {
    const auto widget = editOne(context, *reference, [&](DockWidget current, const auto&) {
      current.span = checkedSpanOf(current.kind, *value);
      return current;
    });
    context.say(plural("\"{name}\" is {count} tile wide.", "\"{name}\" is {count} tiles wide.",
                       widget.span, {{"name", printable(widget.name)}}));
  });
  CommandContext::examples(*spanning,
                           {{"tavrin widgets span Focus 2", translated("two tiles wide")}});
}

void addPlacing(CLI::App& group, CommandContext& context) {
  auto references = std::make_shared<Words>();
  auto slot = std::make_shared<std::string>();
  auto isSure = std::make_shared<bool>(false);
  const auto takeNames = [&](CLI::App* command) {
    context.complete(
        command->add_option("NAME", *references, translated("The widgets"))->required(),
        completeWidgets(context, true));
  };

  auto* placing = group.add_subcommand("place", translated("Give widgets a slot in the Dock"));
  takeNames(placing);
  placing->add_option("--slot", *slot,
                      translated("This slot, 1 to 12; otherwise the first free one"));
  placing->callback([&context, references, slot] { place(context, *references, *slot); });
  CommandContext::examples(
      *placing, {{"tavrin widgets place Tea Focus", translated("two more in the Dock")},
                 {"tavrin widgets place Tea --slot 5", translated("in a certain slot")}});

  auto* releasing = group.add_subcommand("release", translated("Take widgets out of the Dock"));
  takeNames(releasing);
  releasing->callback([&context, references] { release(context, *references); });
  CommandContext::examples(*releasing,
                           {{"tavrin widgets release Tea", translated("it keeps its settings")}});

  auto* removing = group.add_subcommand("remove", translated("Delete widgets for good"));
  takeNames(removing);
  removing->add_flag("-y,--yes", *isSure, translated("Do not ask"));
  removing->callback([&context, references, isSure] { remove(context, *references, *isSure); });
  CommandContext::examples(*removing,
                           {{"tavrin widgets remove Tea", translated("asks on a terminal")},
                            {"tavrin widgets remove --yes Tea", translated("does not ask")}});
}

} // namespace

void addWidgetEdits(CLI::App& group, CommandContext& context) {
  addAdding(group, context);
  addSetting(group, context);
  addNaming(group, context);
  addPlacing(group, context);
}

} // namespace tavrin
