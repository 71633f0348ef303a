#pragma once

#include "TavrinSlot/Base/BasicWidgetController.h"
#include "TavrinWidgetsUI/Files/FileActions.h"
#include "TavrinWidgetsUI/Files/FilePanelServices.h"

namespace tavrin {

/// What the kinds that list a folder's files do alike.
class FolderWidgetController : public BasicWidgetController {
protected:
  using BasicWidgetController::BasicWidgetController;

  void start() override;
  void stop() override;

  /// Opens a file and closes the panel, whose work is done.
  const FilePanelServices::Action& open() const { return open_; }
  FileActions& actions() { return *actions_; }
  /// For the panel; `copy` puts a file on the pasteboard.
  FilePanelServices services(FilePanelServices::Action copy);
  void forgetTrouble() { trouble_.clear(); }

private:
  /// The same, and the panel's work is done.
  FilePanelServices::Action closing(FilePanelServices::Action action);
  void moveToTrash(const std::filesystem::path& file);
  void undo();

  std::optional<FileActions> actions_;
  FilePanelServices::Action open_ = closing([this](const auto& file) { actions_->open(file); });
  QString trouble_;
  /// What was moved to the trash, the last one last.
  std::vector<std::filesystem::path> trashed_;
};

} // namespace tavrin
