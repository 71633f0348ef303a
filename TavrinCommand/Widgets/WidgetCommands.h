#pragma once

#include "TavrinCommand/CommandContext.h"

namespace tavrin {

/// `tavrin widgets` with list, kinds and show, which only read, and add, set, rename, span, place,
/// release and remove, which change one file and announce it.
void addWidgetCommands(CLI::App& app, CommandContext& context);

/// The commands of the group that only read.
void addWidgetListings(CLI::App& group, CommandContext& context);

/// The commands of the group that change widgets.
void addWidgetEdits(CLI::App& group, CommandContext& context);

} // namespace tavrin
