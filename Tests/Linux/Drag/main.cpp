#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>
#include <cstdio>

namespace {

void say(const QByteArray& words) {
  std::printf("%s\n", words.constData());
  std::fflush(stdout);
}

QByteArray nameOf(Qt::DropAction action) {
  return action == Qt::CopyAction ? "copy" : action == Qt::LinkAction ? "link" : "other";
}

/// A window of another program. From its left half a list of addresses can be dragged, on its right
/// half things can be dropped; it says what became of both, and when something enters.
class DragWindow final : public QWidget {
public:
  explicit DragWindow(QByteArray list) : list_(std::move(list)) {
    setAcceptDrops(true);
    setWindowFlags(Qt::FramelessWindowHint);
    setGeometry(40, 40, 200, 100);
    setWindowTitle(QStringLiteral("drag double"));
  }

protected:
  void mouseMoveEvent(QMouseEvent* event) override {
    if (event->position().x() > width() / 2.0 || list_.isEmpty())
      return;
    auto* drag = new QDrag(this);
    auto* content = new QMimeData;
    content->setData(QStringLiteral("text/uri-list"), list_);
    drag->setMimeData(content);
    say("begins");
    // As file managers offer: a move first.
    say("dragged " +
        nameOf(drag->exec(Qt::MoveAction | Qt::CopyAction | Qt::LinkAction, Qt::MoveAction)));
  }
  void dragEnterEvent(QDragEnterEvent* event) override {
    event->acceptProposedAction();
    say("entered");
  }
  void dragMoveEvent(QDragMoveEvent* event) override { event->acceptProposedAction(); }
  void dropEvent(QDropEvent* event) override {
    say("dropped " + nameOf(event->proposedAction()) + " " +
        event->mimeData()->data(QStringLiteral("text/uri-list")).replace("\r\n", " "));
    event->acceptProposedAction();
  }
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(0, 0, width() / 2, height(), Qt::darkYellow);
    painter.fillRect(width() / 2, 0, width() / 2, height(), Qt::darkCyan);
    if (!std::exchange(isPainted_, true))
      say("ready");
  }

private:
  QByteArray list_;
  bool isPainted_ = false;
};

} // namespace

/// DragDouble ADDRESS...
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QByteArray list;
  for (int i = 1; i < argc; ++i)
    list += QByteArray(argv[i]) + "\r\n";
  DragWindow window(list);
  window.show();
  return QApplication::exec();
}
