#pragma once

#include "TavrinCommand/Base/CommandContext.h"

#include <filesystem>

namespace tavrin {

/// Opens the form in the user's editor and waits until it is done with: on this terminal where
/// `usesOwnTerminal`, else in a new one. An editor that hands the form over to a window of another
/// process and returns is told to wait, where it is known how; otherwise what is saved there is
/// taken each time (`EditService::take`) until the user says that they are done. Throws HostError
/// when no editor could be started, when it failed, or when it ended with its terminal.
void runEditor(CommandContext& context, const std::filesystem::path& form, bool usesOwnTerminal);

/// Whether a form is open in an editor that runs, or may still be open in the window of another
/// process; `hasWindow` counts the latter too, for a week.
bool isOpenInEditor(CommandContext& context, const std::filesystem::path& form, bool hasWindow);
/// Removes what was left beside a form about the editor that it was open in.
void forgetEditor(const std::filesystem::path& form);

/// The shell script around the editor; its arguments are this program, what it says where an editor
/// has returned early, with a place for "{editor}", and the form.
extern const char* const editorScript;

} // namespace tavrin
