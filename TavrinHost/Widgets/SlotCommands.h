#pragma once

#include "TavrinHost/HostContext.h"

namespace tavrin {

/// `tavrin start`, `stop`, `restart`, `status` and `open`.
void addSlotCommands(CLI::App& app, HostContext& context);

} // namespace tavrin
