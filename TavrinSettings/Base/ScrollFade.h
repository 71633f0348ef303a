#pragma once

#include <QWidget>

class QScrollArea;

namespace tavrin {

/// Where an area goes on above or below its edge, what stands there fades into the ground.
class ScrollFade : public QWidget {
public:
  /// An area that scrolls up and down alone and fades at both edges. It is no stop of the keyboard:
  /// what stands in it is.
  static QScrollArea* makeArea(QWidget* parent);

  bool eventFilter(QObject* viewport, QEvent* event) override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  ScrollFade(QScrollArea* area, bool isTop);
  void place();

  QScrollArea* area_;
  bool isTop_;
};

} // namespace tavrin
