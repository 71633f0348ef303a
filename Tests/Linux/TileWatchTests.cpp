#include "TavrinPlatform/Linux/Slot/TileWatch.h"
#include "TavrinPlatform/Linux/Tile/WatchedSurface.h"
#include "Tests/Linux/Desk.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

/// One program's tile followed by another over the bus.
namespace tavrin {
namespace {

using testing::ElementsAre;

constexpr const char* name = "dev.test.Watched1";

/// A program with a tile, which is of one colour.
struct Shown {
  Shown() {
    surface.events.picture = [this](int pixelsHigh) {
      ++drawn;
      QImage image(2 * pixelsHigh, pixelsHigh, QImage::Format_ARGB32_Premultiplied);
      image.fill(colour);
      return image;
    };
    surface.events.visibilityChanged = [this] { visible.push_back(surface.isVisible()); };
  }
  void claim() {
    bool isOwner = false;
    bus->requestName(name, [&](bool answer) { isOwner = answer; });
    EXPECT_TRUE(untilTrue([&] { return isOwner; }));
  }
  void show(Qt::GlobalColor other, const std::string& subject) {
    colour = other;
    surface.setSubject(subject);
    surface.display({});
  }

  std::unique_ptr<Bus> bus = Bus::session();
  WatchedSurface surface{*bus, name};
  QColor colour = Qt::red;
  int drawn = 0;
  std::vector<bool> visible;
};

/// What a follower was told, in words.
struct Follower {
  explicit Follower(int pixelsHigh)
      : token(watchTile(*bus, name, pixelsHigh, [this](const TilePicture* picture) {
          told.push_back(picture == nullptr
                             ? "none"
                             : picture->subject + " " +
                                   picture->image.pixelColor(0, 0).name().toStdString() + " " +
                                   std::to_string(picture->image.height()));
        })) {}
  bool hears(const std::string& words) {
    return untilTrue([&] { return !told.empty() && told.back() == words; });
  }

  std::unique_ptr<Bus> bus = Bus::session();
  std::vector<std::string> told;
  TokenPtr token;
};

TEST(TileWatch, FollowsATileFromBeforeItsStartToItsEnd) {
  Follower small(20);
  ASSERT_TRUE(small.hears("none")) << "and nothing is started";
  auto tile = std::make_unique<Shown>();
  tile->show(Qt::red, "a");
  tile->claim();
  EXPECT_TRUE(small.hears("a #ff0000 20"));
  Follower large(64);
  EXPECT_TRUE(large.hears("a #ff0000 64")) << "each in its own size";
  tile->show(Qt::green, "a");
  EXPECT_TRUE(small.hears("a #00ff00 20"));
  EXPECT_TRUE(large.hears("a #00ff00 64"));
  tile->show(Qt::blue, "b");
  EXPECT_TRUE(small.hears("b #0000ff 20"));
  tile.reset();
  EXPECT_TRUE(small.hears("none"));
  tile = std::make_unique<Shown>();
  tile->claim();
  tile->show(Qt::red, "c");
  EXPECT_TRUE(small.hears("c #ff0000 20")) << "another process counts its pictures anew";
}

TEST(TileWatch, ATileThatNobodyWatchesDrawsNothingForIt) {
  Shown tile;
  tile.claim();
  tile.show(Qt::red, "a");
  EXPECT_EQ(tile.drawn, 0);
  EXPECT_FALSE(tile.surface.isVisible());
  {
    Follower follower(20);
    ASSERT_TRUE(follower.hears("a #ff0000 20"));
    EXPECT_THAT(tile.visible, ElementsAre(true));
    // What comes faster than it is fetched is skipped, and the last of it arrives.
    for (int i = 0; i < 50; ++i)
      tile.show(i % 2 == 0 ? Qt::red : Qt::green, "b");
    tile.show(Qt::blue, "b");
    EXPECT_TRUE(follower.hears("b #0000ff 20"));
    EXPECT_LT(tile.drawn, 10);
  }
  // What it had asked for is drawn once more.
  const int drawn = tile.drawn;
  tile.show(Qt::red, "b");
  EXPECT_TRUE(untilTrue([&] { return !tile.surface.isVisible(); }));
  tile.show(Qt::green, "b");
  EXPECT_LE(tile.drawn, drawn + 1);
  EXPECT_THAT(tile.visible, ElementsAre(true, false));
}

TEST(TileWatch, AskingAnewEndsWhatTheSameProgramWaitedFor) {
  Shown tile;
  tile.claim();
  tile.show(Qt::red, "a");
  Follower follower(20);
  ASSERT_TRUE(follower.hears("a #ff0000 20"));
  for (int pixels = 21; pixels < 40; ++pixels)
    follower.token = watchTile(*follower.bus, name, pixels, [&](const TilePicture* picture) {
      follower.told.push_back(picture == nullptr ? "none"
                                                 : std::to_string(picture->image.height()));
    });
  EXPECT_TRUE(follower.hears("39"));
  const int drawn = tile.drawn;
  tile.show(Qt::green, "a");
  EXPECT_TRUE(untilTrue([&] { return tile.drawn > drawn; }));
  EXPECT_EQ(tile.drawn, drawn + 1);
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
