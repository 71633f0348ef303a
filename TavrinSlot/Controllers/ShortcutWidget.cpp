#include "TavrinSlot/Controllers/ShortcutWidget.h"

#include "TavrinWidgetsUI/Shortcut/ShortcutPanelView.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"

namespace tavrin {

ShortcutWidgetController::ShortcutWidgetController(const SlotContext& context,
                                                   const DockWidget& widget)
    : BasicWidgetController(context, widget),
      runner_({platform().processes(), platform().applications(), platform().fileManager(),
               platform().clock(), platform().runLoop()},
              widget) {
  runner_.onChange = [this] { refresh(); };
  renderTile();
}

QColor ShortcutWidgetController::tint() const {
  return shortcutColour(runner_.settings());
}

AnyView ShortcutWidgetController::tileView(const TileSize& size) const {
  auto& runner = const_cast<ShortcutRunner&>(runner_);
  const auto state = ShortcutTileState::of(runner_);
  return size.isWide() ? shortcutWideTile(
                             state, runner_.settings(), size, [&runner] { runner.run(); },
                             [&runner] { runner.stop(); })
                       : shortcutTileIcon(state, runner_.settings(), size);
}

PanelView* ShortcutWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ShortcutPanelView(
      appearance, runner_,
      {.copy = [this](const std::string& text) { platform().pasteboard().writeText(text); },
       .edit = context().onEdit});
}

} // namespace tavrin
