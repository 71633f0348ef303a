#include "TavrinSlot/Controllers/CollectionWidget.h"

#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinWidgetsUI/Collection/CollectionPanelView.h"
#include "TavrinWidgetsUI/Collection/CollectionViews.h"

#include <cmath>

namespace tavrin {

void CollectionWidgetController::start() {
  model_.emplace(platform().applications(), widget(),
                 [this](const CollectionSettings& settings) { save(settings); });
  model_->onChange = [this] {
    refresh();
    if (!model_->trouble().empty() && !context().panel.isShown())
      togglePanel();
  };
  model_->onOpened = [this] { context().panel.closeIfShown(); };
}

void CollectionWidgetController::stop() {
  model_.reset();
}

QColor CollectionWidgetController::tint() const {
  return collectionTint;
}

AnyView CollectionWidgetController::tileView(const TileSize& size) {
  const auto settings = model_->settings();
  const auto form =
      CollectionCells::of(settings.layout, static_cast<int>(model_->apps().size()), size);
  const int scale = static_cast<int>(std::ceil(platform().dockTile().format().scale));
  std::vector<CollectionTileApp> apps;
  for (const auto& app : model_->apps()) {
    const bool isShown = apps.size() < static_cast<std::size_t>(form.room());
    apps.push_back(
        {app.name(),
         isShown ? model_->picture(app.icon(), static_cast<int>(std::lround(form.side)), scale)
                 : QImage(),
         model_->isGone(app)});
  }
  const QString name = QString::fromStdString(widget().name);
  return size.isWide() ? collectionWideTile(
                             apps, settings.layout, size, name, [this](std::size_t i) { open(i); },
                             [this] { addApps(); })
                       : collectionTileIcon(apps, settings.layout, size, name);
}

PanelView* CollectionWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new CollectionPanelView(appearance, *model_, context().onEdit);
}

void CollectionWidgetController::open(std::size_t index) {
  model_->open(index);
}

void CollectionWidgetController::addApps() {
  if (context().panel.isShown())
    return;
  model_->beginChoosing();
  togglePanel();
}

} // namespace tavrin
