#include "TavrinPlatform/Linux/Tile/PopoverLayout.h"
#include "TavrinPlatform/Linux/Tile/StripLayout.h"
#include "TavrinPlatform/Linux/Tile/StripRoom.h"

#include <gtest/gtest.h>

/// Where tiles and panels stand: rules over rectangles, which need no desktop.
namespace tavrin {
namespace {

TEST(StripLayout, CellsStandCentredOnTheEdge) {
  const QRectF screen(0, 0, 1000, 800);
  const QRectF second(1000, 30, 500, 600);
  struct Case {
    const char* name;
    QRectF available;
    const char* orientation;
    double wished;
    DockTile::Place place;
    QRectF strip;
    QRectF tile;
    double tileSize;
  };
  const Case cases[] = {
      {"one", screen, "bottom", 48, {0, 1, 1}, {469, 752, 63, 48}, {475, 752, 51, 48}, 48},
      {"second of ten",
       screen,
       "bottom",
       48,
       {1, 1, 10},
       {239, 752, 522, 48},
       {296, 752, 51, 48},
       48},
      {"wide", screen, "bottom", 48, {1, 3, 4}, {392, 752, 216, 48}, {449, 752, 153, 48}, 48},
      {"left", screen, "left", 48, {0, 2, 2}, {0, 343, 48, 114}, {0, 349, 48, 102}, 48},
      {"right", second, "right", 48, {0, 1, 1}, {1452, 299, 48, 63}, {1452, 305, 48, 51}, 48},
      {"unknown is bottom",
       screen,
       "top",
       48,
       {0, 1, 1},
       {469, 752, 63, 48},
       {475, 752, 51, 48},
       48},
      {"shrinks to fit",
       screen,
       "bottom",
       128,
       {0, 1, 12},
       {6, 724, 988, 76},
       {15.5, 724, 80.75, 76},
       76},
      {"nonsense", screen, "bottom", 48, {-4, 0, 0}, {469, 752, 63, 48}, {475, 752, 51, 48}, 48},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    DockPreferences preferences;
    preferences.orientation = c.orientation;
    preferences.tileSize = c.wished;
    const auto layout = StripLayout::make(c.available, preferences, c.place);
    EXPECT_EQ(layout.strip, c.strip);
    EXPECT_EQ(layout.tile, c.tile);
    EXPECT_EQ(layout.tileSize, c.tileSize);
    // Away from the edge that the tile touches.
    const QRectF moved = layout.tile.translated(layout.inwards());
    EXPECT_TRUE(c.available.contains(moved)) << moved.x() << "," << moved.y();
    EXPECT_EQ(layout.inwards().manhattanLength(), 1);
  }
}

TEST(StripRoom, AStrutReachesIntoTheScreenThatItStartsFrom) {
  const QSize root(2000, 1000);
  const QRect left(0, 0, 1000, 800);
  const QRect right(1000, 0, 1000, 1000);
  struct Case {
    const char* name;
    QRect tile;
    StripEdge edge;
    QRect screen;
    Strut strut;
    int inLeft;
    int inRight;
  };
  const Case cases[] = {
      {"bottom",
       {1475, 952, 51, 48},
       StripEdge::bottom,
       right,
       {0, 0, 0, 48, 0, 0, 0, 0, 0, 0, 1475, 1525},
       0,
       48},
      {"the edge is not the desktop's", {475, 752, 51, 48}, StripEdge::bottom, left, {}, 0, 0},
      {"left",
       {0, 349, 48, 51},
       StripEdge::left,
       left,
       {48, 0, 0, 0, 349, 399, 0, 0, 0, 0, 0, 0},
       48,
       0},
      {"another screen is on the way", {1000, 349, 48, 51}, StripEdge::left, right, {}, 0, 0},
      {"right, above a panel",
       {1922, 349, 48, 51},
       StripEdge::right,
       right,
       {0, 78, 0, 0, 0, 0, 349, 399, 0, 0, 0, 0},
       0,
       78},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Strut strut = strutOfTile(c.tile, c.edge, c.screen, root);
    EXPECT_EQ(strut, c.strut);
    EXPECT_EQ(depthOfStrut(strut, c.edge, left, root), c.inLeft);
    EXPECT_EQ(depthOfStrut(strut, c.edge, right, root), c.inRight);
  }
  // Told for the whole desktop, whose lower screen it crosses.
  const Strut whole = {0, 0, 0, 248, 0, 65535, 0, 65535, 0, 65535, 0, 65535};
  EXPECT_EQ(depthOfStrut(whole, StripEdge::bottom, left, root), 48);
  EXPECT_EQ(depthOfStrut({0, 0, 0, 48}, StripEdge::bottom, right, root), 0) << "not whole";
}

TEST(PopoverLayout, TheBodyStaysOnItsScreenAndTheArrowAtItsTile) {
  using Arrow = PopoverLayout::Arrow;
  const QRectF screen(0, 0, 1000, 800);
  struct Case {
    const char* name;
    QPointF tip;
    Arrow wished;
    QSizeF size;
    QRectF body;
    Arrow arrow;
  };
  const Case cases[] = {
      {"above", {500, 750}, Arrow::bottom, {280, 200}, {360, 541, 280, 200}, Arrow::bottom},
      {"right of it", {50, 400}, Arrow::left, {280, 200}, {59, 300, 280, 200}, Arrow::left},
      {"left of it", {950, 400}, Arrow::right, {280, 200}, {661, 300, 280, 200}, Arrow::right},
      {"near the left end",
       {60, 750},
       Arrow::bottom,
       {280, 200},
       {0, 541, 280, 200},
       Arrow::bottom},
      {"near the right end",
       {990, 750},
       Arrow::bottom,
       {280, 200},
       {720, 541, 280, 200},
       Arrow::bottom},
      {"no room above", {500, 20}, Arrow::bottom, {280, 200}, {360, 29, 280, 200}, Arrow::top},
      {"beyond the top", {500, -28}, Arrow::bottom, {280, 200}, {360, 9, 280, 200}, Arrow::top},
      {"no room at all", {500, 400}, Arrow::bottom, {280, 900}, {360, 0, 280, 900}, Arrow::bottom},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto layout = PopoverLayout::make(c.tip, c.wished, c.size, screen);
    EXPECT_EQ(layout.body, c.body);
    EXPECT_EQ(layout.arrow, c.arrow);
    // One outline without a seam, which reaches as far as the arrow.
    const QPainterPath outline = layout.outline();
    EXPECT_EQ(outline.toSubpathPolygons().size(), 1);
    EXPECT_TRUE(outline.contains(layout.body.center()));
  }
  const auto middle = PopoverLayout::make({500, 750}, Arrow::bottom, {280, 200}, screen);
  EXPECT_NEAR(middle.frame().bottom(), 750, 0.01);
  EXPECT_TRUE(middle.outline().contains(QPointF(500, 748)));
  // Two points off a strip that keeps the screen's edge for itself, whatever the body keeps from
  // the other edges.
  const auto atStrip = PopoverLayout::make({10, 798}, Arrow::bottom, {280, 200}, screen, 4);
  EXPECT_NEAR(atStrip.frame().bottom(), 798, 0.01);
  EXPECT_EQ(atStrip.body.left(), 4);
  // Where its content stands, which is placed by whole points.
  const auto between = PopoverLayout::make({500.5, 750}, Arrow::bottom, {280, 200}, screen);
  EXPECT_EQ(between.body.left(), 361);
}

TEST(PopoverLayout, APanelNeverLiesOnTheStripThatItPointsAt) {
  using Arrow = PopoverLayout::Arrow;
  const QRectF screen(1000, 0, 640, 400);
  const auto beside = [&](const QRectF& strip, Arrow arrow) {
    return PopoverLayout::roomBeside(strip, arrow, screen);
  };
  EXPECT_EQ(beside({1200, 352, 200, 48}, Arrow::bottom), QRectF(1000, 0, 640, 352));
  EXPECT_EQ(beside({1000, 100, 48, 200}, Arrow::left), QRectF(1048, 0, 592, 400));
  EXPECT_EQ(beside({1592, 100, 48, 200}, Arrow::right), QRectF(1000, 0, 592, 400));
  // On another screen, or none at all.
  EXPECT_EQ(beside({200, 352, 200, 48}, Arrow::bottom), screen);
  EXPECT_EQ(beside({}, Arrow::bottom), screen);
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
