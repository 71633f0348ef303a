#include "TavrinCommand/Dock/ProfileCommands.h"

#include "TavrinCommand/Base/Completers.h"
#include "TavrinCommand/Dock/DockChanges.h"
#include "TavrinCore/Profiles/ProfileTransfer.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <CLI/App.hpp>
#include <fmt/format.h>
#include <iterator>

namespace tavrin {
namespace {

using Words = std::vector<std::string>;

CLI::Option* addProfileArgument(CLI::App& command, CommandContext& context, std::string& target) {
  auto* argument =
      command.add_option("PROFILE", target, translated("A profile's name or identifier"));
  context.complete(argument, completeProfiles(context));
  return argument;
}

JSONValue profileJSON(const Profile& profile, bool isActive) {
  JSONValue::Object json{{"id", profile.id.text()},
                         {"name", profile.name},
                         {"color", nameOf(profile.color)},
                         {"active", isActive},
                         {"items", static_cast<std::int64_t>(profile.items.size())},
                         {"others", static_cast<std::int64_t>(profile.others.size())}};
  if (profile.hotkey)
    json.emplace("hotkey", hotkeySymbols(*profile.hotkey));
  if (profile.focusModeBinding)
    json.emplace("focusModeBinding", *profile.focusModeBinding);
  return json;
}

void sayProfile(CommandContext& context, const Profile& profile, const char* sentence) {
  if (context.printsJSON())
    context.print(profileJSON(profile, false));
  else
    context.say(translated(sentence, {{"name", printable(profile.name)}}));
}

void listProfiles(CommandContext& context) {
  DockLibrary library(context);
  const auto& file = library.profiles().file();
  JSONValue::Array json;
  Table table({{""},
               {translated("NAME"), false, 32},
               {translated("COLOUR")},
               {translated("ITEMS"), true},
               {translated("SHORTCUT")},
               {translated("FOCUS")},
               {translated("ID")}});
  for (const auto& profile : file.profiles) {
    const bool isActive = file.activeProfileId == profile.id;
    json.push_back(profileJSON(profile, isActive));
    table.add({isActive ? "*" : "",
               {profile.name, TextStyle::bold},
               std::string(nameOf(profile.color)),
               std::to_string(profile.items.size() + profile.others.size()),
               profile.hotkey ? hotkeyText(*profile.hotkey) : "",
               profile.focusModeBinding.value_or(""),
               profile.id.text().substr(0, 8)});
  }
  if (context.printsJSON())
    context.print(json);
  else if (table.isEmpty())
    context.say(translated(
        "There are no profiles yet; `tavrin profiles create NAME` makes one of the Dock"));
  else
    table.print(context.console());
}

struct CreateOptions {
  std::string name;
  std::string color = "blue";
  std::string from = "dock";
  std::string focus;
  std::string otherApps = "hide";
  bool isEmpty = false;
  bool activates = false;
};

std::string requiredName(const std::string& text) {
  const auto name = trimmed(text);
  if (name.empty())
    throw HostError(ExitCode::refusedValue, translated("a profile needs a name"));
  return std::string(name);
}

void create(CommandContext& context, const CreateOptions& options) {
  DockLibrary library(context);
  Profile profile;
  profile.id = UUID::random();
  profile.name = requiredName(options.name);
  profile.color = *enumNamed<ProfileColor>(options.color);
  profile.otherWorkspaceApps = *enumNamed<OtherWorkspaceApps>(options.otherApps);
  if (!options.focus.empty())
    profile.focusModeBinding = options.focus;
  if (!options.isEmpty) {
    auto layout = library.layout(options.from);
    profile.items = std::move(layout.apps);
    profile.others = std::move(layout.others);
  }
  library.profiles().create(profile);
  if (options.activates)
    library.switcher().activate(profile.id);
  sayProfile(context, profile, marked("Made \"{name}\""));
}

template <NamedEnum E> Words namesOf() {
  Words names;
  for (const auto& [unused, name] : EnumNames<E>::names)
    names.emplace_back(name);
  return names;
}

void addCreate(CLI::App& profiles, CommandContext& context) {
  auto* command =
      profiles.add_subcommand("create", translated("Make a profile, of the Dock as it is"));
  auto options = std::make_shared<CreateOptions>();
  command->add_option("NAME", options->name, translated("Its name"))->required();
  command
      ->add_option("--color", options->color,
                   translated("blue, pink, orange, green, purple or graphite"))
      ->check(CLI::IsMember(namesOf<ProfileColor>()));
  auto* from =
      command->add_option("--from", options->from, translated("A layout other than the Dock's"));
  context.complete(from, completeLayouts(context));
  command->add_flag("--empty", options->isEmpty, translated("Without items"))->excludes(from);
  command->add_option("--focus", options->focus, translated("on, off, or a Focus mode's name"));
  command
      ->add_option(
          "--other-apps", options->otherApps,
          translated("What happens to applications that are not in it: keep, hide or quit"))
      ->check(CLI::IsMember(namesOf<OtherWorkspaceApps>()));
  command->add_flag("--activate", options->activates, translated("Make it the active one"));
  context.addJSONFlag(*command);
  CommandContext::examples(
      *command, {{"tavrin profiles create Work --color green", translated("the Dock as it is")},
                 {"tavrin profiles create Calm --focus on", translated("for a Focus")}});
  command->callback([options, &context] { create(context, *options); });
}

void addCapture(CLI::App& profiles, CommandContext& context) {
  auto* command =
      profiles.add_subcommand("capture", translated("Take the Dock as it is into a profile"));
  auto name = std::make_shared<std::string>();
  addProfileArgument(*command, context, *name)
      ->description(translated("A profile's name or identifier; the active one when left out"));
  context.addJSONFlag(*command);
  CommandContext::examples(*command, {{"tavrin profiles capture", translated("the active profile")},
                                      {"tavrin profiles capture Work", translated("another one")}});
  command->callback([name, &context] {
    DockLibrary library(context);
    bool isChanged = false;
    if (name->empty()) {
      isChanged = library.switcher().captureCurrentDock();
    } else {
      isChanged = library.switcher().capture(library.profile(*name).id, library.snapshot());
    }
    if (context.printsJSON())
      context.print(JSONValue::Object{{"changed", isChanged}});
    else
      context.say(isChanged ? translated("Captured the Dock") : translated("Nothing to capture"));
  });
}

struct SwitchOptions {
  std::string name;
  bool isDryRun = false;
  bool restarts = true;

