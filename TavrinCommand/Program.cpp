#include "TavrinCommand/Program.h"

#include "TavrinCommand/Base/ParserWords.h"
#include "TavrinCommand/CompletionCommands.h"
#include "TavrinCommand/Dock/BackupCommands.h"
#include "TavrinCommand/Dock/DockCommands.h"
#include "TavrinCommand/Dock/FocusCommands.h"
#include "TavrinCommand/Dock/ProfileCommands.h"
#include "TavrinCommand/DoctorCommands.h"
#include "TavrinCommand/Widgets/EditService.h"
#include "TavrinCommand/Widgets/SlotCommands.h"
#include "TavrinCommand/Widgets/UsageCommands.h"
#include "TavrinCommand/Widgets/WidgetCommands.h"
#include "TavrinCommand/Widgets/WindowCommands.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinHost/Widgets/SettingEditing.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sstream>

namespace tavrin {
namespace {

constexpr const char* exitStatuses =
    marked("Exit status:\n"
           "  0  done\n"
           "  1  failed for a reason outside the request\n"
           "  2  no such command or option\n"
           "  3  no widget, kind, setting or slot of that name\n"
           "  4  several go by that name\n"
           "  5  the value is not one the setting takes\n"
           "  6  all twelve slots are taken\n"
           "  10 to 18  the Dock: its file not found, unreadable, malformed, not writable; an\n"
           "     unsupported item; the Dock did not restart as it should; a file to add, a\n"
           "     profile, or a backup not found");

/// The innermost command that was named, whose help is the one to point at.
std::pair<const CLI::App*, std::string> innermostCommand(const CLI::App& app) {
  std::string path = "tavrin";
  for (const auto* command = &app;;) {
    const auto chosen = command->get_subcommands();
    if (chosen.empty())
      return {command, path};
    command = chosen.back();
    path += " " + command->get_name();
  }
}

/// What the parser has to say; of a command that there is not, it only knows that one is missing.
std::string parseErrorText(const CLI::App& command, const CLI::ParseError& error) {
  const auto unknown = command.remaining();
  if (unknown.empty())
    return parserComplaint(error);
  // The parser lists them from the last to the first.
  if (command.get_subcommands([](const CLI::App*) { return true; }).empty())
    return dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr
               ? parserComplaint(error)
               : translated("not expected: {unknown}",
                            {{"unknown", fmt::format("{}", fmt::join(unknown, " "))}});
  const TextPlaces places = {{"name", unknown.front()}};
  return unknown.front().starts_with('-') ? translated("there is no option \"{name}\"", places)
                                          : translated("there is no command \"{name}\"", places);
}

int answerParseError(CommandContext& context, const CLI::App& app, const CLI::ParseError& error) {
  auto& console = context.console();
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    app.exit(error, console.out, console.err);
    return static_cast<int>(ExitCode::ok);
  }
  const auto [command, path] = innermostCommand(app);
  context.remark(fmt::format("tavrin: {}\n{}", printable(parseErrorText(*command, error)),
                             translated("See `{command} --help`.", {{"command", path}})));
  return static_cast<int>(ExitCode::usage);
}

} // namespace

std::unique_ptr<CLI::App> makeCommandLine(CommandContext& context) {
  auto app = std::make_unique<CLI::App>(
      translated("Live widgets in the Dock: place them, set them, run them."), "tavrin");
  // Subcommands take these from the command that they are added to.
  app->set_help_flag("-h,--help", translated("Print this help message and exit"));
  app->set_version_flag("--version", "tavrin 1.0.0",
                        translated("Display program version information and exit"));
  app->require_subcommand(1);
  addWidgetCommands(*app, context);
  addSlotCommands(*app, context);
  addEditCommands(*app, context);
  addWindowCommands(*app, context);
  addDockCommands(*app, context);
  addProfileCommands(*app, context);
  addBackupCommands(*app, context);
  addFocusCommands(*app, context);
  addUsageCommands(*app, context);
  addDoctorCommands(*app, context);
  addCompletionCommands(*app, context);
  CommandContext::examples(*app,
                           {{"tavrin start", translated("put the placed widgets on the screen")},
                            {"tavrin widgets", translated("list what there is")},
                            {"tavrin widgets add timer Tea --place", translated("a new widget")},
                            {"tavrin widgets set Tea presets=3m,5m", translated("change it")}});
  app->footer(app->get_footer() + "\n\n" + translated(exitStatuses));
  translateHelp(*app);
  return app;
}

int runCommandLine(CommandContext& context, const std::vector<std::string>& words) {
  const auto app = makeCommandLine(context);
  try {
    // Not for the parser: the words are unfinished.
    if (!words.empty() && words.front() == completionQuestion) {
      printSuggestions(*app, context, {words.begin() + 1, words.end()});
      return static_cast<int>(ExitCode::ok);
    }
    app->parse(std::vector<std::string>(words.rbegin(), words.rend()));
    return static_cast<int>(ExitCode::ok);
  } catch (const CLI::ParseError& error) {
    return answerParseError(context, *app, error);
  } catch (const HostError& error) {
    context.remark(fmt::format("tavrin: {}", printable(error.what())));
    return static_cast<int>(error.code());
  } catch (const SettingError& error) {
    context.remark(fmt::format("tavrin: {}", printable(error.what())));
    return static_cast<int>(hostError(error).code());
  } catch (const DockError& error) {
    context.remark(fmt::format("tavrin: {}", printable(error.what())));
    if (!error.tile().empty())
      context.remark(translated("It is {tile}.", {{"tile", printable(error.tile())}}));
    return static_cast<int>(exitCode(error));
  } catch (const std::exception& error) {
    context.remark(fmt::format("tavrin: {}", printable(error.what())));
    return static_cast<int>(ExitCode::failed);
  }
}

} // namespace tavrin
