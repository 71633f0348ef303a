#pragma once

#include "TavrinSettings/Base/PageServices.h"

#include <QWidget>

class QScrollArea;

namespace tavrin {

class FlowLayout;
class PanelButton;
class PanelEmptyState;
class PanelSearchField;
class PanelText;
class WidgetCard;

/// All kinds of widgets, to be searched and put on the strip, and above them the widgets that are
/// kept off it.
class GalleryView : public QWidget {
public:
  GalleryView(PageServices& services, QWidget* parent = nullptr);

  /// Shows what the editor says.
  void refresh();
  void focusSearch();
  /// All kinds from the first on, the keyboard in the search above them.
  void showKinds();
  /// The card of a widget that is kept off the strip gets the keyboard. False where there is none.
  bool focusCard(const UUID& id);
  /// The tiles' pictures have come.
  void refreshTiles();

  /// A widget was made.
  std::function<void(const UUID& id)> onAdd;
  /// The settings of one that is kept off the strip are wanted.
  std::function<void(const UUID& id)> onOpen;

private:
  void makeKinds();
  void search(const QString& text);
  void add(const KindInfo& kind);
  void refreshKept();
  WidgetCard* makeKept(const DockWidget& widget);
  void follow(WidgetCard* card);
  /// What shows and can be used, in reading order.
  std::vector<WidgetCard*> cards() const;
  bool moveFocus(WidgetCard* from, int key);
  WidgetCard* cardBeyond(const WidgetCard* from, bool isBelow) const;
  /// The cards are one stop of Tab, at the one that had the keyboard last.
  void placeStop();

  PageServices& services_;
  PanelSearchField* search_;
  PanelButton* starter_;
  QScrollArea* scroll_;
  PanelText* keptTitle_;
  QWidget* kept_;
  FlowLayout* keptFlow_;
  std::vector<WidgetCard*> keptCards_;
  PanelText* kindsTitle_;
  QWidget* kinds_;
  FlowLayout* kindFlow_;
  /// In the order of the kinds.
  std::vector<WidgetCard*> kindCards_;
  /// As they are shown.
  std::vector<WidgetCard*> order_;
  WidgetCard* stop_ = nullptr;
  PanelEmptyState* none_;
};

} // namespace tavrin
