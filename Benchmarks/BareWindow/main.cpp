// The least that a program with a tile and a panel can be, for comparison: the toolkit, a window of a
// tile's size, and one of a panel's that a click shows and the next one hides. No fonts are used, no
// bus, no files.
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>
#include <memory>

namespace {

class Plain : public QWidget {
public:
  Plain(QRect place, QColor colour) : colour_(colour) {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    setGeometry(place);
  }

protected:
  void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(rect(), colour_); }

private:
  QColor colour_;
};

class Tile final : public Plain {
public:
  Tile() : Plain({600, 700, 64, 64}, Qt::darkBlue) {}

protected:
  void mousePressEvent(QMouseEvent* /*event*/) override {
    if (!panel_)
      panel_ = std::make_unique<Plain>(QRect(500, 300, 280, 360), Qt::darkGray);
    panel_->setVisible(!panel_->isVisible());
  }

private:
  std::unique_ptr<Plain> panel_;
};

} // namespace

int main(int count, char** words) {
  QApplication application(count, words);
  Tile tile;
  tile.show();
  return QApplication::exec();
}
