#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// `tavrin backups`: list, show, restore and create.
void addBackupCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
