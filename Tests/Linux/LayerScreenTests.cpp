#include "Tests/Linux/LayerDesk.h"

#include <optional>

/// What a slot sees of a compositor's screen and of the other programs on it.
namespace tavrin {
namespace {

constexpr int pickedOutcome = 0;
constexpr int cancelledOutcome = 1;
constexpr int unavailableOutcome = 2;

/// The first pixel of that colour in a row; none without one.
std::optional<QPoint> pixelIn(int y, QColor colour) {
  const QImage image = screen();
  for (int x = 0; x < image.width(); ++x)
    if (image.pixelColor(x, y) == colour)
      return QPoint(x, y);
  return std::nullopt;
}

QByteArray told(int outcome, QColor colour = Qt::black) {
  return "picked " + QByteArray::number(outcome) + ' ' + QByteArray::number(colour.red()) + ' ' +
         QByteArray::number(colour.green()) + ' ' + QByteArray::number(colour.blue());
}

TEST_F(LayerTest, AColourIsThatOfTheVeryPixel) {
  const auto pick = [](const std::string& act) {
    Program picker(TILE_DOUBLE, {"--place=1,1,2", "--pick"}, slot("picker"));
    // Until the copies lie over the screen, whatever is done reaches what is there.
    eventually([&] {
      shell(act);
      return picker.number("picked ") > 0;
    });
    return picker.output().mid(picker.output().indexOf("picked ")).split('\n').front();
  };
  if (!isSway()) {
    EXPECT_EQ(pick("true"), told(unavailableOutcome));
    return;
  }
  // Its left half is a button, so that no press opens a panel.
  Program grid(TILE_DOUBLE, {"--place=0,1,2", "--grid", "--button"}, slot("first"));
  ASSERT_TRUE(grid.says("visible 1"));
  const int row = pixels.height() - 12;
  std::optional<QPoint> left;
  ASSERT_TRUE(eventually([&] { return (left = pixelIn(row, Qt::red)).has_value(); }));
  // Whatever fraction of a point a pixel begins at.
  for (int i = 2; i < 6; ++i) {
    const QPoint pixel = *left + QPoint(i, 0);
    EXPECT_EQ(pick("xdotool mousemove " + std::to_string(pixel.x()) + " " +
                   std::to_string(pixel.y()) + " sleep .1 click 1"),
              told(pickedOutcome, i % 2 == 0 ? Qt::red : Qt::blue))
        << i;
  }
  EXPECT_EQ(pick("xdotool key Return"), told(pickedOutcome, Qt::blue));
  EXPECT_EQ(pick("xdotool key Escape"), told(cancelledOutcome));
  EXPECT_EQ(pick("xdotool click 3"), told(cancelledOutcome));
}

/// The copy of a turned output is turned back.
TEST_F(LayerTest, AColourIsPickedFromATurnedOutput) {
  if (!isSway())
    GTEST_SKIP() << "this compositor shows its outputs to no program";
  const QColor colour(0x20, 0x40, 0x80);
  Program window(WINDOW_DOUBLE, {colour.name(), "plain"}, {"QT_QPA_PLATFORM=wayland"});
  ASSERT_TRUE(window.says("size "));
  const QPoint middle = pixelAt({57, 115});
  const QPoint far(pixels.width() - middle.y(), pixels.height() - middle.x());
  for (const auto& [transform, place] :
       {std::pair{"90", QPoint(far.x(), middle.x())}, std::pair{"270", QPoint(middle.y(), far.y())},
        std::pair{"flipped-90", far}, std::pair{"normal", middle}}) {
    shell(std::string("swaymsg output '*' transform ") + transform);
    ASSERT_TRUE(eventually([&] {
      shell("swaymsg '[title=\"window double\"] floating enable, resize set 75 50, move absolute "
            "position 20 90'");
      return screen().pixelColor(place) == colour;
    })) << transform;
    Program picker(TILE_DOUBLE, {"--place=1,1,2", "--pick"}, slot("picker"));
    EXPECT_TRUE(eventually([&] {
      shell("xdotool mousemove " + std::to_string(place.x()) + " " + std::to_string(place.y()) +
            " sleep .1 click 1");
      return picker.number("picked ") > 0;
    }));
    EXPECT_EQ(picker.number(told(pickedOutcome, colour)), 1)
        << transform << picker.output().toStdString();
  }
}

TEST_F(LayerTest, TheApplicationInFrontIsKnownWhereTheCompositorTells) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--front"}, slot("first"));
  ASSERT_TRUE(tile.says("front nobody"));
  {
    OtherWindow other;
    ASSERT_TRUE(eventually([&] { return other.hasKeyboard(); }));
    if (!isSway()) {
      EXPECT_EQ(tile.number("front "), 1);
      return;
    }
    EXPECT_TRUE(tile.says("front WindowDouble")) << tile.output().toStdString();
  }
  EXPECT_TRUE(tile.says("front nobody", 2));
}

/// The X libraries that the adapters are linked with are there, without a connection.
TEST_F(LayerTest, TheToolkitsPartsForAnXServerAreNotLoaded) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--open"}, slot("first"));
  ASSERT_TRUE(tile.says("opened"));
  EXPECT_TRUE(loads(tile, "libwayland-client"));
  EXPECT_FALSE(loads(tile, "libqxcb"));
  EXPECT_FALSE(loads(tile, "libQt6XcbQpa"));
}

} // namespace
} // namespace tavrin
