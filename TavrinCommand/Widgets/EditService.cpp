#include "TavrinCommand/Widgets/EditService.h"

#include "TavrinCommand/Completers.h"
#include "TavrinCommand/Widgets/EditForm.h"
#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Widgets/SettingEditing.h"
#include "TavrinHost/Widgets/SlotControl.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <deque>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr double markerInterval = 0.2;
/// A terminal that has shown nothing in this long shows nothing.
constexpr double terminalLimit = 30;

/// The user's editor as shell words, then those that Debian and others have.
constexpr const char* editorScript =
    R"(for editor in "$VISUAL" "$EDITOR" sensible-editor editor nano vi; do
  [ -n "$editor" ] && command -v "${editor%% *}" >/dev/null && break
done
echo "$$" > "$1.shell"
$editor "$1"; status=$?
echo "$status" > "$1.done"
exit "$status")";

constexpr int commandNotFound = 127;

/// A number alone on its line, once it was written.
std::optional<int> writtenNumber(const std::filesystem::path& file) {
  const auto text = readFile(file).value_or("");
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end != text.data() + text.size() ? std::optional(number)
                                                                  : std::nullopt;
}

/// What the script around the editor leaves beside the form: a terminal may hand its window to a
/// server and end at once, so that these alone tell the editor's end.
class EditorMarks {
public:
  explicit EditorMarks(const std::filesystem::path& form)
      : shell_(form.string() + ".shell"), done_(form.string() + ".done") {
    remove();
  }
  ~EditorMarks() { remove(); }
  EditorMarks(const EditorMarks&) = delete;
  EditorMarks& operator=(const EditorMarks&) = delete;

  bool hasBegun() const { return shell().has_value() || status().has_value(); }
  std::optional<int> shell() const { return writtenNumber(shell_); }
  std::optional<int> status() const { return writtenNumber(done_); }

private:
  void remove() const {
    std::error_code ignored;
    std::filesystem::remove(shell_, ignored);
    std::filesystem::remove(done_, ignored);
  }
  std::filesystem::path shell_;
  std::filesystem::path done_;
};

/// A new file for what is typed: another edit of the widget, or one that was given up, keeps its
/// own.
std::filesystem::path newForm(const std::filesystem::path& folder, const UUID& id) {
  for (int number = 1;; ++number) {
    auto form = folder / (number == 1 ? fmt::format("{}.form", id.text())
                                      : fmt::format("{}-{}.form", id.text(), number));
    if (auto* file = std::fopen(form.c_str(), "wx")) {
      std::fclose(file);
      return form;
    }
    if (errno != EEXIST)
      throw FileError(failure(fmt::format("make \"{}\"", form.string()), std::strerror(errno)));
  }
}

} // namespace

bool EditService::hasTerminal() {
  return context_.console().isInteractive && context_.platform().ownsTerminal();
}

void EditService::runEditor(const std::filesystem::path& form) {
  auto& platform = context_.platform();
  const EditorMarks marks(form);
  std::vector<std::string> words = {"sh", "-c", editorScript, "sh", form.string()};
  const bool opensTerminal = !hasTerminal();
  if (opensTerminal) {
    const auto terminal = platform.fileManager().environment("TERMINAL").value_or("");
    words.insert(words.begin(), {terminal.empty() ? "x-terminal-emulator" : terminal, "-e"});
  }
  const auto fail = [&](std::string_view reason) {
    throw HostError(ExitCode::failed,
                    fmt::format("Failed to edit \"{}\" because {}", form.string(), reason));
  };
  const int status = platform.runInForeground(words);
  for (double waited = 0; status == 0 && !marks.hasBegun() && waited < terminalLimit;
       waited += markerInterval)
    platform.wait(markerInterval);
  if (!marks.hasBegun())
    fail("no terminal could be started; set TERMINAL");
  // The shell ends with its terminal, and says nothing then.
  while (!marks.status() && platform.applications().isAlive(marks.shell().value_or(0)))
    platform.wait(markerInterval);
  const auto result = marks.status();
  if (!result)
    fail("its terminal was closed");
  if (*result == commandNotFound)
    fail("no editor could be started; set EDITOR");
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
  const auto form = newForm(context_.stateFolder(), base.id);
  std::string text = editForm(base);
  writeFileAtomically(form, text, FileAccess::ownerOnly);
  const auto keep = [&](std::string_view why) {
    throw HostError(ExitCode::refusedValue,
                    fmt::format("{}; what you typed is in \"{}\"", why, form.string()));
  };
  while (true) {
    try {
      runEditor(form);
    } catch (const HostError&) {
      if (readFile(form).value_or(text) == editForm(base))
        std::filesystem::remove(form);
      throw;
    }
    const auto typed = readFile(form).value_or("");
    if (typed == text)
      break;
    text = typed;
    try {
      save(base, widgetFromForm(base, typed, context_.platform().clock().now(),
                                settingSystem(context_.platform().fileManager().homeFolder())));
      context_.say(fmt::format("Saved \"{}\".", printable(base.name)));
      std::filesystem::remove(form);
      return;
    } catch (const HostError& error) {
      if (error.code() != ExitCode::refusedValue)
        keep(error.what());
      context_.remark(fmt::format("tavrin: {}", printable(error.what())));
      if (hasTerminal() && !context_.console().confirm("Edit again?", true))
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

bool EditService::serves(const UUID& id) {
  const WidgetLibrary library(context_);
  return std::ranges::count(library.file().widgets, id, &DockWidget::id) > 0;
}

void EditService::serve() {
  auto& platform = context_.platform();
  if (!platform.applications().knowsIdentifiers())
    throw HostError(ExitCode::failed,
                    "Failed to wait for edit requests because there is no session bus");
  auto& applications = platform.applications();
  if (!applications.claimIdentifier(editorIdentifier(context_))) {
    const auto owner = applications.processOwning(editorIdentifier(context_));
    if (owner && applications.programOf(*owner) == platform.program()) {
      context_.say(fmt::format("Process {} answers edit requests already, as `tavrin start` has "
                               "it do; there is nothing to do.",
                               *owner));
      return;
    }
    throw HostError(ExitCode::failed, "Failed to wait for edit requests because another process "
                                      "answers them for this data folder");
  }
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
      if (serves(requests.front()))
        edit(requests.front());
    } catch (const std::exception& error) {
      context_.remark(fmt::format("tavrin: {}", printable(error.what())));
    }
    requests.pop_front();
  }
}

void addEditCommands(CLI::App& app, CommandContext& context) {
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
  CommandContext::examples(*command, {{"tavrin edit Focus", "in $VISUAL or $EDITOR"},
                                      {"tavrin edit &", "answer \"Edit\" in the panels"}});
}

} // namespace tavrin
