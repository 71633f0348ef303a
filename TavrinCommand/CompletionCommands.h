#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// What the completion scripts put before the words of the command line they ask about.
inline constexpr std::string_view completionQuestion = "__complete";

/// `tavrin completion SHELL`.
void addCompletionCommands(CLI::App& app, CommandContext& context);

/// What may stand in place of the last of `words` (it may be empty), which follow the program's
/// name. Only words that begin as it does, case aside.
std::vector<Suggestion> suggestions(const CLI::App& app, const CommandContext& context,
                                    const std::vector<std::string>& words);

/// The answer to the scripts: a line each, the word, a tab and its meaning.
void printSuggestions(const CLI::App& app, CommandContext& context,
                      const std::vector<std::string>& words);

} // namespace tavrin
