#include "TavrinSlot/Controllers/ShortcutWidget.h"

#include "TavrinWidgetsUI/Shortcut/ShortcutPanelView.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"

namespace tavrin {

void ShortcutWidgetController::start() {
  runner_.emplace(ShortcutRunner::Services{platform().processes(), platform().applications(),
                                           platform().fileManager(), platform().clock(),
                                           platform().runLoop()},
                  widget());
  runner_->onChange = [this] { refresh(); };
}

void ShortcutWidgetController::stop() {
  runner_.reset();
}

QColor ShortcutWidgetController::tint() const {
  return shortcutColour(runner_->settings());
}

AnyView ShortcutWidgetController::tileView(const TileSize& size) {
  const auto state = ShortcutTileState::of(*runner_);
  return size.isWide() ? shortcutWideTile(
                             state, runner_->settings(), size, [this] { runner_->run(); },
                             [this] { runner_->stop(); })
                       : shortcutTileIcon(state, runner_->settings(), size);
}

PanelView* ShortcutWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ShortcutPanelView(
      appearance, *runner_,
      {.copy = [this](const std::string& text) { platform().pasteboard().writeText(text); },
       .edit = context().onEdit});
}

} // namespace tavrin
