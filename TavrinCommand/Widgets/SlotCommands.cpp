#include "TavrinCommand/Widgets/SlotCommands.h"

#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Dock/FocusSession.h"
#include "TavrinHost/Dock/WorkspaceBackups.h"
#include "TavrinHost/Widgets/SlotControl.h"
#include "TavrinHost/Widgets/StarterSet.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <charconv>
#include <exception>
#include <fmt/format.h>

namespace tavrin {
namespace {

using Words = std::vector<std::string>;

using Placed = std::map<int, const DockWidget*>;

/// A slot's number, or the slot of the widget that goes by the reference, in what `library` gives:
/// a number needs no widgets.
template <class Library> int slotNamed(Library library, const std::string& reference) {
  int slot = 0;
  const auto [end, error] =
      std::from_chars(reference.data(), reference.data() + reference.size(), slot);
  if (error == std::errc() && end == reference.data() + reference.size()) {
    if (slot < 1 || slot > DockSlot::count)
      throw HostError(ExitCode::notFound,
                      translated("there is no slot {reference}; they are 1 to {most}",
                                 {{"reference", reference}, {"most", DockSlot::count}}));
    return slot;
  }
  const DockWidget& widget = library().find(reference);
  if (!widget.slot)
    throw HostError(
        ExitCode::notFound,
        translated("\"{name}\" is not placed; `tavrin widgets place \"{name}\"` gives it a slot",
                   {{"name", widget.name}}));
  if (const auto fault = slotFault(library().file(), widget); !fault.empty())
    throw HostError(
        ExitCode::notFound,
        translated("{fault}, so \"{name}\" is not shown; `tavrin widgets place \"{name}\"` gives "
                   "it a free one",
                   {{"fault", fault}, {"name", widget.name}}));
  return *widget.slot;
}

template <class Library> std::set<int> slotsNamed(Library library, const Words& references) {
  std::set<int> slots;
  for (const auto& reference : references)
    slots.insert(slotNamed(library, reference));
  return slots;
}

std::set<int> allSlots() {
  std::set<int> slots;
  for (int slot = 1; slot <= DockSlot::count; ++slot)
    slots.insert(slot);
  return slots;
}

/// Prints what became of each slot. Throws HostError (failed) when one failed.
void report(CommandContext& context, const Placed& placed,
            const std::vector<SlotControl::Outcome>& outcomes) {
  Table table({{translated("SLOT"), true}, {translated("WIDGET")}, {translated("STATE")}});
  int failures = 0;
  for (const auto& outcome : outcomes) {
    const auto found = placed.find(outcome.slot);
    table.add({std::to_string(outcome.slot),
               {found == placed.end() ? "-" : found->second->name, TextStyle::bold},
               {outcome.text, outcome.isDone ? TextStyle::good : TextStyle::bad}});
    failures += outcome.isDone ? 0 : 1;
  }
  if (!table.isEmpty())
    table.print(context.console());
  if (failures > 0)
    throw HostError(
        ExitCode::failed,
        translated("{failures} of {number} slots failed; their logs are in \"{stateFolder}\"",
                   {{"failures", failures},
                    {"number", outcomes.size()},
                    {"stateFolder", context.stateFolder().string()}}));
}

/// With no widgets at all, makes the starter set when asked to; never by itself.
void offerStarterSet(CommandContext& context, WidgetLibrary& library, bool isWanted) {
  const auto& file = library.file();
  if (!file.widgets.empty() || !file.unrecognized.empty())
    return;
  if (!isWanted && context.console().isInteractive)
    isWanted =
        context.console().confirm(translated("There are no widgets yet. Make a starter set: a "
                                             "Pomodoro, a timer, a clock, a countdown,\nthe day's "
                                             "progress and a note?"),
                                  true);
  if (!isWanted)
    throw HostError(
        ExitCode::notFound,
        translated("there are no widgets yet; `tavrin start --starter` makes a first set, "
                   "`tavrin widgets add KIND --place` a single one"));
  makeStarterSet(library, context.platform().clock().now());
}

/// The placed slots, or those that are named. Throws HostError where there is no widget to show.
std::set<int> slotsToStart(const WidgetLibrary& library, const Words& references) {
  const auto placed = library.file().placedWidgets();
  std::set<int> slots = slotsNamed(
      [&]() -> auto& { return library; }, references);
  for (const int slot : slots)
    if (!placed.contains(slot))
      throw HostError(ExitCode::notFound,
                      translated("no widget is in slot {slot}", {{"slot", slot}}));
  if (references.empty())
    for (const auto& [slot, unused] : placed)
      slots.insert(slot);
  if (slots.empty())
    throw HostError(
        ExitCode::notFound,
        translated("no widget is placed; `tavrin widgets place NAME` gives one a slot"));
  return slots;
}

/// Shortcuts and Focus, where Dock layouts have any. Whether they are followed; what fails is a
/// remark: it is no reason not to start the widgets.
bool follow(CommandContext& context) {
  try {
    if (!startFollowingWhereWanted(context))
      return isFollowed(context);
    context.say(translated("The Dock layouts' shortcuts and Focus are followed."));
    return true;
  } catch (const std::exception& error) {
    context.remark(fmt::format("tavrin: {}", printable(error.what())));
    return false;
  }
}

void start(CommandContext& context, const Words& references, bool wantsStarterSet) {
  WidgetLibrary library(context);
  // Layouts are followed whether or not there are widgets beside them.
  const bool follows = references.empty() && follow(context);
  if (follows && library.file().placedWidgets().empty() && !wantsStarterSet)
    return;
  offerStarterSet(context, library, wantsStarterSet);
  const auto slots = slotsToStart(library, references);
  backUpWorkspace(context, WorkspaceBackup::Reason::launch);
  SlotControl control(context);
  const auto outcomes = control.start(slots);
  control.startEditor();
  if (!context.platform().applications().knowsIdentifiers())
    context.remark(
        translated("There is no session bus: the widgets follow no change of their settings until "
                   "`tavrin restart`, and `tavrin open` does not reach them."));
  report(context, library.file().placedWidgets(), outcomes);
}

void stop(CommandContext& context, const Words& references) {
  // What runs can be ended even where the widgets cannot be read; that is told afterwards.
  std::optional<WidgetLibrary> library;
  std::exception_ptr fault;
  try {
    library.emplace(context);
  } catch (const std::exception&) {
    fault = std::current_exception();
  }
  const auto readable = [&]() -> const WidgetLibrary& {
    if (fault)
      std::rethrow_exception(fault);
    return *library;
  };
  SlotControl control(context);
  const auto outcomes =
      control.stop(references.empty() ? allSlots() : slotsNamed(readable, references));
  bool isFollowerStopped = false;
  if (references.empty()) {
    control.stopEditor();
    isFollowerStopped = stopFollowing(context);
  }
  if (references.empty() && library)
    backUpWorkspace(context, WorkspaceBackup::Reason::quit);
  if (isFollowerStopped)
    context.say(translated("The Dock layouts' shortcuts and Focus are no longer followed."));
  else if (outcomes.empty())
    context.say(translated("Nothing runs."));
  report(context, library ? library->file().placedWidgets() : Placed(), outcomes);
  readable();
}

/// What could not be started again is not stopped.
void restart(CommandContext& context, const Words& references) {
  const WidgetLibrary library(context);
  slotsToStart(library, references);
  SlotControl(context).bundlesFolder();
  stop(context, references);
  start(context, references, false);
}

void open(CommandContext& context, const Words& references) {
  const WidgetLibrary library(context);
  SlotControl control(context);
  std::vector<SlotControl::Outcome> outcomes;
  for (const int slot : slotsNamed(
           [&]() -> auto& { return library; }, references))
    outcomes.push_back(control.open(slot));
  report(context, library.file().placedWidgets(), outcomes);
}

void focusStrip(CommandContext& context, const Words& references) {
  const WidgetLibrary library(context);
  SlotControl control(context);
  const auto slots = references.empty() ? allSlots()
                                        : slotsNamed(
                                              [&]() -> auto& { return library; }, references);
  if (std::ranges::none_of(slots, [&](int slot) { return control.focus(slot); }))
    throw HostError(ExitCode::failed,
                    translated("no tile can have the keyboard: tiles in a strip can"));
}

void status(CommandContext& context) {
  const WidgetLibrary library(context);
  SlotControl control(context);
  const auto placed = library.file().placedWidgets();
  Table table({{translated("SLOT"), true},
               {translated("WIDGET"), false, 32},
               {translated("KIND")},
               {translated("STATE")},
               {translated("PROCESS"), true}});
  JSONValue::Array list;
  for (const int slot : allSlots()) {
    const auto found = placed.find(slot);
    const auto process = control.process(slot);
    if (found == placed.end() && !process)
      continue;
    const auto* widget = found == placed.end() ? nullptr : found->second;
    table.add({std::to_string(slot),
               {widget == nullptr ? "-" : widget->name, TextStyle::bold},
               widget == nullptr ? "" : std::string(widget->kind.key()),
               {process ? translated("running") : translated("not running"),
                process ? TextStyle::good : TextStyle::dim},
               process ? std::to_string(*process) : "-"});
    JSONValue::Object entry{{"slot", slot},
                            {"isRunning", process.has_value()},
                            {"process", process ? JSONValue(*process) : JSONValue()},
                            {"log", control.logFile(slot).string()}};
    entry["widget"] = widget == nullptr ? JSONValue()
                                        : JSONValue::Object{{"id", widget->id.text()},
                                                            {"name", widget->name},
                                                            {"kind", widget->kind.key()}};
    list.emplace_back(std::move(entry));
  }
  if (context.printsJSON())
    context.print(list);
  else if (table.isEmpty())
    context.say(translated("No widget is placed and nothing runs."));
  else
    table.print(context.console());
}

Completer completeSlots(CommandContext& context) {
  return [&context](const Words& words, auto) {
    const WidgetLibrary library(context);
    std::vector<Suggestion> found;
    for (const auto& [slot, widget] : library.file().placedWidgets())
      if (std::ranges::count(words, widget->name) == 0)
        found.push_back({widget->name, translated("slot {slot}", {{"slot", slot}})});
    return found;
  };
}

} // namespace

void addSlotCommands(CLI::App& app, CommandContext& context) {
  auto references = std::make_shared<Words>();
  auto wantsStarterSet = std::make_shared<bool>(false);
  const auto addCommand = [&](const char* name, const std::string& text, bool isRequired = false) {
    auto* command = app.add_subcommand(name, text);
    auto* argument =
        command->add_option("SLOT", *references, translated("Slot numbers or widget names"));
    argument->required(isRequired);
    context.complete(argument, completeSlots(context));
    return command;
  };

  auto* starting = addCommand("start", translated("Put the placed widgets on the screen"));
  starting->add_flag("--starter", *wantsStarterSet,
                     translated("With no widgets, make a first set unasked"));
  starting->callback([=, &context] { start(context, *references, *wantsStarterSet); });
  CommandContext::examples(
      *starting, {{"tavrin start", translated("every placed widget")},
                  {"tavrin start --starter", translated("a first set, when there is none")},
                  {"tavrin start 3 Tea", translated("slot 3 and the widget Tea")}});

  auto* stopping = addCommand("stop", translated("Take the widgets off the screen"));
  stopping->callback([=, &context] { stop(context, *references); });
  CommandContext::examples(*stopping, {{"tavrin stop", translated("all of them")},
                                       {"tavrin stop Tea", translated("this one")}});

  auto* restarting = addCommand("restart", translated("Stop and start the widgets"));
  restarting->callback([=, &context] { restart(context, *references); });
  CommandContext::examples(*restarting, {{"tavrin restart", translated("after an update")}});

  auto* listing = app.add_subcommand("status", translated("Tell which widgets run"));
  context.addJSONFlag(*listing);
  listing->callback([&context] { status(context); });
  CommandContext::examples(*listing, {{"tavrin status", translated("slots, widgets, processes")},
                                      {"tavrin status --json", translated("for scripts")}});

  auto* focusing = addCommand("strip", translated("Give the strip of tiles the keyboard"));
  focusing->callback([=, &context] { focusStrip(context, *references); });
  CommandContext::examples(
      *focusing, {{"tavrin strip",
                   translated("arrows walk the tiles, Return opens, Menu lists, Escape leaves")},
                  {"tavrin strip Tea", translated("begin at this one")}});

  auto* opening = addCommand("open", translated("Open the panel of a widget"), true);
  opening->callback([=, &context] { open(context, *references); });
  CommandContext::examples(*opening,
                           {{"tavrin open Focus", translated("one that is open stays open")}});
}

} // namespace tavrin
