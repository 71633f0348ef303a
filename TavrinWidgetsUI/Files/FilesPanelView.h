#pragma once

#include "TavrinWidgetsUI/Files/FilePanelServices.h"
#include "TavrinWidgetsUI/Files/FileRoll.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

namespace tavrin {

class PanelEmptyState;
class PanelList;
class PanelText;
class PanelUndo;
struct PanelRow;

/// The newest files as a list. A click or Return opens one, it can be dragged away, and its buttons
/// do the rest. What had not been seen when the panel opened is marked until it closes.
class FilesPanelView final : public PanelView {
public:
  FilesPanelView(const PanelAppearance& appearance, FileRoll& roll, FilePanelServices services);
  void refresh() override;

protected:
  void appearanceChanged() override;

private:
  void makeList();
  void showWords();
  PanelRow makeRow(const FolderFile& file);
  void act(int row, const FilePanelServices::Action& action);

  FileRoll& roll_;
  FilePanelServices services_;
  PanelText* trouble_;
  PanelList* list_;
  PanelEmptyState* empty_;
  PanelUndo* undo_;
  PanelButton* openFolder_;
  std::vector<FolderFile> shown_;
};

} // namespace tavrin
