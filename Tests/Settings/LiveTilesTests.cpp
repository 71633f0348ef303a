#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinSettings/Base/LiveTiles.h"
#include "Tests/Support/ManualRunLoop.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

using State = LiveTiles::State;

class LiveTilesTest : public testing::Test, public Application {
protected:
  std::vector<std::string> arguments() const override { return {}; }
  void terminate() override {}
  void requestUserAttention() override {}
  void cancelUserAttention() override {}
  void keepMemoryPrivate() override {}
  TokenPtr watchTile(const std::string& identifier, int,
                     std::function<void(const TilePicture*)> shown) override {
    ++watches;
    if (!canWatch)
      return nullptr;
    slots[identifier] = std::move(shown);
    return std::make_unique<Token>();
  }

  static DockWidget widget(int slot) {
    return DockWidget(UUID::random(), "Note", slot, NoteSettings(), 1);
  }
  void shows(int slot, const DockWidget& of, int side) {
    const TilePicture picture{of.id.text(), QImage(side, side, QImage::Format_ARGB32)};
    slots.at("dev.quellby.Tavrin.Slot" + std::to_string(slot))(&picture);
  }
  void ends(int slot) { slots.at("dev.quellby.Tavrin.Slot" + std::to_string(slot))(nullptr); }
  int side(const DockWidget& of) const {
    const auto* picture = live.picture(of.id);
    return picture == nullptr ? 0 : picture->width();
  }

  test::ManualClock clock{Date{}};
  test::ManualRunLoop loop{clock};
  std::map<std::string, std::function<void(const TilePicture*)>> slots;
  int watches = 0;
  bool canWatch = true;
  LiveTiles live{*this, loop};
  DockWidget a = widget(1);
  DockWidget b = widget(2);
};

TEST_F(LiveTilesTest, AWidgetThatMovesKeepsItsPictureUntilItsNewSlotHasDrawnIt) {
  live.follow(std::vector{a, b}, 64);
  shows(1, a, 10);
  shows(2, b, 20);
  std::swap(a.slot, b.slot);
  live.follow(std::vector{b, a}, 64);
  EXPECT_EQ(watches, 2) << "the slots are the same";
  EXPECT_EQ(side(a), 10);
  shows(1, b, 21);
  EXPECT_EQ(side(a), 10);
  EXPECT_EQ(side(b), 21);
  shows(2, a, 11);
  EXPECT_EQ(side(a), 11);
  live.follow(std::vector{b}, 64);
  EXPECT_EQ(side(a), 0) << "off the strip it is shown by none";
}

TEST_F(LiveTilesTest, WhatDoesNotRunIsStillAndWhatMayBeStartingIsAwaited) {
  live.follow(std::vector{a}, 64);
  EXPECT_EQ(live.state(a.id), State::awaited) << "nothing is known yet";
  ends(1);
  EXPECT_EQ(live.state(a.id), State::still);
  // One that is placed while it is looked at is being started.
  live.follow(std::vector{a, b}, 64);
  ends(2);
  EXPECT_EQ(live.state(b.id), State::awaited);
  shows(2, b, 20);
  EXPECT_EQ(live.state(b.id), State::live);
  loop.advance(5);
  EXPECT_EQ(live.state(b.id), State::live);
  ends(2);
  EXPECT_EQ(live.state(b.id), State::awaited) << "it may come back";
  int changes = 0;
  live.onChange = [&](const UUID& id) { changes += id == b.id ? 1 : 0; };
  loop.advance(5);
  EXPECT_EQ(live.state(b.id), State::still);
  EXPECT_EQ(changes, 1);
  // Seen again after a while, what ran meanwhile is not known to.
  live.pause();
  live.follow(std::vector{a, b}, 64);
  ends(1);
  EXPECT_EQ(live.state(a.id), State::still);
}

TEST_F(LiveTilesTest, WithoutAWayToWatchEveryTileIsStill) {
  canWatch = false;
  live.follow(std::vector{a}, 64);
  EXPECT_EQ(live.state(a.id), State::still);
}

} // namespace
} // namespace tavrin
