#include "TavrinSlot/Controllers/Files/FolderWidgetController.h"

#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {

void FolderWidgetController::start() {
  actions_.emplace(platform().userFiles(), platform().pasteboard(), platform().runLoop());
}

void FolderWidgetController::stop() {
  actions_.reset();
  trouble_.clear();
  trashed_.clear();
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
          .undoable = [this] { return trashed_.empty() ? QString() : fileTitle(trashed_.back()); },
          .undo = [this] { undo(); },
          .edit = context().onEdit,
          .trouble = [this] { return trouble_; }};
}

void FolderWidgetController::moveToTrash(const std::filesystem::path& file) {
  trouble_.clear();
  actions_->moveToTrash(file, [this, file](bool isDone) {
    constexpr std::size_t mostKept = 20;
    if (isDone)
      trashed_.push_back(file);
    else
      trouble_ = worded("Failed to move {name} to the trash because its disk has none",
                        {{"name", fileTitle(file)}});
    if (trashed_.size() > mostKept)
      trashed_.erase(trashed_.begin());
    refreshPanel();
  });
}

void FolderWidgetController::undo() {
  if (trashed_.empty())
    return;
  const auto file = trashed_.back();
  trashed_.pop_back();
  trouble_.clear();
  actions_->restoreFromTrash(file, [this, file](bool isDone) {
    if (!isDone)
      trouble_ = worded("Failed to put {name} back because it is not in the trash any more, or its "
                        "place is taken",
                        {{"name", fileTitle(file)}});
    refreshPanel();
  });
}

} // namespace tavrin
