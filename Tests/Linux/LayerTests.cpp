#include "Tests/Linux/Desk.h"

#include <QCoreApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <csignal>
#include <gtest/gtest.h>

/// Strip and panel as surfaces of a Wayland compositor's layer shell: a sway with a window on an X
/// server, so that there are a pointer and keys.
namespace tavrin {
namespace {

constexpr int tileSize = 48;
const QColor tileColour(0xC0, 0x20, 0x60);

QJsonArray tell(const std::string& question) {
  return QJsonDocument::fromJson(QByteArray::fromStdString(shell("swaymsg -r -t " + question)))
      .array();
}

QSize outputSize() {
  const auto rect = tell("get_outputs").at(0).toObject()["rect"].toObject();
  return {rect["width"].toInt(), rect["height"].toInt()};
}

/// What windows have of the output's height.
int roomForWindows() {
  return tell("get_workspaces").at(0).toObject()["rect"].toObject()["height"].toInt();
}

QColor pixel(QPoint place) {
  const auto file = qEnvironmentVariable("DESK").toStdString() + "/pixel.ppm";
  shell("grim -t ppm -g '" + std::to_string(place.x()) + "," + std::to_string(place.y()) +
        " 1x1' " + file);
  const QImage image(QString::fromStdString(file));
  return image.isNull() ? QColor() : image.pixelColor(0, 0);
}

void click(QPoint place) {
  shell("xdotool mousemove " + std::to_string(place.x()) + " " + std::to_string(place.y()) +
        " sleep 0.05 click 1");
}

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
  static QStringList slot(const char* name) {
    return {QStringLiteral("TAVRIN_APP_SUPPORT_DIR=%1/%2").arg(qEnvironmentVariable("DESK"), name),
            QStringLiteral("DISPLAY=")};
  }
};

TEST_F(LayerTest, TilesStandAtTheEdgeAndKeepItsRoom) {
  const int whole = roomForWindows();
  EXPECT_EQ(whole, outputSize().height());
  {
    Program first(TILE_DOUBLE, {"--place=0,1,3"}, slot("first"));
    Program second(TILE_DOUBLE, {"--place=1,2,3"}, slot("second"));
    ASSERT_TRUE(first.says("visible 1"));
    ASSERT_TRUE(second.says("visible 1"));
    EXPECT_TRUE(eventually([&] { return pixel(cell(0, 3)) == tileColour; }));
    EXPECT_TRUE(eventually([&] { return pixel(cell(2, 3)) == tileColour; }));
    EXPECT_NE(pixel(cell(0, 3) - QPoint(tileSize, 0)), tileColour);
    EXPECT_TRUE(eventually([&] { return roomForWindows() == whole - tileSize; }));
  }
  EXPECT_TRUE(eventually([&] { return roomForWindows() == whole; }));
}

TEST_F(LayerTest, APanelOpensTakesKeysAndCloses) {
  Program first(TILE_DOUBLE, {"--place=0,1,3"}, slot("first"));
  Program second(TILE_DOUBLE, {"--place=1,2,3"}, slot("second"));
  ASSERT_TRUE(first.says("visible 1"));
  ASSERT_TRUE(second.says("visible 1"));
  ASSERT_TRUE(eventually([&] { return pixel(cell(0, 3)) == tileColour; }));
  const QPoint tile = cell(0, 3);
  const QPoint above = tile - QPoint(0, 60);
  const QColor desktop = pixel(above);
  const auto isOpen = [&] { return pixel(above) != desktop; };

  click(tile);
  ASSERT_TRUE(eventually(isOpen));
  // The compositor gives the keys a moment later.
  EXPECT_TRUE(eventually([&] {
    shell("xdotool key a");
    return first.number("text a") > 0;
  }));
  shell("xdotool key Escape");
  EXPECT_TRUE(first.says("closed"));
  EXPECT_TRUE(eventually([&] { return !isOpen(); }));

  click(tile);
  ASSERT_TRUE(eventually(isOpen));
  click(tile);
  EXPECT_TRUE(first.says("closed", 2));
  EXPECT_TRUE(eventually([&] { return !isOpen(); }));

  click(tile);
  ASSERT_TRUE(eventually(isOpen));
  click({20, 20});
  EXPECT_TRUE(first.says("closed", 3));
  EXPECT_TRUE(eventually([&] { return !isOpen(); }));

  click(tile);
  ASSERT_TRUE(eventually(isOpen));
  click(cell(2, 3));
  EXPECT_TRUE(first.says("closed", 4));
  EXPECT_TRUE(eventually([&] {
    shell("xdotool key b");
    return second.number("text b") > 0;
  }));
}

/// Whether the second has been handed a socket of the first's.
bool isHanded(const Program& from, const Program& to) {
  const auto sockets = [](const Program& program) {
    return "ls -l /proc/" + std::to_string(program.id()) + "/fd | grep -o 'socket:.*' | sort -u";
  };
  return !shell("comm -12 <(" + sockets(from) + ") <(" + sockets(to) + ")").empty();
}

/// The windows' own account of their sizes, as the compositor tells them.
int sizesToldTo(const std::string& log) {
  return std::stoi("0" + shell("grep -c 'xdg_toplevel@.*configure(' " + log));
}

TEST_F(LayerTest, TheRoomStaysWhenWhoeverKeepsItIsKilled) {
  const int whole = roomForWindows();
  const std::string log = qEnvironmentVariable("DESK").toStdString() + "/window.log";
  std::vector<std::unique_ptr<Program>> slots_;
  const auto start = [&](int number) {
    auto arguments = slot(("slot" + std::to_string(number)).c_str());
    slots_.push_back(
        std::make_unique<Program>(TILE_DOUBLE, QStringList{"--place=0,1,1"}, arguments));
    return slots_.back()->says("visible 1");
  };
  ASSERT_TRUE(start(0));
  ASSERT_TRUE(eventually([&] { return roomForWindows() == whole - tileSize; }));
  ASSERT_TRUE(start(1));
  Program window("/bin/sh",
                 {"-c", QString::fromStdString("exec env QT_QPA_PLATFORM=wayland "
                                               "WAYLAND_DEBUG=client " DRAG_DOUBLE " 2>" +
                                               log)});
  ASSERT_TRUE(eventually([&] { return sizesToldTo(log) > 0; }));
  int told = sizesToldTo(log);
  ASSERT_TRUE(eventually([&] { return std::exchange(told, sizesToldTo(log)) == told; }));
  const int before = sizesToldTo(log);
  const int kills = qEnvironmentVariableIntValue("TAVRIN_KILLS") > 0
                        ? qEnvironmentVariableIntValue("TAVRIN_KILLS")
                        : 10;
  for (int i = 0; i < kills; ++i) {
    ASSERT_TRUE(eventually([&] { return isHanded(*slots_[0], *slots_[1]); })) << i;
    ::kill(static_cast<pid_t>(slots_.front()->id()), SIGKILL);
    slots_.erase(slots_.begin());
    ASSERT_EQ(roomForWindows(), whole - tileSize) << i;
    ASSERT_TRUE(start(i + 2));
    ASSERT_EQ(roomForWindows(), whole - tileSize) << i;
  }
  EXPECT_EQ(sizesToldTo(log), before);
  slots_.clear();
  EXPECT_TRUE(eventually([&] { return roomForWindows() == whole; }));
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
