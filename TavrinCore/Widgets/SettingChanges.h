#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

namespace tavrin {

/// `current` with the settings that differ between `base` and `edited`, as `edited` has them: what
/// others changed meanwhile is kept. All three are of one kind; where `base` is of another,
/// `edited`.
DockWidget::Kind withChanges(const DockWidget::Kind& current, const DockWidget::Kind& base,
                             const DockWidget::Kind& edited);

} // namespace tavrin
