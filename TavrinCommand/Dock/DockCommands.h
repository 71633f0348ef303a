#pragma once

#include "TavrinCommand/Base/CommandContext.h"
#include "TavrinHost/Dock/DockEditing.h"

namespace tavrin {

/// `tavrin dock`: show, find, add, remove, move, spacer, edit, apply, undo, backups and diff.
void addDockCommands(CLI::App& app, CommandContext& context);

/// The commands that change a Dock's items: add, remove, move and spacer. Each gives its edit to
/// `take` when it runs. `decorate` adds further options to each.
void addDockEditCommands(CLI::App& app, CommandContext& context,
                         const std::function<void(CLI::App&)>& decorate,
                         const std::function<void(DockEdit)>& take);

} // namespace tavrin
