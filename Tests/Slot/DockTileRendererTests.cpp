#include "TavrinSlot/Base/DockTileRenderer.h"
#include "Tests/Support/FakePlatform.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

TEST(DockTileRenderer, WhoWatchesGetsTheViewInAnotherSizeAndEverySubjectsPicture) {
  FakeDockTile tile;
  DockTileRenderer renderer(tile);
  EXPECT_TRUE(tile.onPicture(128).isNull()) << "before anything is shown";
  TileContent content;
  content.figure = "12:00";
  const auto view = tavrin::tile(content, renderer.size());
  renderer.setSubject("a");
  renderer.render(view);
  EXPECT_EQ(tile.displays, 1);
  EXPECT_EQ(tile.onPicture(64), tile.last);
  const auto large = tile.onPicture(128);
  EXPECT_EQ(large.size(), QSize(128, 128));
  EXPECT_NE(large, tile.last.scaled(128, 128)) << "painted anew, not enlarged";
  EXPECT_EQ(tile.displays, 1);
  renderer.render(view);
  EXPECT_EQ(tile.displays, 1);
  // Another widget's, though it looks the same.
  renderer.setSubject("b");
  renderer.render(view);
  EXPECT_EQ(tile.displays, 2);
}

} // namespace
} // namespace tavrin::test
