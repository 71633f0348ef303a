#pragma once

#include "TavrinCommand/CommandContext.h"

namespace tavrin {

/// `tavrin settings [NAME]`.
void addWindowCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin
