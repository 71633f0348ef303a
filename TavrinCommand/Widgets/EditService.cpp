#include "TavrinCommand/Widgets/EditService.h"

#include "TavrinCommand/Base/Completers.h"
#include "TavrinCommand/Widgets/EditForm.h"
#include "TavrinCommand/Widgets/EditorRun.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Widgets/SettingEditing.h"
#include "TavrinHost/Widgets/SlotControl.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <deque>
#include <fmt/format.h>

namespace tavrin {

bool EditService::hasTerminal() {
  return context_.console().isInteractive && context_.platform().ownsTerminal();
}

bool EditService::save(const DockWidget& base, const DockWidget& edited) {
  return WidgetLibrary(context_).change([&](WidgetStore& store) {
    const auto current = store.widget(base.id);
    if (!current)
      throw HostError(ExitCode::notFound,
                      translated("\"{name}\" was removed in the meantime", {{"name", base.name}}));
    store.update(merged(base, edited, *current));
    return true;
  });
}

EditDraft EditService::draftOf(const DockWidget& widget) {
  for (const auto& draft : EditDraft::leftBehind(context_, widget.id)) {
    const auto question =
        translated("An edit of \"{name}\" was ended before it was saved. Go on with it?",
                   {{"name", printable(widget.name)}});
    if (!hasTerminal() || context_.console().confirm(question, true))
      return draft;
  }
  return EditDraft::make(context_.stateFolder(), widget);
}

DockWidget EditService::save(const EditDraft& draft, const std::string& typed) {
  auto made = widgetFromForm(draft.base, typed, context_.platform().clock().now(),
                             settingSystem(context_.platform().fileManager().homeFolder()));
  save(draft.base, made);
  context_.say(translated("Saved \"{name}\".", {{"name", printable(made.name)}}));
  return made;
}

void EditService::take(const std::filesystem::path& form) {
  auto draft = EditDraft::at(form);
  const auto typed = draft.text();
  draft.take(typed, save(draft, typed));
}

void EditService::edit(const UUID& id) {
  auto draft = draftOf(WidgetLibrary(context_).find(id.text()));
  const auto& base = draft.base;
  std::string text = editForm(base);
  const auto keep = [&](std::string_view why) {
    throw HostError(ExitCode::refusedValue,
                    translated("{why}; what you typed is in \"{form}\"",
                               {{"why", why}, {"form", draft.form.string()}}));
  };
  while (true) {
    try {
      runEditor(context_, draft.form, hasTerminal());
    } catch (const HostError&) {
      if (draft.isUntouched() && !isOpenInEditor(context_, draft.form, true))
        draft.remove();
      throw;
    }
    if (draft.follow())
      return draft.remove();
    const auto typed = draft.text();
    if (typed == text)
      break;
    text = typed;
    try {
      save(draft, typed);
      draft.remove();
      return;
    } catch (const SettingError& error) {
      askAgain(draft, text, error.what(), keep);
    } catch (const HostError& error) {
      if (error.code() != ExitCode::refusedValue)
        keep(error.what());
      askAgain(draft, text, error.what(), keep);
    }
  }
  if (text != editForm(base))
    keep(translated("not saved"));
  draft.remove();
  context_.say(translated("Nothing was changed."));
}

void EditService::askAgain(const EditDraft& draft, std::string& text, std::string_view fault,
                           const std::function<void(std::string_view)>& keep) {
  context_.remark(fmt::format("tavrin: {}", printable(fault)));
  if (hasTerminal() && !context_.console().confirm(translated("Edit again?"), true))
    keep(translated("not saved"));
  text = withComplaint(text, fault);
  writeFileAtomically(draft.form, text, FileAccess::ownerOnly);
}

void EditService::offerLeftBehind() {
  for (const auto& draft : EditDraft::leftBehind(context_))
    if (serves(draft.base.id))
      context_.say(translated("An edit of \"{name}\" was ended before it was saved; its form is "
                              "\"{form}\", and `tavrin edit {text}` goes on with it.",
                              {{"name", printable(draft.base.name)},
                               {"form", printable(draft.form.string())},
                               {"text", draft.base.id.text()}}));
}

void EditService::answer(const UUID& id) {
  if (!serves(id))
    return;
  if (hasTerminal()) {
    edit(id);
    return;
  }
  // A process each, so that a second widget can be edited while the first one's form is open.
  context_.platform().applications().launch({context_.platform().program(),
                                             {"edit", id.text()},
                                             {},
                                             context_.stateFolder() / "edit.log"});
}

bool EditService::serves(const UUID& id) {
  const WidgetLibrary library(context_);
  return std::ranges::count(library.file().widgets, id, &DockWidget::id) > 0;
}

void EditService::serve() {
  auto& platform = context_.platform();
  if (!platform.applications().knowsIdentifiers())
    throw HostError(ExitCode::failed,
                    translated("Failed to wait for edit requests because there is no session bus"));
  auto& applications = platform.applications();
  if (!applications.claimIdentifier(editorIdentifier(context_))) {
    const auto owner = applications.processOwning(editorIdentifier(context_));
    if (owner && applications.programOf(*owner) == platform.program()) {
      context_.say(
          translated("Process {owner} answers edit requests already, as `tavrin start` has "
                     "it do; there is nothing to do.",
                     {{"owner", *owner}}));
      return;
    }
    throw HostError(ExitCode::failed,
                    translated("Failed to wait for edit requests because another process "
                               "answers them for this data folder"));
  }
  std::deque<UUID> requests;
  const auto observation = platform.notifications().observe(
      std::string(DockSlot::editWidgetNotification), [&](const std::optional<std::string>& object) {
        const auto id = object ? UUID::parse(*object) : std::nullopt;
        if (id && std::ranges::find(requests, *id) == requests.end())
          requests.push_back(*id);
      });
  offerLeftBehind();
  context_.say(translated("Waiting for edit requests; Ctrl-C ends."));
  while (true) {
    if (requests.empty()) {
      platform.waitForEvent();
      continue;
    }
    try {
      answer(requests.front());
    } catch (const std::exception& error) {
      context_.remark(fmt::format("tavrin: {}", printable(error.what())));
    }
    requests.pop_front();
  }
}

void addEditCommands(CLI::App& app, CommandContext& context) {
  auto* command =
      app.add_subcommand("edit", translated("Edit a widget in your editor, or wait for requests"));
  auto reference = std::make_shared<std::string>();
  // Asked for by the script around an editor.
  auto taken = std::make_shared<std::string>();
  command->add_option("--take", *taken)->group("");
  context.complete(command->add_option("NAME", *reference,
                                       translated("The widget; otherwise wait for "
                                                  "the widgets to ask")),
                   completeWidgets(context));
  command->callback([&context, reference, taken] {
    EditService service(context);
    if (!taken->empty())
      service.take(*taken);
    else if (reference->empty())
      service.serve();
    else
      service.edit(WidgetLibrary(context).find(*reference).id);
  });
  CommandContext::examples(*command,
                           {{"tavrin edit Focus", translated("in $VISUAL or $EDITOR")},
                            {"tavrin edit &", translated("answer \"Edit\" in the panels")}});
}

} // namespace tavrin
