#include "TavrinHost/EditService.h"

#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/EditForm.h"
#include "TavrinStorage/AtomicFile.h"

#include <algorithm>
#include <deque>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr double markerInterval = 0.2;

/// The user's editor as shell words, then those that Debian and others have.
constexpr const char* editorScript =
    R"(for editor in "$VISUAL" "$EDITOR" sensible-editor editor nano vi; do
  [ -n "$editor" ] && command -v "${editor%% *}" >/dev/null && break
done
$editor "$1"; status=$?
printf %s "$status" > "$1.done"
exit "$status")";

constexpr int commandNotFound = 127;

} // namespace

void EditService::runEditor(const std::filesystem::path& form) {
  auto& platform = context_.platform();
  const std::filesystem::path marker = form.string() + ".done";
  std::filesystem::remove(marker);
  std::vector<std::string> words = {"sh", "-c", editorScript, "sh", form.string()};
  const auto& files = platform.fileManager();
  if (!context_.console().isInteractive) {
    const auto terminal = files.environment("TERMINAL").value_or("");
    words.insert(words.begin(), {terminal.empty() ? "x-terminal-emulator" : terminal, "-e"});
  }
  const int status = platform.runInForeground(words);
  // A terminal may hand its window to a server and end at once; the marker tells the true end.
  while (status == 0 && !std::filesystem::exists(marker))
    platform.wait(markerInterval);
  const auto result = readFile(marker);
  std::filesystem::remove(marker);
  if (!result || *result == std::to_string(commandNotFound))
    throw HostError(ExitCode::failed,
                    fmt::format("Failed to edit \"{}\" because no {} could be started; set {}",
                                form.string(), result ? "editor" : "terminal",
                                result ? "EDITOR" : "TERMINAL"));
}

bool EditService::save(const DockWidget& base, const DockWidget& edited) {
  return WidgetLibrary(context_).change([&](WidgetStore& store) {
    const auto current = store.widget(base.id);
    if (!current)
      throw HostError(ExitCode::notFound,
                      fmt::format("\"{}\" was removed in the meantime", base.name));
    store.update(merged(base, edited, *current));
    return true;
  });
}

void EditService::edit(const UUID& id) {
  const DockWidget base = WidgetLibrary(context_).find(id.text());
  const auto form = context_.stateFolder() / fmt::format("{}.form", base.id.text());
  std::string text = editForm(base);
  writeFileAtomically(form, text, FileAccess::ownerOnly);
  const auto keep = [&](std::string_view why) {
    throw HostError(ExitCode::refusedValue,
                    fmt::format("{}; what you typed is in \"{}\"", why, form.string()));
  };
  while (true) {
    runEditor(form);
    const auto typed = readFile(form).value_or("");
    if (typed == text)
      break;
    text = typed;
    try {
      save(base, widgetFromForm(base, typed, context_.platform().clock().now()));
      context_.say(fmt::format("Saved \"{}\".", printable(base.name)));
      std::filesystem::remove(form);
      return;
    } catch (const HostError& error) {
      if (error.code() != ExitCode::refusedValue)
        keep(error.what());
      context_.remark(fmt::format("tavrin: {}", printable(error.what())));
      if (context_.console().isInteractive && !context_.console().confirm("Edit again?", true))
        keep("not saved");
      text = withComplaint(typed, error.what());
      writeFileAtomically(form, text, FileAccess::ownerOnly);
    }
  }
  if (text != editForm(base))
    keep("not saved");
  std::filesystem::remove(form);
  context_.say("Nothing was changed.");
}

void EditService::serve() {
  auto& platform = context_.platform();
  if (!platform.applications().knowsIdentifiers())
    throw HostError(ExitCode::failed,
                    "Failed to wait for edit requests because there is no session bus");
  if (!platform.applications().claimIdentifier(std::string(identifier)))
    throw HostError(ExitCode::failed,
                    "Failed to wait for edit requests because another process answers them");
  std::deque<UUID> requests;
  const auto observation = platform.notifications().observe(
      std::string(DockSlot::editWidgetNotification), [&](const std::optional<std::string>& object) {
        const auto id = object ? UUID::parse(*object) : std::nullopt;
        if (id && std::ranges::find(requests, *id) == requests.end())
          requests.push_back(*id);
      });
  context_.say("Waiting for edit requests; Ctrl-C ends.");
  context_.console().out.flush();
  while (true) {
    if (requests.empty()) {
      platform.waitForEvent();
      continue;
    }
    try {
      edit(requests.front());
    } catch (const std::exception& error) {
      context_.remark(fmt::format("tavrin: {}", printable(error.what())));
    }
    requests.pop_front();
  }
}

void addEditCommands(CLI::App& app, HostContext& context) {
  auto* command = app.add_subcommand("edit", "Edit a widget in your editor, or wait for requests");
  auto reference = std::make_shared<std::string>();
  context.complete(command->add_option("NAME", *reference,
                                       "The widget; otherwise wait for "
                                       "the widgets to ask"),
                   completeWidgets(context));
  command->callback([&context, reference] {
    EditService service(context);
    if (reference->empty())
      service.serve();
    else
      service.edit(WidgetLibrary(context).find(*reference).id);
  });
  HostContext::examples(*command, {{"tavrin edit Focus", "in $VISUAL or $EDITOR"},
                                   {"tavrin edit &", "answer \"Edit\" in the panels"}});
}

} // namespace tavrin
