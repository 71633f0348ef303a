#pragma once

#include "TavrinWidgetsUI/Files/FilePanelServices.h"
#include "TavrinWidgetsUI/Files/ScreenshotRoll.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

namespace tavrin {

class PanelEmptyState;
class PanelGrid;
class PanelText;
class PanelUndo;

/// The newest pictures as a grid. A click chooses one, a double click or Return opens it, and it
/// can be dragged away; below the grid stands what else can be done with the chosen one.
class ScreenshotPanelView final : public PanelView {
public:
  ScreenshotPanelView(const PanelAppearance& appearance, ScreenshotRoll& roll,
                      FilePanelServices services);
  void refresh() override;

protected:
  void appearanceChanged() override;

private:
  using Action = FilePanelServices::Action;

  void makeGrid();
  void makeActions();
  void showChosen();
  void showWords();
  /// Calls `action` with the chosen picture's path, where one is chosen.
  void act(const Action& action);

  ScreenshotRoll& roll_;
  FilePanelServices services_;
  PanelText* trouble_;
  PanelGrid* grid_;
  PanelText* chosenAbout_;
  PanelText* chosenName_;
  QWidget* actions_;
  PanelEmptyState* empty_;
  PanelUndo* undo_;
  PanelButton* openFolder_;
  std::vector<FolderFile> shown_;
};

} // namespace tavrin
