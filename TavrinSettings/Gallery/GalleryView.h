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

  /// A widget was made.
  std::function<void(const UUID& id)> onAdd;
  /// The settings of one that is kept off the strip are wanted.
  std::function<void(const UUID& id)> onOpen;

private:
  void makeKinds();
  void search(const QString& text);
  void add(const KindInfo& kind);
  void moveFocus(const std::vector<WidgetCard*>& cards, FlowLayout& flow, WidgetCard* from,
                 int steps, int rows);
  std::vector<WidgetCard*> shownKinds() const;

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
  PanelEmptyState* none_;
};

} // namespace tavrin
