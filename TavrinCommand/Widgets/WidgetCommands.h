#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// `tavrin widgets` with list, kinds, show and export, which only read, and add, set, rename, span,
/// place, release, remove and import, which change one file and announce it.
void addWidgetCommands(CLI::App& app, CommandContext& context);

/// The commands of the group that only read.
void addWidgetListings(CLI::App& group, CommandContext& context);

/// import and export: a browser's bookmarks into a widget, and a widget's for a browser.
void addBookmarkCommands(CLI::App& group, CommandContext& context);

/// The commands of the group that change widgets.
void addWidgetEdits(CLI::App& group, CommandContext& context);

} // namespace tavrin
