#pragma once

#include "TavrinCommand/Base/CommandContext.h"

#include <memory>
#include <string>
#include <vector>

namespace tavrin {

/// The command line of `tavrin`, every group added. `context` must outlive it.
std::unique_ptr<CLI::App> makeCommandLine(CommandContext& context);

/// Runs one command line, the program's name left out, and gives the exit status.
int runCommandLine(CommandContext& context, const std::vector<std::string>& words);

} // namespace tavrin
