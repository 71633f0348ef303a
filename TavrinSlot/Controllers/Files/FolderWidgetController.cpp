#include "TavrinSlot/Controllers/Files/FolderWidgetController.h"

#include "TavrinSlot/DockPanelPresenter.h"
#include "TavrinWidgetsUI/Files/FileWords.h"

namespace tavrin {

void FolderWidgetController::start() {
  actions_.emplace(platform().userFiles(), platform().pasteboard(), platform().runLoop());
}

void FolderWidgetController::stop() {
  actions_.reset();
  trouble_.clear();
}

FilePanelServices::Action FolderWidgetController::closing(FilePanelServices::Action action) {
  return [this, action = std::move(action)](const std::filesystem::path& file) {
    action(file);
    context().panel.closeIfShown();
  };
}

FilePanelServices FolderWidgetController::services(FilePanelServices::Action copy) {
  return {.clock = platform().clock(),
          .home = platform().userFiles().homeFolder(),
          .name = [this] { return QString::fromStdString(widget().name); },
          .open = open_,
          .copy = closing(std::move(copy)),
          .reveal = closing([this](const auto& file) { actions_->reveal(file); }),
          .moveToTrash = [this](const auto& file) { moveToTrash(file); },
          .edit = context().onEdit,
          .trouble = [this] { return trouble_; }};
}

void FolderWidgetController::moveToTrash(const std::filesystem::path& file) {
  trouble_.clear();
  actions_->moveToTrash(file, [this, name = fileTitle(file)] {
    trouble_ = "Failed to move " + name + " to the trash because its disk has none";
    refreshPanel();
  });
}

} // namespace tavrin
