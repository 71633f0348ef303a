#pragma once

#include "TavrinWidgetsUI/Collection/CollectionModel.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

namespace tavrin {

class PanelEmptyState;
class PanelGrid;
class PanelList;
class PanelSearchField;
struct PanelRow;

/// The collection's applications, and the choice among all that are installed.
class CollectionPanelView : public PanelView {
public:
  CollectionPanelView(const PanelAppearance& appearance, CollectionModel& model,
                      std::function<void()> onEdit);
  void refresh() override;

protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

private:
  void makeApps();
  void makeChoice();
  void showApps();
  void showChoice();
  void showWords();
  void openMenu(int index, const QPoint& place);
  QImage picture(const QString& name, const std::string& icon, int points) const;
  PanelRow choiceRow(int row) const;
  bool isGrid() const;

  CollectionModel& model_;
  PanelText* trouble_;
  PanelGrid* grid_;
  PanelList* list_;
  PanelEmptyState* empty_;
  PanelSearchField* search_;
  PanelList* choice_;
  PanelButton* done_;
  PanelButton* add_;
};

} // namespace tavrin
