#pragma once

#include "Tests/Linux/Desk.h"

#include <QColor>
#include <QImage>
#include <gtest/gtest.h>

/// Strip and panel as surfaces of a Wayland compositor's layer shell: a sway or a KWin with a
/// window on an X server, so that there are a pointer and keys, in which DESK_SCALE pixels are a
/// point.
namespace tavrin {

constexpr int tileSize = 48;
inline const QColor tileColour(0xC0, 0x20, 0x60);
inline constexpr QSize pixels(1200, 768);

inline double scale() {
  const double wanted = qEnvironmentVariable("DESK_SCALE").toDouble();
  return wanted > 0 ? wanted : 1;
}

inline bool isSway() {
  return qEnvironmentVariableIsSet("SWAYSOCK");
}

inline QSize outputSize() {
  return {static_cast<int>(pixels.width() / scale()), static_cast<int>(pixels.height() / scale())};
}

inline QPoint pixelAt(QPoint point) {
  return (QPointF(point) * scale()).toPoint();
}

inline QImage screen() {
  const auto file = qEnvironmentVariable("DESK").toStdString() + "/screen.ppm";
  shell("import -silent -window root " + file);
  return QImage(QString::fromStdString(file));
}

inline QColor colourAt(QPoint place) {
  const QImage image = screen();
  return image.isNull() ? QColor() : image.pixelColor(pixelAt(place));
}

inline std::string words(QPoint place) {
  const QPoint pixel = pixelAt(place);
  return std::to_string(pixel.x()) + " " + std::to_string(pixel.y());
}

inline void click(QPoint place) {
  shell("xdotool mousemove " + words(place) + " sleep 0.05 click 1");
}

/// Another program's window that has all the room there is, and tells how large that is.
class OtherWindow : public Program {
public:
  explicit OtherWindow(const QString& colour = "#204080")
      : Program(WINDOW_DOUBLE, {colour, "maximized"}, {"QT_QPA_PLATFORM=wayland"}) {}
  QSize size() {
    const auto told = last("size ").split(' ');
    return told.size() < 3 ? QSize() : QSize(told[1].toInt(), told[2].toInt());
  }
  bool hasKeyboard() { return last("focus ") == "focus 1"; }
  /// No size is told for a while: what was to follow from a change has followed.
  int settledSizes() {
    int told = 0;
    eventually([&] {
      shell("sleep 0.2");
      return std::exchange(told, number("size ")) == number("size ");
    });
    return told;
  }

private:
  QByteArray last(const QByteArray& start) {
    QByteArray found;
    for (const auto& line : output().split('\n'))
      if (line.startsWith(start))
        found = line;
    return found;
  }
};

class LayerTest : public testing::Test {
protected:
  /// The centre of a cell of `cells` along the lower edge, a little above the tile's words.
  static QPoint cell(int number, int cells) {
    const QSize size = outputSize();
    const double pitch = tileSize * 1.0625;
    const double start = (size.width() - cells * pitch - 2 * 0.125 * tileSize) / 2;
    return {static_cast<int>(start + 0.125 * tileSize + (number + 0.5) * pitch),
            size.height() - tileSize + 10};
  }
  static QStringList slot(const char* name, const QString& screen = {}) {
    return {QStringLiteral("TAVRIN_APP_SUPPORT_DIR=%1/%2").arg(qEnvironmentVariable("DESK"), name),
            QStringLiteral("DISPLAY="), QStringLiteral("TAVRIN_STRIP_SCREEN=") + screen};
  }
  static bool isTileAt(QPoint place) {
    return eventually([&] { return colourAt(place) == tileColour; });
  }
};

} // namespace tavrin
