#pragma once

#include "TavrinSettings/Base/PageServices.h"

#include <QAbstractButton>

namespace tavrin {

/// A tile, a title and a sentence beside it: a kind that can be added, or a widget that is kept off
/// the strip. It can be dragged.
class WidgetCard : public QAbstractButton {
public:
  static constexpr double tileSide = 64;

  WidgetCard(PageServices& services, DockWidget widget, DragLoad load, const QString& title,
             const QString& sentence, QWidget* parent);

  const DockWidget& record() const { return widget_; }
  void setRecord(const DockWidget& widget, const QString& title);
  /// Time has passed: paints where that can be seen.
  void tick();
  /// The tile's pictures have come.
  void refreshTile();

  /// A key of those that lead from card to card; whether it led on.
  std::function<bool(int key)> onKey;
  std::function<void(bool isPressed)> onFocus;
  /// Something was typed that no key of the card's is.
  std::function<void(const QString& text)> onType;

  QSize sizeHint() const override { return {260, 84}; }

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
  QPixmap tilePicture();
  bool type(const QKeyEvent& event);

  PageServices& services_;
  DockWidget widget_;
  DragLoad load_;
  QString title_;
  QString sentence_;
  QPixmap tile_;
  AnyView painted_;
  std::optional<QPoint> pressedAt_;
};

} // namespace tavrin
