#include "TavrinSlot/Controllers/Files/ShelfWidget.h"

#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinWidgetsUI/Files/ShelfPanelView.h"
#include "TavrinWidgetsUI/Files/ShelfViews.h"

#include <algorithm>

namespace tavrin {

void ShelfWidgetController::start() {
  actions_.emplace(platform().userFiles(), platform().pasteboard(), platform().runLoop());
  model_.emplace(platform().folderWatch(), platform().runLoop());
  model_->onChange = [this] { refresh(); };
  model_->setSettings(settings());
}

void ShelfWidgetController::stop() {
  model_.reset();
  actions_.reset();
}

bool ShelfWidgetController::openFiles(const std::vector<std::filesystem::path>& paths) {
  save(shelf::adding(settings(), paths));
  return true;
}

QColor ShelfWidgetController::tint() const {
  return shelfTint;
}

AnyView ShelfWidgetController::tileView(const TileSize& size) {
  const auto& items = model_->items();
  ShelfReading reading{items.size(), model_->missingCount(), {}};
  for (std::size_t i = 0; i < std::min(items.size(), size.isWide() ? mostTileSheets : 2); ++i) {
    const ShelfItem& item = items[i];
    FileSheet sheet = fileSheet(item.path, item.file && item.file->isFolder, model_->picture(item));
    sheet.isMissing = item.isMissing;
    reading.sheets.push_back(std::move(sheet));
  }
  return size.isWide() ? shelfWideTile(reading, size) : shelfTileIcon(reading, size);
}

template <class Action> void ShelfWidgetController::finish(const Action& action) {
  action();
  context().panel.closeIfShown();
}

PanelView* ShelfWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ShelfPanelView(
      appearance, *model_,
      {.runLoop = platform().runLoop(),
       .clock = platform().clock(),
       .home = platform().userFiles().homeFolder(),
       .name = [this] { return QString::fromStdString(widget().name); },
       .open = [this](const auto& file) { finish([&] { actions_->open(file); }); },
       .copy = [this](const auto& files) { finish([&] { actions_->copy(files); }); },
       .reveal = [this](const auto& file) { finish([&] { actions_->reveal(file); }); },
       .remove = [this](const auto& file) { save(shelf::removing(settings(), file)); },
       .clear = [this] { save({}); },
       .edit = context().onEdit});
}

} // namespace tavrin
