#pragma once

#include "TavrinPlatform/MediaPlayers.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every MediaPlayers does. A rig has `players()`, `clock()`, `come(number)`, upon which the
/// player 0 or 1 comes and plays "Tide" by "One", 5 seconds into 200, at a volume of 0.4, and gives
/// its name, `pause(number)`, `play(number)`, `quit(number)`, `orders(number)`, what it was told, as
/// "toggle", "next", "previous", "seek 30" and "volume 0.25", and `comesTrue(condition)`.
namespace tavrin::test {

template <class Rig> class MediaPlayersContract : public testing::Test {
protected:
  void watch() {
    token = rig.players().observe([this] { ++told; });
  }
  const std::vector<MediaPlayer>& all() { return rig.players().players(); }
  bool isFirst(const std::string& name) {
    return rig.comesTrue([&] { return !all().empty() && all().front().name == name; });
  }
  Rig rig;
  TokenPtr token;
  int told = 0;
};
TYPED_TEST_SUITE_P(MediaPlayersContract);

TYPED_TEST_P(MediaPlayersContract, APlayerComesWithWhatItSaysAndGoes) {
  ASSERT_TRUE(this->rig.players().isAvailable());
  this->watch();
  const auto name = this->rig.come(0);
  ASSERT_TRUE(this->rig.comesTrue([&] {
    return this->all().size() == 1 && this->all()[0].playback.isPlaying() &&
           this->all()[0].playback.elapsed(this->rig.clock().now()) >= 5;
  }));
  const MediaPlayer player = this->all()[0];
  EXPECT_EQ(player.name, name);
  EXPECT_FALSE(player.title.empty());
  EXPECT_EQ(player.playback.track.title, "Tide");
  EXPECT_EQ(player.playback.track.artist, "One");
  EXPECT_EQ(player.playback.track.length, 200);
  EXPECT_EQ(player.volume, 0.4);
  EXPECT_TRUE(player.canPlay && player.canPause && player.canGoNext && player.canGoPrevious &&
              player.canSeek && player.isAnswering);
  EXPECT_GT(this->told, 0);
  this->rig.quit(0);
  EXPECT_TRUE(this->rig.comesTrue([&] { return this->all().empty(); }));
}

TYPED_TEST_P(MediaPlayersContract, OrdersReachThatPlayerInTheirOrder) {
  this->watch();
  const auto one = this->rig.come(0);
  const auto two = this->rig.come(1);
  ASSERT_TRUE(this->rig.comesTrue([&] {
    return this->all().size() == 2 && std::ranges::all_of(this->all(), [](const auto& player) {
             return player.playback.isPlaying();
           });
  }));
  auto& players = this->rig.players();
  players.next(one);
  players.previous(one);
  players.seek(one, 30);
  players.setVolume(one, 0.25);
  players.playPause(one);
  for (const char* nobody : {"", "nobody"}) {
    players.playPause(nobody);
    players.next(nobody);
    players.previous(nobody);
    players.seek(nobody, 1);
    players.setVolume(nobody, 1);
    players.raise(nobody);
  }
  EXPECT_TRUE(this->rig.comesTrue([&] { return this->rig.orders(0).size() >= 5; }));
  EXPECT_EQ(this->rig.orders(0), (std::vector<std::string>{"next", "previous", "seek 30",
                                                           "volume 0.25", "toggle"}));
  EXPECT_EQ(this->rig.orders(1), std::vector<std::string>());
}

TYPED_TEST_P(MediaPlayersContract, WhoHasGoneIsToldNothing) {
  this->watch();
  this->token.reset();
  this->rig.come(0);
  EXPECT_TRUE(this->rig.comesTrue([&] { return this->all().size() == 1; }));
  EXPECT_EQ(this->told, 0);
}

REGISTER_TYPED_TEST_SUITE_P(MediaPlayersContract, APlayerComesWithWhatItSaysAndGoes,
                            OrdersReachThatPlayerInTheirOrder, WhoHasGoneIsToldNothing);

/// What the suite's fake leaves to its tests.
template <class Rig> class MediaPlayersOrderContract : public MediaPlayersContract<Rig> {};
TYPED_TEST_SUITE_P(MediaPlayersOrderContract);

TYPED_TEST_P(MediaPlayersOrderContract, TheOneUsedLastComesFirst) {
  this->watch();
  const auto one = this->rig.come(0);
  ASSERT_TRUE(this->isFirst(one));
  const auto two = this->rig.come(1);
  ASSERT_TRUE(this->isFirst(two));
  this->rig.pause(1);
  ASSERT_TRUE(this->rig.comesTrue([&] { return !this->all().front().playback.isPlaying(); }));
  EXPECT_TRUE(this->isFirst(two)) << "a pause is no reason to leave it";
  this->rig.players().next(one);
  EXPECT_TRUE(this->isFirst(one)) << "what is used from here counts";
  this->rig.play(1);
  EXPECT_TRUE(this->isFirst(two));
}

REGISTER_TYPED_TEST_SUITE_P(MediaPlayersOrderContract, TheOneUsedLastComesFirst);

} // namespace tavrin::test
