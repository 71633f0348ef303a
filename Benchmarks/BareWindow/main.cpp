// The least that a program with a tile and a panel can be, for comparison: the toolkit, a label of a
// tile's size with a time on it, and one of a panel's size that a click shows and the next one hides.
// No bus, no files.
#include <QApplication>
#include <QLabel>
#include <memory>

namespace {

class Plain : public QLabel {
public:
  Plain(const QString& text, QRect place) : QLabel(text) {
    setAlignment(Qt::AlignCenter);
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    setGeometry(place);
  }
};

class Tile final : public Plain {
public:
  Tile() : Plain(QStringLiteral("25:00"), {600, 700, 64, 64}) {}

protected:
  void mousePressEvent(QMouseEvent* /*event*/) override {
    if (!panel_)
      panel_ = std::make_unique<Plain>(QStringLiteral("25:00"), QRect(500, 300, 280, 360));
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
