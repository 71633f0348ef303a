#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWidget>
#include <cstdio>

namespace {

void say(const QByteArray& words) {
  std::printf("%s\n", words.constData());
  std::fflush(stdout);
}

/// A window of another program in one colour, that says its sizes, the keys that it gets and when
/// it has the keyboard.
class OtherWindow final : public QWidget {
public:
  explicit OtherWindow(const QColor& colour) : colour_(colour) {
    setFocusPolicy(Qt::StrongFocus);
    setWindowTitle(QStringLiteral("window double"));
  }

protected:
  void resizeEvent(QResizeEvent*) override {
    say("size " + QByteArray::number(width()) + " " + QByteArray::number(height()));
  }
  void focusInEvent(QFocusEvent*) override { say("focus 1"); }
  void focusOutEvent(QFocusEvent*) override { say("focus 0"); }
  void keyPressEvent(QKeyEvent* event) override { say("key " + event->text().toUtf8()); }
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), colour_); }

private:
  QColor colour_;
};

} // namespace

/// WindowDouble COLOUR plain|maximized|fullscreen
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const QByteArray state = argc > 2 ? argv[2] : "plain";
  OtherWindow window(QColor::fromString(QLatin1String(argc > 1 ? argv[1] : "red")));
  window.resize(300, 200);
  if (state == "maximized")
    window.showMaximized();
  else if (state == "fullscreen")
    window.showFullScreen();
  else
    window.show();
  return QApplication::exec();
}
