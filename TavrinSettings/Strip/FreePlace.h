#pragma once

#include <QAbstractButton>
#include <functional>

namespace tavrin {

/// The first free place of the strip, where what is added comes to stand. Pressed, it leads to what
/// there is to add.
class FreePlace : public QAbstractButton {
public:
  explicit FreePlace(QWidget* parent);

  /// Marks it as the place of what is being chosen.
  void setAwaiting(bool isAwaiting);

  /// A key that leads on; whether it did.
  std::function<bool(int key)> onKey;

  /// What every free place looks like, `rect` being its cell.
  static void paintEmpty(QPainter& painter, const QRectF& rect);

protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

private:
  bool isAwaiting_ = false;
};

} // namespace tavrin
