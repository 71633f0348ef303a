#include "TavrinSlot/Controllers/MusicWidget.h"

#include "TavrinPlatform/DockTile.h"
#include "TavrinSlot/DockTileRenderer.h"
#include "TavrinWidgetsUI/Music/MusicPanelView.h"
#include "TavrinWidgetsUI/Music/MusicViews.h"

namespace tavrin {

MusicWidgetController::MusicWidgetController(const SlotContext& context, const DockWidget& widget)
    : BasicWidgetController(context, widget),
      model_(platform().mediaPlayers(), platform().clock(), platform().runLoop(), widget) {
  model_.onChange = [this] { refresh(); };
  widgetChanged();
  renderTile();
}

QColor MusicWidgetController::tint() const {
  return musicTint;
}

void MusicWidgetController::widgetChanged() {
  model_.setWidget(widget());
  model_.setTileSteps(musicTileSteps(context().tile.size(), platform().dockTile().format().scale));
}

void MusicWidgetController::panelWillOpen() {
  model_.setCountingSeconds(true);
  model_.refresh();
}

AnyView MusicWidgetController::tileView(const TileSize& size) const {
  const auto* player = model_.player();
  auto& model = const_cast<MusicModel&>(model_);
  return size.isWide()
             ? musicWideTile(player, model_.cover(), model_.settings(), model_.now(), size,
                             {[&model] { model.playPause(); }, [&model] { model.next(); },
                              [&model] { model.previous(); }})
             : musicTileIcon(player, model_.cover(), model_.settings(), model_.now(), size);
}

PanelView* MusicWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new MusicPanelView(
      appearance, model_,
      {.choose = [this](const auto& player) { choose(player); }, .edit = context().onEdit});
}

void MusicWidgetController::choose(const std::optional<std::string>& player) {
  auto settings = model_.settings();
  settings.player = player;
  save(settings);
}

} // namespace tavrin
