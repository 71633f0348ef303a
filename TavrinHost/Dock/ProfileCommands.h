#pragma once

#include "TavrinHost/HostContext.h"

namespace tavrin {

/// `tavrin profiles`: list, create, capture, switch, apply, rename, delete, focus, hotkey, export
/// and import.
void addProfileCommands(CLI::App& app, HostContext& context);

} // namespace tavrin
