#include "TavrinSlot/Controllers/Files/FileRollWidget.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinWidgetsUI/Files/FileViews.h"
#include "TavrinWidgetsUI/Files/FilesPanelView.h"

#include <algorithm>

namespace tavrin {

void FileRollWidgetController::start() {
  FolderWidgetController::start();
  roll_.emplace(platform().folderWatch(), platform().userFiles(), platform().runLoop());
  observe();
}

void FileRollWidgetController::stop() {
  observations_.clear();
  roll_.reset();
  FolderWidgetController::stop();
}

void FileRollWidgetController::observe() {
  roll_->onChange = [this] { refresh(); };
  roll_->setSettings(settings());
  // The times of yesterday are dates.
  observations_.push_back(platform().workspace().observeDayChange([this] { refresh(); }));
  observations_.push_back(platform().workspace().observeClockChange([this] { refresh(); }));
}

void FileRollWidgetController::panelWillOpen() {
  forgetTrouble();
  roll_->refresh();
  roll_->holdMarks();
  markSeen();
}

void FileRollWidgetController::panelDidClose() {
  roll_->releaseMarks();
  markSeen();
}

void FileRollWidgetController::markSeen() {
  if (roll_->unseenCount() > 0)
    save(roll_->seen(platform().clock().now()));
}

QColor FileRollWidgetController::tint() const {
  return filesTint;
}

AnyView FileRollWidgetController::tileView(const TileSize& size) {
  FilesReading reading{roll_->isKnown(),
                       roll_->trouble() != nullptr,
                       roll_->unseenCount(),
                       roll_->unfinished(),
                       {},
                       roll_->hasMoreUnseen()};
  const auto& files = roll_->files();
  for (std::size_t i = 0; i < std::min(files.size(), mostTileFiles); ++i) {
    const FolderFile& file = files[i];
    // Only the one in front is seen whole.
    const QImage picture = i == 0 ? roll_->picture(file) : QImage();
    reading.files.push_back(
        {fileSheet(file.path, false, picture), fileTitle(file.path),
         momentText(file.date, platform().clock().now()),
         QString::fromStdString(byteText(static_cast<std::int64_t>(file.size)))});
  }
  if (!size.isWide())
    return filesTileIcon(reading, size);
  return filesWideTile(reading, size, [this] { openFile(0); });
}

void FileRollWidgetController::openFile(std::size_t index) {
  if (index >= roll_->files().size())
    return;
  const auto path = roll_->files()[index].path;
  open()(path);
}

PanelView* FileRollWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new FilesPanelView(appearance, *roll_,
                            services([this](const auto& file) { actions().copy({file}); }));
}

} // namespace tavrin
