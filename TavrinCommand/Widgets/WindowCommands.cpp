#include "TavrinCommand/Widgets/WindowCommands.h"

#include "TavrinCommand/Base/Completers.h"
#include "TavrinCore/Desktop/NoDisplay.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Widgets/SlotControl.h"

#include <CLI/App.hpp>
#include <fmt/format.h>

namespace tavrin {
namespace {

/// The window that runs is raised; else the desktop starts one, or it is started from here.
void openWindow(CommandContext& context, const std::optional<UUID>& widget) {
  auto& platform = context.platform();
  const std::string host(DockSlot::hostIdentifier);
  const std::string edit(DockSlot::editAction);
  if (widget ? platform.applications().perform(host, edit, widget->text())
             : platform.applications().perform(host, "open"))
    return;
  if (!platform.showsWindows())
    throw HostError(ExitCode::failed, NoDisplay().what());
  const auto program = SlotControl(context).settingsProgram();
  std::error_code error;
  if (!std::filesystem::exists(program, error))
    throw HostError(ExitCode::failed,
                    translated("Failed to open the settings because there is no \"{program}\"",
                               {{"program", program.string()}}));
  RunningApplications::Launch launch{program, {}, {}, context.stateFolder() / "settings.log"};
  if (widget)
    launch.arguments.push_back(fmt::format("--{}={}", edit, widget->text()));
  platform.applications().launch(launch);
}

} // namespace

void addWindowCommands(CLI::App& app, CommandContext& context) {
  auto* command = app.add_subcommand("settings", translated("Open the settings window"));
  auto reference = std::make_shared<std::string>();
  context.complete(command->add_option("NAME", *reference, translated("A widget to set up")),
                   completeWidgets(context));
  command->callback([&context, reference] {
    openWindow(context, reference->empty()
                            ? std::nullopt
                            : std::optional(WidgetLibrary(context).find(*reference).id));
  });
  CommandContext::examples(*command,
                           {{"tavrin settings", translated("all widgets, and the Dock's layouts")},
                            {"tavrin settings Clock", translated("one widget")}});
}

} // namespace tavrin
