#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// `tavrin profiles`: list, create, capture, switch, apply, rename, delete, focus, hotkey, export
/// and import.
void addProfileCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
