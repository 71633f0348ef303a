#pragma once

#include "TavrinCommand/Base/CommandContext.h"
#include "TavrinCommand/Widgets/EditDraft.h"

#include <functional>
#include <string>
#include <string_view>

namespace tavrin {

/// Editing a widget's record in the user's editor, now or whenever a slot asks for it.
class EditService {
public:
  explicit EditService(CommandContext& context) : context_(context) {}

  /// Opens the editor until the form is right, unchanged or given up; then saves and announces.
  /// Throws HostError with the place of the form when it could not be saved: nothing typed is lost.
  void edit(const UUID& id);

  /// Saves what a window of another process has written to the form of an edit that goes on. Throws
  /// HostError and SettingError with what is wrong with it; the form is left alone.
  void take(const std::filesystem::path& form);

  /// Answers edit requests for widgets of this data folder until the process is ended; those for
  /// others are left to whoever serves these. Returns at once where a process of this program
  /// answers for the folder already. Throws HostError where there is no session bus, or where
  /// another program answers.
  void serve();

private:
  /// Whether an editor can be shown, and questions asked, where this program was started.
  bool hasTerminal();
  /// The form to edit: one that an earlier edit left behind, if the user wants it, or a new one.
  EditDraft draftOf(const DockWidget& widget);
  /// Tells what is wrong with the form and puts it on top of it; `keep` ends the edit.
  void askAgain(const EditDraft& draft, std::string& text, std::string_view fault,
                const std::function<void(std::string_view)>& keep);
  void offerLeftBehind();
  /// Has the widget edited: here on a terminal, otherwise in a process of its own.
  void answer(const UUID& id);
  /// Whether the widget is one of this data folder's.
  bool serves(const UUID& id);
  bool save(const DockWidget& base, const DockWidget& edited);
  /// Saves what was typed and says so. The widget that it describes.
  DockWidget save(const EditDraft& draft, const std::string& typed);

  CommandContext& context_;
};

/// `tavrin edit [NAME]`.
void addEditCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