  void addTo(CLI::App& command, CommandContext& context) {
    command.add_flag("--dry-run", isDryRun, translated("Show the change and write nothing"));
    addNoRestartFlag(command, restarts);
    context.addJSONFlag(command);
  }
};

JSONValue unchangedJSON(const Profile& profile) {
  auto json = changesJSON({});
  json.object()->emplace("profile", profile.id.text());
  json.object()->emplace("written", false);
  return json;
}

/// What putting a profile into the Dock changes there, and doing it. `work` gives whether the Dock
/// was written.
void change(CommandContext& context, DockLibrary& library, const Profile& profile, bool isDryRun,
            const std::function<bool()>& work) {
  const auto dock = library.snapshot();
  const auto report = DockChangeDetector::diff(dock, asRead(profile.snapshot(dock.capturedAt)));
  const bool isWritten = !isDryRun && work();
  if (context.printsJSON()) {
    auto json = changesJSON(report);
    json.object()->emplace("profile", profile.id.text());
    json.object()->emplace("written", isWritten);
    return context.print(json);
  }
  sayChanges(context, report);
  if (!isDryRun)
    context.say(
        translated("\"{name}\" is the active profile", {{"name", printable(profile.name)}}));
}

void addSwitch(CLI::App& profiles, CommandContext& context) {
  auto* command = profiles.add_subcommand("switch", translated("Put a profile into the Dock"));
  auto options = std::make_shared<SwitchOptions>();
  addProfileArgument(*command, context, options->name)->required();
  options->addTo(*command, context);
  CommandContext::examples(
      *command, {{"tavrin profiles switch Work", translated("`tavrin dock undo` goes back")}});
  command->callback([options, &context] {
    DockLibrary library(context, options->restarts);
    const Profile profile = library.profile(options->name);
    if (library.profiles().file().activeProfileId == profile.id) {
      context.remark(translated("\"{name}\" is the active profile already; `tavrin profiles apply` "
                                "puts it into the Dock anew",
                                {{"name", printable(profile.name)}}));
      if (context.printsJSON())
        context.print(unchangedJSON(profile));
      return;
    }
    change(context, library, profile, options->isDryRun,
           [&] { return library.switcher().switchTo(profile.id); });
  });
}

void addProfileApply(CLI::App& profiles, CommandContext& context) {
  auto* command = profiles.add_subcommand(
      "apply", translated("Put the active profile into the Dock where they differ"));
  auto options = std::make_shared<SwitchOptions>();
  options->addTo(*command, context);
  CommandContext::examples(
      *command, {{"tavrin profiles apply --dry-run", translated("see what would change")}});
  command->callback([options, &context] {
    DockLibrary library(context, options->restarts);
    const auto profile = library.profiles().activeProfile();
    if (!profile)
      throw HostError(ExitCode::notFound, translated("no profile is active"));
    change(context, library, *profile, options->isDryRun,
           [&] { return library.switcher().applyActiveProfile(); });
  });
}

/// A command that changes one profile's record.
void addChange(CLI::App& profiles, CommandContext& context, const char* name,
               const std::string& meaning, const char* value, const std::string& valueMeaning,
               const char* example,
               std::function<void(DockLibrary&, Profile&, const std::string&)> apply) {
  auto* command = profiles.add_subcommand(name, meaning);
  auto words = std::make_shared<std::pair<std::string, std::string>>();
  addProfileArgument(*command, context, words->first)->required();
  command->add_option(value, words->second, valueMeaning)->required();
  context.addJSONFlag(*command);
  CommandContext::examples(*command, {{example, meaning}});
  command->callback([words, apply = std::move(apply), &context] {
    DockLibrary library(context);
    const auto changed =
        library.profiles().change(library.profile(words->first).id, [&](Profile& profile) {
          apply(library, profile, words->second);
        });
    sayProfile(context, changed, marked("Changed \"{name}\""));
  });
}

void addRecordCommands(CLI::App& profiles, CommandContext& context) {
  addChange(profiles, context, "rename", translated("Give a profile another name"), "NAME",
            translated("The new name"), "tavrin profiles rename Work Job",
            [](DockLibrary&, Profile& profile, const std::string& name) {
              profile.name = requiredName(name);
            });
  addChange(profiles, context, "hotkey", translated("Bind a profile to a shortcut"), "KEYS",
            translated("Such as ctrl+alt+1; none for no shortcut"),
            "tavrin profiles hotkey Work ctrl+alt+1",
            [](DockLibrary& library, Profile& profile, const std::string& keys) {
              const auto hotkey =
                  keys == "none" ? std::nullopt : std::optional(hotkeyFromText(keys));
              if (hotkey)
                library.requireFree(*hotkey, profile.id);
              profile.hotkey = hotkey;
            });
  addChange(profiles, context, "focus", translated("Bind a profile to the Focus state"), "STATE",
            translated("on, off, a Focus mode's name, or none"), "tavrin profiles focus Calm on",
            [](DockLibrary&, Profile& profile, const std::string& state) {
              profile.focusModeBinding = state == "none" ? std::nullopt : std::optional(state);
            });
  auto* command = profiles.add_subcommand("delete", translated("Delete a profile"));
  auto name = std::make_shared<std::string>();
  addProfileArgument(*command, context, *name)->required();
  context.addJSONFlag(*command);
  CommandContext::examples(
      *command, {{"tavrin profiles delete Work", translated("the Dock stays as it is")}});
  command->callback([name, &context] {
    DockLibrary library(context);
    const Profile profile = library.profile(*name);
    library.profiles().remove(profile.id);
    sayProfile(context, profile, marked("Deleted \"{name}\""));
  });
}

void addExport(CLI::App& profiles, CommandContext& context) {
  auto* command =
      profiles.add_subcommand("export", translated("Write profiles for another machine"));
  auto names = std::make_shared<Words>();
  auto output = std::make_shared<std::string>("-");
  auto* argument =
      command->add_option("PROFILE", *names, translated("Names or identifiers; all when left out"));
  context.complete(argument, completeProfiles(context));
  command->add_option("--output,-o", *output, translated("A file; - is the standard output"));
  CommandContext::examples(*command,
                           {{"tavrin profiles export Work -o work.json", translated("one")}});
  command->callback([names, output, &context] {
    DockLibrary library(context);
    std::vector<Profile> chosen;
    for (const auto& name : *names)
      chosen.push_back(library.profile(name));
    const auto text =
        ProfileTransfer::exportData(names->empty() ? library.profiles().file().profiles : chosen);
    if (*output == "-")
      context.say(text);
    else
      writeFileAtomically(absolutePath(context, *output), text);
  });
}

void addImport(CLI::App& profiles, CommandContext& context) {
  auto* command =
      profiles.add_subcommand("import", translated("Add profiles that were exported elsewhere"));
  auto source = std::make_shared<std::string>();
  command->add_option("FILE", *source, translated("A file; - is the standard input"))->required();
  context.addJSONFlag(*command);
  CommandContext::examples(
      *command, {{"tavrin profiles import work.json", translated("beside those there are")}});
  command->callback([source, &context] {
    DockLibrary library(context);
    JSONValue::Array added;
    for (const auto& profile : library.importProfiles(textOf(context, *source), *source)) {
      added.push_back(profileJSON(profile, false));
      if (!context.printsJSON())
        context.say(translated("Added \"{name}\"", {{"name", printable(profile.name)}}));
    }
    if (context.printsJSON())
      context.print(added);
  });
}

} // namespace

void addProfileCommands(CLI::App& app, CommandContext& context) {
  auto* profiles = app.add_subcommand("profiles", translated("Named Dock layouts"));
  profiles->require_subcommand(1);
  CommandContext::examples(*profiles,
                           {{"tavrin profiles create Work", translated("the Dock as it is")},
                            {"tavrin profiles switch Work", translated("back to it")}});
  auto* listing = profiles->add_subcommand("list", translated("List the profiles"));
  context.addJSONFlag(*listing);
  CommandContext::examples(*listing,
                           {{"tavrin profiles list", translated("the active one has a star")}});
  listing->callback([&context] { listProfiles(context); });
  addCreate(*profiles, context);
  addCapture(*profiles, context);
  addSwitch(*profiles, context);
  addProfileApply(*profiles, context);
  addRecordCommands(*profiles, context);
  addExport(*profiles, context);
  addImport(*profiles, context);
}

} // namespace tavrin
