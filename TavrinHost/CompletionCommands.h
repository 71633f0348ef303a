#pragma once

#include "TavrinHost/HostContext.h"

namespace tavrin {

/// `tavrin completion SHELL`, and the hidden `tavrin __complete` that its scripts ask.
void addCompletionCommands(CLI::App& app, HostContext& context);

/// What may stand in place of the last of `words` (it may be empty), which follow the program's
/// name. Only words that begin as it does, case aside.
std::vector<Suggestion> suggestions(const CLI::App& app, const HostContext& context,
                                    const std::vector<std::string>& words);

} // namespace tavrin
