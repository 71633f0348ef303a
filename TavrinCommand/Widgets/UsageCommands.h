#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// `tavrin usage`, which counts tokens out of Claude Code's logs, and `tavrin usage connect` and
/// `disconnect`, which change Claude Code's settings so that it hands over the plan's limits.
void addUsageCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
