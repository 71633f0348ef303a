#pragma once

#include "TavrinHost/HostContext.h"

namespace tavrin {

/// `tavrin focus`, which runs until it is stopped.
void addFocusCommands(CLI::App& app, HostContext& context);

} // namespace tavrin
