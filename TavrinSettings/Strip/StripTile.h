#pragma once

#include "TavrinSettings/Base/PageServices.h"

#include <QAbstractButton>

namespace tavrin {

/// One tile of the strip: chosen by a click, taken along by a drag, made wider or narrower by
/// drawing at its right edge.
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
  /// Time has passed: paints where that can be seen.
  void tick();

  /// The right edge was drawn to `right`, in the parent's coordinates; at the end `isOver`.
  std::function<void(double right, bool isOver)> onResize;
  /// A key that the strip acts on; whether it did.
  std::function<bool(QKeyEvent* event)> onKey;
  std::function<void()> onFocus;

  QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

private:
  bool isAtEdge(QPointF point) const;

  PageServices& services_;
  DockWidget widget_;
  double side_ = 64;
  int shownSpan_ = 1;
  AnyView painted_;
  bool isChosen_ = false;
  bool isResizing_ = false;
  std::optional<QPoint> pressedAt_;
};

} // namespace tavrin
