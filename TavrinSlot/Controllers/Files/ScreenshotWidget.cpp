#include "TavrinSlot/Controllers/Files/ScreenshotWidget.h"

#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Files/ScreenshotPanelView.h"
#include "TavrinWidgetsUI/Files/ScreenshotViews.h"

#include <algorithm>

namespace tavrin {

void ScreenshotWidgetController::start() {
  FolderWidgetController::start();
  roll_.emplace(platform().folderWatch(), platform().userFiles(), platform().runLoop());
  observe();
}

void ScreenshotWidgetController::stop() {
  roll_.reset();
  FolderWidgetController::stop();
}

void ScreenshotWidgetController::observe() {
  roll_->onChange = [this] { refresh(); };
  roll_->setSettings(settings());
}

void ScreenshotWidgetController::panelWillOpen() {
  forgetTrouble();
  roll_->refresh();
}

QColor ScreenshotWidgetController::tint() const {
  return screenshotTint;
}

AnyView ScreenshotWidgetController::tileView(const TileSize& size) {
  ScreenshotReading reading{roll_->isKnown(), roll_->state(), {}};
  const auto& files = roll_->files();
  for (std::size_t i = 0; i < std::min(files.size(), size.isWide() ? mostTileShots : 1); ++i) {
    const FolderFile& file = files[i];
    reading.shots.push_back({roll_->picture(file), shownName(file.path),
                             momentText(file.date, platform().clock().now()),
                             roll_->isBroken(file)});
  }
  if (!size.isWide())
    return screenshotTileIcon(reading, size);
  return screenshotWideTile(reading, size, [this](std::size_t index) { openFile(index); });
}

void ScreenshotWidgetController::openFile(std::size_t index) {
  if (index >= roll_->files().size())
    return;
  const auto path = roll_->files()[index].path;
  open()(path);
}

PanelView* ScreenshotWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ScreenshotPanelView(
      appearance, *roll_, services([this](const auto& file) { actions().copyPicture(file); }));
}

} // namespace tavrin
