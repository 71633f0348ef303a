#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

/// The widgets' names; further ones after the first only where the command `takesSeveral`.
Completer completeWidgets(CommandContext& context, bool takesSeveral = false);
Completer completeKinds();
Completer completeProfiles(CommandContext& context);
/// The labels of the user's Dock.
Completer completeDockItems(CommandContext& context);
/// Names that `DockLibrary::layout` takes.
Completer completeLayouts(CommandContext& context);

} // namespace tavrin
