#include "TavrinCommand/Dock/BackupCommands.h"

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Text/Texts.h"
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
    throw HostError(ExitCode::notFound,
                    translated("there is no backup \"{reference}\"", {{"reference", reference}}));
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
      command
          .add_option("BACKUP", target, translated("A backup's name, the start of it, or latest"))
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
  Table table({{translated("BACKUP")}, {translated("TAKEN")}, {translated("REASON")}});
  for (const auto& backup : workspaceBackups(context).list()) {
    json.push_back(backupJSON(backup));
    table.add({{backup.id(), TextStyle::bold},
               dateText(backup.date),
               std::string(nameOf(backup.reason))});
  }
  if (context.printsJSON())
    context.print(json);
  else if (table.isEmpty())
    context.say(translated("There are no backups yet"));
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
    context.say(plural("profile  {name}  {count} items", "profile  {name}  {count} items",
                       static_cast<long long>(profile.items.size() + profile.others.size()),
                       {{"name", printable(profile.name)}}));
  for (const auto& widget : contents.widgets.widgets)
    context.say(translated("widget   {name}  {key}",
                           {{"name", printable(widget.name)}, {"key", widget.kind.key()}}));
}

void restore(CommandContext& context, const std::string& reference, bool isDryRun) {
  auto store = workspaceBackups(context);
  const auto backup = backupNamed(store, reference);
  // What cannot be read must not take the place of what can.
  const auto contents = store.contents(backup);
  if (!isDryRun) {
    store.didKeepCurrent = [&context](const WorkspaceBackup& kept) {
      context.remark(
          translated("The files as they were are kept; `tavrin backups restore {identifier}` "
                     "brings them back",
                     {{"identifier", kept.id()}}));
    };
    store.restore(backup, context.platform().clock().now());
    context.platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
  }
  if (context.printsJSON()) {
    auto json = backupJSON(backup);
    json.emplace("written", !isDryRun);
    return context.print(json);
  }
  const TextPlaces places = {{"backup", backup.id()},
                             {"profiles", contents.profiles.profiles.size()},
                             {"widgets", contents.widgets.widgets.size()}};
  context.say(
      isDryRun
          ? translated("Would restore {backup}: {profiles} profiles, {widgets} widgets", places)
          : translated("Restored {backup}: {profiles} profiles, {widgets} widgets", places));
}

void create(CommandContext& context, WorkspaceBackup::Reason reason) {
  const auto made = workspaceBackups(context).backUp(reason, context.platform().clock().now());
  if (context.printsJSON())
    context.print(made ? JSONValue(backupJSON(*made)) : JSONValue());
  else
    context.say(made ? translated("Made {backup}", {{"backup", made->id()}})
                     : translated("Nothing has changed since the last backup"));
}

} // namespace

void addBackupCommands(CLI::App& app, CommandContext& context) {
  auto* backups = app.add_subcommand("backups", translated("Backups of all profiles and widgets"));
  backups->require_subcommand(1);
  CommandContext::examples(*backups, {{"tavrin backups list", translated("what there is")},
                                      {"tavrin backups restore latest", translated("go back")}});

  auto* listing = backups->add_subcommand("list", translated("List the backups, the newest first"));
  context.addJSONFlag(*listing);
  CommandContext::examples(*listing, {{"tavrin backups list --json", translated("for scripts")}});
  listing->callback([&context] { list(context); });

  auto* showing = backups->add_subcommand("show", translated("Say what a backup holds"));
  auto shown = std::make_shared<std::string>();
  addBackupArgument(*showing, context, *shown);
  context.addJSONFlag(*showing);
  CommandContext::examples(*showing,
                           {{"tavrin backups show latest", translated("the newest one")}});
  showing->callback([shown, &context] { show(context, *shown); });

  auto* restoring =
      backups->add_subcommand("restore", translated("Bring back profiles and widgets"));
  auto restored = std::make_shared<std::string>();
  auto isDryRun = std::make_shared<bool>(false);
  addBackupArgument(*restoring, context, *restored);
  restoring->add_flag("--dry-run", *isDryRun, translated("Write nothing"));
  context.addJSONFlag(*restoring);
  CommandContext::examples(*restoring,
                           {{"tavrin backups restore latest", translated("the newest one")}});
  restoring->callback([restored, isDryRun, &context] { restore(context, *restored, *isDryRun); });

  auto* creating =
      backups->add_subcommand("create", translated("Back up where something has changed"));
  auto reason = std::make_shared<std::string>("launch");
  creating->add_option("--reason", *reason, translated("launch or quit"))
      ->check(CLI::IsMember({"launch", "quit"}));
  context.addJSONFlag(*creating);
  CommandContext::examples(*creating,
                           {{"tavrin backups create", translated("before an experiment")}});
  creating->callback(
      [reason, &context] { create(context, *enumNamed<WorkspaceBackup::Reason>(*reason)); });
}

} // namespace tavrin
