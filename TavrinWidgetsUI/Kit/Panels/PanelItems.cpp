#include "TavrinWidgetsUI/Kit/Panels/PanelItems.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QListView>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>

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

void tellFocusedItem(QListView& view) {
  if (!QAccessible::isActive())
    return;
  const auto tell = [&view] {
    if (!view.hasFocus() || !view.currentIndex().isValid())
      return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(view.currentIndex().row());
    QAccessible::updateAccessibility(&event);
  };
  QMetaObject::invokeMethod(&view, tell, Qt::QueuedConnection);
}

PanelMenuRequest panelMenuRequest(const QAbstractItemView& view, const QContextMenuEvent& event) {
  if (event.reason() != QContextMenuEvent::Keyboard)
    return {view.indexAt(view.viewport()->mapFromGlobal(event.globalPos())), event.globalPos()};
  const QModelIndex index = view.currentIndex();
  return {index, view.viewport()->mapToGlobal(view.visualRect(index).center())};
}

bool isPanelDrag(const QMouseEvent& event, QPoint pressed) {
  return event.buttons().testFlag(Qt::LeftButton) &&
         (event.position().toPoint() - pressed).manhattanLength() >=
             QApplication::startDragDistance();
}

namespace {

QPixmap pictureOf(const QListView& view, const QModelIndex& index) {
  const QRect rect = view.visualRect(index);
  const double scale = view.devicePixelRatioF();
  QPixmap picture(rect.size() * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(0.9);
  panelPaint::rounded(painter, QRectF({}, rect.size()), panel::cornerRadius,
                      PanelPalette::from(view.palette()).ground);
  painter.drawPixmap(0, 0, view.viewport()->grab(rect));
  return picture;
}

} // namespace

std::string uriList(const std::vector<std::filesystem::path>& files) {
  std::string list;
  for (const auto& file : files)
    list += fileURL(file.native()) + "\r\n";
  return list;
}

void dragFiles(const QListView& view, const QModelIndex& index,
               const std::vector<std::filesystem::path>& files) {
  if (files.empty())
    return;
  // From the event loop, and owned by nobody's view: the panel may be gone before the drag ends.
  QTimer::singleShot(0, qApp,
                     [picture = pictureOf(view, index), list = uriList(files),
                      hotSpot = QPoint(16, view.visualRect(index).height() / 2)] {
                       if (!QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
                         return;
                       auto* drag = new QDrag(qApp);
                       auto* content = new QMimeData;
                       content->setData(QStringLiteral("text/uri-list"),
                                        QByteArray::fromStdString(list));
                       drag->setMimeData(content);
                       drag->setPixmap(picture);
                       drag->setHotSpot(hotSpot);
                       drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
                     });
}

} // namespace tavrin
