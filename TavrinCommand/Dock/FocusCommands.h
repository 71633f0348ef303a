#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// `tavrin focus`, which runs until it is stopped.
void addFocusCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
