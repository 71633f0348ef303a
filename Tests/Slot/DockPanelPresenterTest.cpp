#include "TavrinSlot/Base/DockPanelPresenter.h"

#include "Tests/Support/FakePlatform.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

constexpr Rect screen{0, 0, 1280, 800};

FakeDockGeometry dock(std::string orientation, Rect frame, Point mouse) {
  FakeDockGeometry geometry;
  geometry.prefs.orientation = std::move(orientation);
  geometry.frame = frame;
  geometry.mouse = mouse;
  geometry.allScreens = {{screen, screen}};
  return geometry;
}

TEST(PanelAnchor, SnapsToTheTileUnderThePointerTwoPointsOffTheDock) {
  const Rect bottom{100, 0, 600, 60};
  EXPECT_EQ(anchorPoint(dock("bottom", bottom, {205, 20})),
            (PanelAnchor{{182.5, 62}, RectEdge::maxY}));
  EXPECT_EQ(anchorPoint(dock("bottom", bottom, {90, 20})),
            (PanelAnchor{{131.5, 62}, RectEdge::maxY}));
  // Any word but "left" and "right", in exactly these letters, means the bottom.
  EXPECT_EQ(anchorPoint(dock("Left", bottom, {205, 20})).edge, RectEdge::maxY);

  // A vertical Dock's tiles are counted from its top: start 6 below 700, cells of 51.
  const Rect side{0, 100, 60, 600};
  EXPECT_EQ(anchorPoint(dock("left", side, {30, 640})), (PanelAnchor{{62, 617.5}, RectEdge::maxX}));
  const Rect right{1220, 100, 60, 600};
  EXPECT_EQ(anchorPoint(dock("right", right, {1250, 640})),
            (PanelAnchor{{1218, 617.5}, RectEdge::minX}));
}

TEST(PanelAnchor, AMagnifiedDockIsAnsweredByThePointer) {
  auto bottom = dock("bottom", {100, 0, 600, 60}, {205, 20});
  bottom.prefs.magnification = true;
  EXPECT_EQ(anchorPoint(bottom).point, (Point{205, 62}));
  auto left = dock("left", {0, 100, 60, 600}, {30, 640});
  left.prefs.magnification = true;
  EXPECT_EQ(anchorPoint(left).point, (Point{62, 640}));
}

TEST(PanelAnchor, TheOwnTileIsKnownBetterThanThePointer) {
  auto geometry = dock("bottom", {100, 0, 600, 60}, {900, 700});
  geometry.tileCenter = Point{208, 30};
  EXPECT_EQ(anchorPoint(geometry).point, (Point{208, 62}));
  geometry.prefs.orientation = "left";
  EXPECT_EQ(anchorPoint(geometry).point, (Point{702, 30}));
}

TEST(PanelAnchor, WithoutADockFrameTheReservedEdgeOrHalfATileFromThePointer) {
  struct Case {
    const char* orientation;
    Rect visible;
    PanelAnchor expected;
  };
  const Point mouse{400, 3};
  const Case cases[] = {
      {"bottom", screen, {{400, 31}, RectEdge::maxY}},
      {"bottom", {0, 60, 1280, 740}, {{400, 64}, RectEdge::maxY}},
      {"left", screen, {{428, 3}, RectEdge::maxX}},
      {"left", {70, 0, 1210, 800}, {{74, 3}, RectEdge::maxX}},
      {"right", screen, {{372, 3}, RectEdge::minX}},
      {"right", {0, 0, 1210, 800}, {{1206, 3}, RectEdge::minX}},
  };
  for (const auto& [orientation, visible, expected] : cases) {
    auto geometry = dock(orientation, {}, mouse);
    geometry.frame.reset();
    geometry.allScreens = {{{2000, 0, 100, 100}, {2000, 0, 100, 100}}, {screen, visible}};
    EXPECT_EQ(anchorPoint(geometry), expected) << orientation << ' ' << visible.minY();
  }
  // No screen at all: the pointer is all there is.
  FakeDockGeometry blind;
  blind.mouse = mouse;
  EXPECT_EQ(anchorPoint(blind), (PanelAnchor{{400, 31}, RectEdge::maxY}));
}

} // namespace
} // namespace tavrin::test
