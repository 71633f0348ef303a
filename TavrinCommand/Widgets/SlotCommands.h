#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// `tavrin start`, `stop`, `restart`, `status` and `open`.
void addSlotCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
