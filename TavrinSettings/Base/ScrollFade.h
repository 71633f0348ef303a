#pragma once

#include <QWidget>

class QScrollArea;

namespace tavrin {

/// Where an area goes on above or below its edge, what stands there fades into the ground.
class ScrollFade : public QWidget {
public:
  /// Both edges of the area, which owns what draws them.
  static void addTo(QScrollArea* area);

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
