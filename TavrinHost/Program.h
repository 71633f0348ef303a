#pragma once

#include "TavrinHost/HostContext.h"

#include <memory>
#include <string>
#include <vector>

namespace tavrin {

/// The command line of `tavrin`, every group added. `context` must outlive it.
std::unique_ptr<CLI::App> makeCommandLine(HostContext& context);

/// Runs one command line, the program's name left out, and gives the exit status.
int runCommandLine(HostContext& context, const std::vector<std::string>& words);

} // namespace tavrin
