#include "TavrinSlot/Controllers/MusicWidget.h"

#include "TavrinPlatform/DockTile.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinWidgetsUI/Music/MusicPanelView.h"
#include "TavrinWidgetsUI/Music/MusicViews.h"

namespace tavrin {

void MusicWidgetController::start() {
  model_.emplace(platform().mediaPlayers(), platform().clock(), platform().runLoop(), widget());
  model_->onChange = [this] { refresh(); };
}

void MusicWidgetController::stop() {
  model_.reset();
}

QColor MusicWidgetController::tint() const {
  return musicTint;
}

void MusicWidgetController::formatChanged() {
  model_->setTileSteps(musicTileSteps(context().tile.size(), platform().dockTile().format().scale));
}

void MusicWidgetController::panelWillOpen() {
  model_->setCountingSeconds(true);
  model_->refresh();
}

AnyView MusicWidgetController::tileView(const TileSize& size) {
  const auto* player = model_->player();
  return size.isWide()
             ? musicWideTile(player, model_->cover(), model_->settings(), model_->now(), size,
                             {[this] { model_->playPause(); }, [this] { model_->next(); },
                              [this] { model_->previous(); }})
             : musicTileIcon(player, model_->cover(), model_->settings(), model_->now(), size);
}

PanelView* MusicWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new MusicPanelView(
      appearance, *model_,
      {.choose = [this](const auto& player) { choose(player); }, .edit = context().onEdit});
}

void MusicWidgetController::choose(const std::optional<std::string>& player) {
  auto settings = model_->settings();
  settings.player = player ? std::optional(model_->wishFor(*player)) : std::nullopt;
  save(settings);
}

} // namespace tavrin
