#include "TavrinCommand/Dock/FocusCommands.h"

#include "TavrinCommand/Dock/DockChanges.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinHost/Dock/FocusSession.h"
#include "TavrinHost/Dock/WorkspaceBackups.h"

#include <CLI/App.hpp>

namespace tavrin {
namespace {

struct FocusWords {
  std::optional<double> interval;
  std::optional<std::string> numbered;
  bool restarts = true;
};

void run(CommandContext& context, const FocusWords& words) {
  FocusOptions options;
  options.interval = words.interval;
  options.restarts = words.restarts;
  if (words.numbered)
    options.numbered =
        words.numbered == "none" ? HotkeyModifiers() : modifiersFromText(*words.numbered);
  const bool isPlain = !options.interval && !options.numbered && options.restarts;
  // A second one goes on only where it is asked to follow in another way.
  if (!claimFollowing(context) && isPlain)
    return context.say(translated("Shortcuts and Focus are followed already."));
  backUpWorkspace(context, WorkspaceBackup::Reason::launch);
  std::optional<FocusSession> session;
  context.platform().dockServices().runUntilStopped([&] {
    session.emplace(context, options);
    session->start();
  });
  session->stop();
  backUpWorkspace(context, WorkspaceBackup::Reason::quit);
}

} // namespace

void addFocusCommands(CLI::App& app, CommandContext& context) {
  auto* command = app.add_subcommand(
      "focus", translated("Follow the Focus state and the profiles' shortcuts until stopped"));
  auto words = std::make_shared<FocusWords>();
  command
      ->add_option("--interval", words->interval,
                   translated("Seconds between two looks, 0.2 to 3600"))
      ->check(CLI::Range(Following::leastInterval, Following::mostInterval));
  command->add_option("--numbered", words->numbered,
                      translated("The modifiers of the numbered shortcuts, or none"));
  addNoRestartFlag(*command, words->restarts);
  CommandContext::examples(*command,
                           {{"tavrin focus --numbered super+ctrl", translated("other shortcuts")},
                            {"tavrin profiles focus Calm on", translated("what it switches to")}});
  command->callback([words, &context] { run(context, *words); });
}

} // namespace tavrin
