#include "TavrinCore/Kinds/System/Pet.h"
#include "TavrinCore/Kinds/System/PetSettings.h"

#include <gtest/gtest.h>
#include <set>

namespace tavrin {
namespace {

/// Lets a pet live for a while; what it was seen doing.
struct Watched {
  std::set<PetActivity> activities;
  std::set<int> places;
  int pictures = 0;
  double shortest = 1e9;
};

Watched watch(PetLife& life, const PetSettings& settings, PetSurroundings around, double seconds,
              Date now = {0}) {
  Watched seen;
  const Date end = now + seconds;
  life.advance(now, settings, around);
  while (life.next() && *life.next() <= end) {
    EXPECT_GT(*life.next(), now) << "it never stands still in time";
    seen.shortest = std::min(seen.shortest, life.next()->since(now));
    now = *life.next();
    if (life.advance(now, settings, around))
      ++seen.pictures;
    seen.activities.insert(life.pose().activity);
    seen.places.insert(life.pose().place);
  }
  return seen;
}

TEST(PetLife, WalksAndSitsByTurnsWithinItsRoom) {
  PetLife life(7);
  PetSurroundings around;
  around.room = 40;
  const auto seen = watch(life, {PetSpecies::cat, false, true}, around, 600);
  EXPECT_TRUE(seen.activities.contains(PetActivity::walking));
  EXPECT_TRUE(seen.activities.contains(PetActivity::sitting));
  EXPECT_FALSE(seen.activities.contains(PetActivity::sleeping));
  EXPECT_EQ(*seen.places.begin(), 0);
  EXPECT_EQ(*seen.places.rbegin(), 40) << "it comes to both ends";
  EXPECT_EQ(life.pose().way, 0);
}

TEST(PetLife, WithoutRoomTheGroundMoves) {
  PetLife life(7);
  const auto seen = watch(life, {PetSpecies::cat, false, true}, {}, 120);
  EXPECT_EQ(seen.places, std::set<int>{0});
  EXPECT_NE(life.pose().way, 0);
}

TEST(PetLife, NeverMoreThanEightPicturesASecond) {
  for (const double load : {0.0, 0.3, 0.59, 0.6, 1.0, 7.0})
    for (std::uint32_t seed = 1; seed < 6; ++seed) {
      PetLife life(seed);
      PetSurroundings around;
      around.load = load;
      around.room = 30;
      const auto seen = watch(life, {PetSpecies::dog, true, true}, around, 120);
      EXPECT_GE(seen.shortest, PetLife::fastestStep - 1e-9) << load;
      EXPECT_LE(seen.pictures, 8 * 120);
    }
}

TEST(PetLife, RunsWhenTheProcessorDoesAndRestsWithIt) {
  PetLife busy(3);
  PetSurroundings around;
  around.load = 0.9;
  const auto running = watch(busy, {}, around, 30);
  EXPECT_TRUE(running.activities.contains(PetActivity::running));
  PetLife idle(3);
  around.load = 0;
  const auto resting = watch(idle, {}, around, 60);
  EXPECT_FALSE(resting.activities.contains(PetActivity::running));
  EXPECT_LT(resting.pictures * 2, running.pictures * 2);
  // A load that rises gets a sitting one up within a glance.
  while (idle.pose().activity != PetActivity::sitting)
    idle.advance(*idle.next(), {}, around);
  around.load = 1;
  const Date seen = *idle.next();
  EXPECT_TRUE(idle.advance(seen, {}, around));
  EXPECT_EQ(idle.pose().activity, PetActivity::running);
}

TEST(PetLife, SleepsAtNightWithoutAnyTimer) {
  PetLife life(1);
  PetSurroundings around;
  around.hour = 23;
  EXPECT_TRUE(life.advance({0}, {}, around));
  EXPECT_EQ(life.pose().activity, PetActivity::sleeping);
  EXPECT_FALSE(life.next());
  EXPECT_FALSE(life.advance({3600}, {}, around)) << "a sleeping one is not drawn again";
  around.hour = 7;
  EXPECT_TRUE(life.advance({28'800}, {}, around));
  EXPECT_TRUE(life.next());
  PetLife owl(1);
  around.hour = 2;
  owl.advance({0}, {PetSpecies::cat, true, false}, around);
  EXPECT_NE(owl.pose().activity, PetActivity::sleeping);
}

TEST(PetLife, HoldsStillWhereNothingIsToMove) {
  PetLife life(1);
  PetSurroundings around;
  around.isStill = true;
  life.advance({0}, {}, around);
  EXPECT_EQ(life.pose().activity, PetActivity::sitting);
  EXPECT_FALSE(life.next());
  life.stroke();
  EXPECT_TRUE(life.advance({1}, {}, around));
  EXPECT_EQ(life.pose().activity, PetActivity::happy);
  ASSERT_TRUE(life.next());
  EXPECT_TRUE(life.advance(*life.next(), {}, around)) << "one picture for the stroke, one after";
  EXPECT_EQ(life.pose().activity, PetActivity::sitting);
  EXPECT_FALSE(life.next());
}

TEST(PetLife, AStrokeWakesItForAMoment) {
  PetLife life(1);
  PetSurroundings around;
  around.hour = 0;
  life.advance({0}, {}, around);
  life.stroke();
  life.advance({1}, {}, around);
  EXPECT_EQ(life.pose().activity, PetActivity::happy);
  int pictures = 0;
  while (life.next() && pictures < 100) {
    life.advance(*life.next(), {}, around);
    ++pictures;
  }
  EXPECT_EQ(life.pose().activity, PetActivity::sleeping);
  EXPECT_LT(pictures, 20);
}

} // namespace
} // namespace tavrin
