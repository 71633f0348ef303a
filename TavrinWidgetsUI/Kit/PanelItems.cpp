#include "TavrinWidgetsUI/Kit/PanelItems.h"

#include <QListView>

namespace tavrin {

void setUpPanelItems(QListView& view) {
  view.setFrameShape(QFrame::NoFrame);
  view.setUniformItemSizes(true);
  view.setSelectionMode(QListView::NoSelection);
  view.setEditTriggers(QListView::NoEditTriggers);
  view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  view.setVerticalScrollMode(QListView::ScrollPerPixel);
  view.setMouseTracking(true);
  view.setFocusPolicy(Qt::TabFocus);
  view.setTabKeyNavigation(false);
  view.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  view.viewport()->setAutoFillBackground(false);
  view.viewport()->setAttribute(Qt::WA_Hover);
}

} // namespace tavrin
