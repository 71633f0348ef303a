#include "Tests/Linux/LayerDesk.h"

#include <algorithm>
#include <cstdlib>
#include <vector>
#include <xcb/xfixes.h>

/// What the pointer looks like over tile and panel of a layer shell, and what is dragged out of a
/// panel.
namespace tavrin {
namespace {

/// The middle of all that has this colour on the screen, in pixels; null without any.
QPoint middleOf(QColor colour) {
  const QImage image = screen();
  QRect found;
  for (int y = 0; y < image.height(); y += 2)
    for (int x = 0; x < image.width(); x += 2)
      if (image.pixelColor(x, y) == colour)
        found |= QRect(x, y, 1, 1);
  return found.center();
}

std::string pixelWords(QPoint pixel) {
  return std::to_string(pixel.x()) + " " + std::to_string(pixel.y());
}

/// The pointer's picture as the X server shows it, its hot spot first.
std::vector<std::uint32_t> pointerPicture() {
  auto* x = xcb_connect(nullptr, nullptr);
  std::free(xcb_xfixes_query_version_reply(x, xcb_xfixes_query_version(x, 4, 0), nullptr));
  std::vector<std::uint32_t> picture;
  if (auto* reply = xcb_xfixes_get_cursor_image_reply(x, xcb_xfixes_get_cursor_image(x), nullptr)) {
    picture = {reply->xhot, reply->yhot};
    const auto* pixels = xcb_xfixes_get_cursor_image_cursor_image(reply);
    picture.insert(picture.end(), pixels,
                   pixels + xcb_xfixes_get_cursor_image_cursor_image_length(reply));
    std::free(reply);
  }
  xcb_disconnect(x);
  return picture;
}

TEST_F(LayerTest, ThePointerShowsWhatItIsOver) {
  if (!isSway())
    GTEST_SKIP() << "this compositor draws the pointer itself";
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--button", "--open", "--parcel=/tmp/one.txt"},
               slot("first"));
  ASSERT_TRUE(tile.says("opened"));
  ASSERT_TRUE(isTileAt(cell(0, 1)));
  QPoint parcel;
  ASSERT_TRUE(eventually([&] { return !(parcel = middleOf(Qt::green)).isNull(); }));
  const auto over = [](const std::string& place) {
    shell("xdotool mousemove " + place +
          " mousemove_relative 1 1 mousemove_relative -- -1 -1 sleep .05");
    return pointerPicture();
  };
  const std::string body = words(cell(0, 1) + QPoint(tileSize / 4, 0));
  const std::string button = words(cell(0, 1) - QPoint(tileSize / 4, 0));
  std::vector<std::uint32_t> arrow;
  std::vector<std::uint32_t> hand;
  EXPECT_TRUE(eventually([&] { return (arrow = over(pixelWords(parcel))) == over(body); }));
  ASSERT_FALSE(arrow.empty());
  EXPECT_TRUE(eventually([&] { return (hand = over(button)) != arrow; }));
  // The line is somewhere above the parcel.
  int rise = 0;
  EXPECT_TRUE(eventually([&] {
    rise = rise % 80 + 8;
    const auto beam = over(pixelWords(parcel - QPoint(0, static_cast<int>(rise * scale()))));
    return beam != arrow && beam != hand;
  }));
  EXPECT_TRUE(eventually([&] { return over(body) == arrow; }));
}

/// The one that the desk's compositor runs types what it finds in a file whenever it may.
TEST_F(LayerTest, AnInputMethodTypesIntoAPanel) {
  if (!qEnvironmentVariableIsSet("DESK_INPUT_METHOD"))
    GTEST_SKIP() << "the toolkit and this compositor have no input method's protocol in common";
  const auto file = qEnvironmentVariable("DESK").toStdString() + "/typed";
  shell("printf 'k\u00e4\u6f22' >" + file);
  {
    Program tile(TILE_DOUBLE, {"--place=0,1,1"}, slot("first"));
    ASSERT_TRUE(tile.says("visible 1"));
    ASSERT_TRUE(isTileAt(cell(0, 1)));
    click(cell(0, 1));
    EXPECT_TRUE(tile.says("text k\u00e4\u6f22")) << tile.output().toStdString();
  }
  shell("rm " + file);
}

TEST_F(LayerTest, WhatIsDraggedOutOfAPanelReachesOtherWindows) {
  Program target(DRAG_DOUBLE, {}, {"QT_QPA_PLATFORM=wayland"});
  ASSERT_TRUE(target.says("ready"));
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--parcel=/tmp/one.txt"}, slot("first"));
  ASSERT_TRUE(tile.says("visible 1"));
  ASSERT_TRUE(isTileAt(cell(0, 1)));
  click(cell(0, 1));
  ASSERT_TRUE(tile.says("opened"));
  QPoint parcel;
  ASSERT_TRUE(eventually([&] { return !(parcel = middleOf(Qt::green)).isNull(); }));
  const QPoint ground = middleOf(Qt::darkCyan);
  ASSERT_FALSE(ground.isNull());
  EXPECT_TRUE(eventually([&] {
    shell("xdotool mousemove " + pixelWords(parcel) +
          " mousedown 1 mousemove_relative 10 0 sleep .2 mousemove_relative 10 -4 sleep .2 "
          "mousemove " +
          pixelWords(ground) +
          " sleep .2 mousemove_relative 1 1 sleep .2 mousemove_relative -- -1 -1 sleep .2 "
          "mousemove_relative 1 1 sleep .3 mouseup 1");
    return target.number("dropped copy file:///tmp/one.txt") > 0;
  })) << target.output().toStdString()
      << tile.output().toStdString();
  EXPECT_TRUE(tile.says("dragged 1"));
  EXPECT_EQ(tile.number("closed"), 0);
  // A press elsewhere closes the panel again.
  shell("xdotool mousemove " + words({20, 20}) + " click 1");
  EXPECT_TRUE(tile.says("closed"));
}

} // namespace
} // namespace tavrin
