#include "TavrinCommand/Dock/DockCommands.h"

#include "TavrinCommand/Base/Completers.h"
#include "TavrinCommand/Base/ParserWords.h"
#include "TavrinCommand/Dock/DockChanges.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"

#include <CLI/App.hpp>
#include <fmt/format.h>
#include <iostream>
#include <iterator>

namespace tavrin {
namespace {

using Placed = std::vector<PlacedDockItem>;

/// The Docks that a reading command looks at: the user's own, or files, with the name to show.
struct ReadOptions {
  std::vector<std::string> files;

  void addTo(CLI::App& command, CommandContext& context) {
    command
        .add_option("--file", files,
                    translated("A Dock preferences file to read in place of your own Dock"))
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    context.addJSONFlag(command);
  }
  std::vector<std::pair<std::string, DockSnapshot>> read(CommandContext& context) const {
    std::vector<std::pair<std::string, DockSnapshot>> docks;
    if (files.empty())
      docks.emplace_back("", DockLibrary(context).snapshot());
    for (const auto& name : files) {
      const auto file = absolutePath(context, name);
      docks.emplace_back(file.string(),
                         dockPlistReader(file).read(context.platform().clock().now()));
    }
    return docks;
  }
};

void printDocks(CommandContext& context, const std::vector<std::pair<std::string, Placed>>& docks) {
  if (context.printsJSON()) {
    if (docks.size() == 1 && docks.front().first.empty())
      return context.print(itemsJSON(docks.front().second));
    JSONValue::Array list;
    for (const auto& [file, items] : docks)
      list.push_back(JSONValue::Object{{"file", file}, {"items", itemsJSON(items)}});
    return context.print(list);
  }
  for (const auto& [file, items] : docks) {
    if (!file.empty())
      context.say(file + ":");
    printItems(context, items);
  }
}

void addShow(CLI::App& dock, CommandContext& context) {
  auto* command = dock.add_subcommand("show", translated("List the Dock's items"));
  auto options = std::make_shared<ReadOptions>();
  options->addTo(*command, context);
  CommandContext::examples(*command, {{"tavrin dock show", translated("your own Dock")},
                                      {"tavrin dock show --file a.plist --file b.plist --json",
                                       translated("other machines' Docks")}});
  command->callback([options, &context] {
    std::vector<std::pair<std::string, Placed>> docks;
    for (const auto& [name, snapshot] : options->read(context))
      docks.emplace_back(name, placedItems(snapshot));
    printDocks(context, docks);
  });
}

void addFind(CLI::App& dock, CommandContext& context) {
  auto* command = dock.add_subcommand("find", translated("Say where items stand"));
  auto options = std::make_shared<ReadOptions>();
  auto selection = std::make_shared<DockSelection>();
  selection->everyMatch = true;
  auto* items = command->add_option("ITEM", selection->references,
                                    translated("A label, path, bundle identifier or address"));
  context.complete(items, completeDockItems(context));
  command->add_flag("--spacers", selection->allSpacers, translated("All spacers"));
  options->addTo(*command, context);
  CommandContext::examples(
      *command, {{"tavrin dock find Mail && echo it is there", translated("in a script")}});
  command->callback([options, selection, &context] {
    if (selection->references.empty() && !selection->allSpacers)
      throw HostError(ExitCode::usage, translated("name an item, or give --spacers"));
    std::vector<std::pair<std::string, Placed>> docks;
    for (const auto& [name, snapshot] : options->read(context))
      docks.emplace_back(name, select(snapshot, *selection));
    printDocks(context, docks);
  });
}

void addChanges(CLI::App& dock, CommandContext& context) {
  auto options = std::make_shared<DockChangeOptions>();
  addDockEditCommands(
      dock, context, [options, &context](CLI::App& command) { options->addTo(command, context); },
      [options, &context](DockEdit edit) { changeDocks(context, *options, {std::move(edit)}); });
}

/// The edits of a script: each line is an add, remove, move or spacer command.
std::vector<DockEdit> scriptEdits(CommandContext& context, const std::string& text,
                                  bool isElsewhere) {
  std::vector<DockEdit> edits;
  std::size_t number = 0;
  for (std::size_t start = 0; start < text.size();) {
    const auto end = std::min(text.find('\n', start), text.size());
    const auto line = trimmed(std::string_view(text).substr(start, end - start));
    start = end + 1;
    ++number;
    if (line.empty() || line.starts_with('#'))
      continue;
    CLI::App parser("", "dock");
    parser.require_subcommand(1);
    addDockEditCommands(
        parser, context, [](CLI::App&) {},
        [&](DockEdit edit) { edits.push_back(std::move(edit)); });
    std::string words(line);
    if (isElsewhere && words.substr(0, words.find_first_of(" \t")) == "add")
      words += " --allow-missing";
    try {
      parser.parse(words);
    } catch (const CLI::ParseError& error) {
      throw HostError(ExitCode::usage,
                      translated("line {number}: {reason}",
                                 {{"number", number}, {"reason", parserComplaint(error)}}));
    }
  }
  return edits;
}

void addEdit(CLI::App& dock, CommandContext& context) {
  auto* command =
      dock.add_subcommand("edit", translated("Make many changes with one write and one restart"));
  auto options = std::make_shared<DockChangeOptions>();
  auto script = std::make_shared<std::string>("-");
  command->add_option(
      "SCRIPT", *script,
      translated("A file whose lines are add, remove, move and spacer commands; - is the "
                 "standard input"));
  options->addTo(*command, context);
  CommandContext::examples(*command, {{"printf 'remove --all\\nadd /Applications/Mail.app\\n' | "
                                       "tavrin dock edit",
                                       translated("a Dock with one item")}});
  command->callback([options, script, &context] {
    changeDocks(context, *options,
                scriptEdits(context, textOf(context, *script), !options->files.empty()));
  });
}

void addApply(CLI::App& dock, CommandContext& context) {
  auto* command = dock.add_subcommand("apply", translated("Put a layout into the Dock"));
  auto options = std::make_shared<DockChangeOptions>();
  auto source = std::make_shared<std::string>();
  auto* argument = command->add_option(
      "LAYOUT", *source,
      translated("A profile, a Dock backup or a file; without one, the active profile"));
  context.complete(argument, completeLayouts(context));
  options->addTo(*command, context);
  CommandContext::examples(
      *command, {{"tavrin dock apply Work --dry-run", translated("see what would change")},
                 {"tavrin dock apply Work --file user.plist", translated("another Dock")}});
  command->callback([options, source, &context] {
    DockLibrary library(context);
    std::string reference = *source;
    if (reference.empty()) {
      const auto& active = library.profiles().file().activeProfileId;
      if (!active)
        throw HostError(ExitCode::notFound, translated("no profile is active; name a layout"));
      reference = active->text();
    }
    const auto target = library.layout(reference);
    changeDocks(context, *options, {[&](DockSnapshot& dockItems) {
                  dockItems.apps = target.apps;
                  dockItems.others = target.others;
                }});
  });
}

void addUndo(CLI::App& dock, CommandContext& context) {
  auto* command =
      dock.add_subcommand("undo", translated("Bring back the Dock before the last change"));
  auto isDryRun = std::make_shared<bool>(false);
  auto restarts = std::make_shared<bool>(true);
  command->add_flag("--dry-run", *isDryRun, translated("Show the change and write nothing"));
  addNoRestartFlag(*command, *restarts);
  context.addJSONFlag(*command);
  CommandContext::examples(*command,
                           {{"tavrin dock undo", translated("undone itself by another undo")}});
  command->callback([isDryRun, restarts, &context] {
    DockLibrary library(context, *restarts);
    const auto latest = library.backups().latestBackup();
    if (!latest)
      throw DockError::noBackupAvailable();
    const auto report =
        DockChangeDetector::diff(library.snapshot(), library.layout(latest->filename().string()));
    if (!*isDryRun)
      library.switcher().undoLastChange();
    if (context.printsJSON()) {
      auto json = changesJSON(report);
      json.object()->emplace("backup", latest->filename().string());
      json.object()->emplace("written", !*isDryRun);
      context.print(json);
    } else {
      sayChanges(context, report);
    }
  });
}

void addBackups(CLI::App& dock, CommandContext& context) {
  auto* command =
      dock.add_subcommand("backups", translated("List the Dock's backups, the newest first"));
  context.addJSONFlag(*command);
  CommandContext::examples(*command, {{"tavrin dock apply dock-2026-11-14T21-20-47.123Z",
                                       translated("go back further")}});
  command->callback([&context] {
    auto backups = DockLibrary(context).backups().listBackups();
    JSONValue::Array list;
    for (auto backup = backups.rbegin(); backup != backups.rend(); ++backup) {
      list.push_back(backup->string());
      if (!context.printsJSON())
        context.say(backup->filename().string());
    }
    if (context.printsJSON())
      context.print(list);
    else if (list.empty())
      context.say(translated("There is no Dock backup yet"));
  });
}

void addDiff(CLI::App& dock, CommandContext& context) {
  auto* command = dock.add_subcommand("diff", translated("Compare two layouts"));
  auto from = std::make_shared<std::string>();
  auto to = std::make_shared<std::string>("dock");
  auto* first =
      command->add_option("FROM", *from, translated("A profile, a Dock backup, a file or \"dock\""))
          ->required();
  auto* second =
      command->add_option("TO", *to, translated("The same; your own Dock when left out"));
  for (auto* argument : {first, second})
    context.complete(argument, completeLayouts(context));
  context.addJSONFlag(*command);
  CommandContext::examples(
      *command, {{"tavrin dock diff Work", translated("what your Dock has that Work has not")},
                 {"tavrin dock diff a.plist b.plist", translated("two files")}});
  command->callback([from, to, &context] {
    DockLibrary library(context);
    const auto report = DockChangeDetector::diff(library.layout(*from), library.layout(*to));
    if (context.printsJSON())
      context.print(changesJSON(report));
    else if (report.hasChanges())
      sayChanges(context, report);
    else
      context.say(translated("No difference"));
  });
}

} // namespace

void addDockCommands(CLI::App& app, CommandContext& context) {
  auto* dock = app.add_subcommand("dock", translated("The Dock's own items"));
  dock->require_subcommand(1);
  CommandContext::examples(*dock,
                           {{"tavrin dock show", translated("what is in it")},
                            {"tavrin dock undo", translated("the Dock before the last change")}});
  addShow(*dock, context);
  addFind(*dock, context);
  addChanges(*dock, context);
  addEdit(*dock, context);
  addApply(*dock, context);
  addUndo(*dock, context);
  addBackups(*dock, context);
  addDiff(*dock, context);
}

} // namespace tavrin
