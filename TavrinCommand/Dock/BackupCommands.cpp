#include "TavrinCommand/Dock/BackupCommands.h"

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Dock/WorkspaceBackups.h"
#include "TavrinHost/NamedReference.h"

#include <CLI/App.hpp>
#include <fmt/format.h>

namespace tavrin {
namespace {

WorkspaceBackup backupNamed(const WorkspaceBackupStore& store, const std::string& reference) {
  const auto backups = store.list();
  if (reference == "latest" && !backups.empty())
    return backups.front();
  const auto found = nearest<WorkspaceBackup>(
      backups, {[&](const WorkspaceBackup& one) { return one.id() == reference; },
                [&](const WorkspaceBackup& one) {
                  return !reference.empty() && one.id().starts_with(reference);
                }});
  if (found.empty())
    throw HostError(ExitCode::notFound, fmt::format("there is no backup \"{}\"", reference));
  if (found.size() > 1)
    throwAmbiguous(reference, found, [](const WorkspaceBackup& one) { return one.id(); });
  return *found.front();
}

JSONValue::Object backupJSON(const WorkspaceBackup& backup) {
  return {{"id", backup.id()},
          {"date", iso8601(backup.date)},
          {"reason", nameOf(backup.reason)},
          {"path", backup.url.string()}};
}

CLI::Option* addBackupArgument(CLI::App& command, CommandContext& context, std::string& target) {
  auto* argument =
      command.add_option("BACKUP", target, "A backup's name, the start of it, or latest")
          ->required();
  context.complete(argument, [&context](const std::vector<std::string>& words, auto) {
    std::vector<Suggestion> found;
    if (words.empty())
      for (const auto& backup : workspaceBackups(context).list())
        found.push_back({backup.id(), std::string(nameOf(backup.reason))});
    return found;
  });
  return argument;
}

void list(CommandContext& context) {
  JSONValue::Array json;
  Table table({{"BACKUP"}, {"TAKEN"}, {"REASON"}});
  for (const auto& backup : workspaceBackups(context).list()) {
    json.push_back(backupJSON(backup));
    table.add({{backup.id(), TextStyle::bold},
               dateText(backup.date),
               std::string(nameOf(backup.reason))});
  }
  if (context.printsJSON())
    context.print(json);
  else if (table.isEmpty())
    context.say("There are no backups yet");
  else
    table.print(context.console());
}

void show(CommandContext& context, const std::string& reference) {
  const auto store = workspaceBackups(context);
  const auto backup = backupNamed(store, reference);
  const auto contents = store.contents(backup);
  if (context.printsJSON()) {
    auto json = backupJSON(backup);
    json.emplace("profiles", encode(contents.profiles));
    json.emplace("widgets", encode(contents.widgets));
    return context.print(json);
  }
  context.say(fmt::format("{}  {}  {}", backup.id(), dateText(backup.date), nameOf(backup.reason)));
  for (const auto& profile : contents.profiles.profiles)
    context.say(fmt::format("profile  {}  {} items", printable(profile.name),
                            profile.items.size() + profile.others.size()));
  for (const auto& widget : contents.widgets.widgets)
    context.say(fmt::format("widget   {}  {}", printable(widget.name), widget.kind.key()));
}

void restore(CommandContext& context, const std::string& reference, bool isDryRun) {
  auto store = workspaceBackups(context);
  const auto backup = backupNamed(store, reference);
  // What cannot be read must not take the place of what can.
  const auto contents = store.contents(backup);
  if (!isDryRun) {
    store.didKeepCurrent = [&context](const WorkspaceBackup& kept) {
      context.remark(fmt::format("The files as they were are kept; `tavrin backups restore {}` "
                                 "brings them back",
                                 kept.id()));
    };
    store.restore(backup, context.platform().clock().now());
    context.platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
  }
  if (context.printsJSON()) {
    auto json = backupJSON(backup);
    json.emplace("written", !isDryRun);
    return context.print(json);
  }
  context.say(fmt::format("{} {}: {} profiles, {} widgets", isDryRun ? "Would restore" : "Restored",
                          backup.id(), contents.profiles.profiles.size(),
                          contents.widgets.widgets.size()));
}

void create(CommandContext& context, WorkspaceBackup::Reason reason) {
  const auto made = workspaceBackups(context).backUp(reason, context.platform().clock().now());
  if (context.printsJSON())
    context.print(made ? JSONValue(backupJSON(*made)) : JSONValue());
  else
    context.say(made ? "Made " + made->id() : "Nothing has changed since the last backup");
}

} // namespace

void addBackupCommands(CLI::App& app, CommandContext& context) {
  auto* backups = app.add_subcommand("backups", "Backups of all profiles and widgets");
  backups->require_subcommand(1);
  CommandContext::examples(*backups, {{"tavrin backups list", "what there is"},
                                      {"tavrin backups restore latest", "go back"}});

  auto* listing = backups->add_subcommand("list", "List the backups, the newest first");
  context.addJSONFlag(*listing);
  CommandContext::examples(*listing, {{"tavrin backups list --json", "for scripts"}});
  listing->callback([&context] { list(context); });

  auto* showing = backups->add_subcommand("show", "Say what a backup holds");
  auto shown = std::make_shared<std::string>();
  addBackupArgument(*showing, context, *shown);
  context.addJSONFlag(*showing);
  CommandContext::examples(*showing, {{"tavrin backups show latest", "the newest one"}});
  showing->callback([shown, &context] { show(context, *shown); });

  auto* restoring = backups->add_subcommand("restore", "Bring back profiles and widgets");
  auto restored = std::make_shared<std::string>();
  auto isDryRun = std::make_shared<bool>(false);
  addBackupArgument(*restoring, context, *restored);
  restoring->add_flag("--dry-run", *isDryRun, "Write nothing");
  context.addJSONFlag(*restoring);
  CommandContext::examples(*restoring, {{"tavrin backups restore latest", "the newest one"}});
  restoring->callback([restored, isDryRun, &context] { restore(context, *restored, *isDryRun); });

  auto* creating = backups->add_subcommand("create", "Back up where something has changed");
  auto reason = std::make_shared<std::string>("launch");
  creating->add_option("--reason", *reason, "launch or quit")
      ->check(CLI::IsMember({"launch", "quit"}));
  context.addJSONFlag(*creating);
  CommandContext::examples(*creating, {{"tavrin backups create", "before an experiment"}});
  creating->callback(
      [reason, &context] { create(context, *enumNamed<WorkspaceBackup::Reason>(*reason)); });
}

} // namespace tavrin
