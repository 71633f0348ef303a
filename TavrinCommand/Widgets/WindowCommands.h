#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// `tavrin settings [NAME]`.
void addWindowCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
