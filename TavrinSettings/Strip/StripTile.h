#pragma once

#include "TavrinSettings/Base/PageServices.h"

#include <QAbstractButton>
#include <filesystem>
#include <vector>

namespace tavrin {

/// One tile of the strip, as its slot shows it: chosen by a click, taken along by a drag, made
/// wider or narrower by drawing at its right edge. One that no slot shows has a preview, which says
/// so.
class StripTile : public QAbstractButton {
public:
  StripTile(PageServices& services, const DockWidget& widget, QWidget* parent);

  const DockWidget& record() const { return widget_; }
  /// `place` counts from 1.
  void setRecord(const DockWidget& widget, int place, int count);
  void setChosen(bool isChosen);
  void setSide(double side);
  /// The span it is drawn with, which may be one that is only tried.
  void setShownSpan(int span);
  int shownSpan() const { return shownSpan_; }
  /// `LiveTiles` has another picture of it, or none.
  void refreshPicture();

  /// The right edge was drawn to `right`, in the parent's coordinates; at the end `isOver`.
  std::function<void(double right, bool isOver)> onResize;
  /// A key that the strip acts on; whether it did.
  std::function<bool(QKeyEvent* event)> onKey;
  std::function<void()> onFocus;
  /// Files were dropped on a tile that keeps some.
  std::function<void(const std::vector<std::filesystem::path>& files)> onFiles;

  QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

private:
  bool isAtEdge(QPointF point) const;
  QPixmap picture();
  void say();
  void paintTile(QPainter& painter);
  void paintLive(QPainter& painter, const QImage& picture, const TileSize& size);
  /// Over a tile that no slot shows.
  void paintPreviewMark(QPainter& painter, const QRectF& body) const;

  PageServices& services_;
  DockWidget widget_;
  double side_ = 64;
  int shownSpan_ = 1;
  bool isChosen_ = false;
  bool isResizing_ = false;
  std::optional<QPoint> pressedAt_;
};

} // namespace tavrin
