#include "TavrinHost/Program.h"

#include "TavrinHost/CompletionCommands.h"
#include "TavrinHost/EditService.h"
#include "TavrinHost/SlotCommands.h"
#include "TavrinHost/WidgetCommands.h"

#include <algorithm>
#include <fmt/format.h>
#include <sstream>

namespace tavrin {
namespace {

constexpr const char* exitStatuses = R"(
Exit status:
  0  done
  1  failed for a reason outside the request
  2  no such command or option
  3  no widget, kind, setting or slot of that name
  4  several go by that name
  5  the value is not one the setting takes
  6  all twelve slots are taken)";

/// The innermost command that was named, whose help is the one to point at.
std::string commandPath(const CLI::App& app) {
  std::string path = "tavrin";
  for (const auto* command = &app;;) {
    const auto chosen = command->get_subcommands();
    if (chosen.empty())
      return path;
    command = chosen.back();
    path += " " + command->get_name();
  }
}

int answerParseError(HostContext& context, const CLI::App& app, const CLI::ParseError& error) {
  auto& console = context.console();
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    app.exit(error, console.out, console.err);
    return static_cast<int>(ExitCode::ok);
  }
  context.remark(
      fmt::format("tavrin: {}\nSee `{} --help`.", printable(error.what()), commandPath(app)));
  return static_cast<int>(ExitCode::usage);
}

} // namespace

std::unique_ptr<CLI::App> makeCommandLine(HostContext& context) {
  auto app = std::make_unique<CLI::App>("Live widgets in the Dock: place them, set them, run them.",
                                        "tavrin");
  app->set_version_flag("--version", "tavrin 1.0.0");
  app->require_subcommand(1);
  addWidgetCommands(*app, context);
  addSlotCommands(*app, context);
  addEditCommands(*app, context);
  addCompletionCommands(*app, context);
  HostContext::examples(*app, {{"tavrin start", "put the placed widgets on the screen"},
                               {"tavrin widgets", "list what there is"},
                               {"tavrin widgets add timer Tea --place", "a new widget"},
                               {"tavrin widgets set Tea presets=3m,5m", "change it"}});
  app->footer(app->get_footer() + "\n" + exitStatuses);
  return app;
}

int runCommandLine(HostContext& context, const std::vector<std::string>& words) {
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
  } catch (const std::exception& error) {
    context.remark(fmt::format("tavrin: {}", printable(error.what())));
    return static_cast<int>(ExitCode::failed);
  }
}

} // namespace tavrin
