#pragma once

#include "TavrinSlot/Base/SlotContext.h"
#include "TavrinSlot/Base/WidgetController.h"

#include <memory>

namespace tavrin {

/// The controller of the widget's kind; it has not begun yet.
std::unique_ptr<WidgetController> makeController(const SlotContext& context,
                                                 const DockWidget& widget);

/// Whether one controller class serves both kinds.
bool shareController(const DockWidget::Kind& one, const DockWidget::Kind& other);

} // namespace tavrin
