#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinWidgetsUI/System/PetSprites.h"
#include "TavrinWidgetsUI/System/PetViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/SystemServices.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

/// Noon and midnight of one day, in whatever zone the tests run.
Date at(int hour) {
  const Calendar calendar;
  DateComponents parts = calendar.components(Date{800'000'000});
  parts.hour = hour;
  parts.minute = 0;
  parts.second = 0;
  return calendar.date(parts);
}

struct PetBench {
  explicit PetBench(Date now, PetSettings settings = {})
      : platform(now), model(servicesOf(platform), DockWidget({}, "W", 1, settings, 1)) {
    model.isTileShown = [this] { return isShown; };
    model.onChange = [this] { ++pictures; };
    model.start();
  }
  int picturesIn(double seconds) {
    const int before = pictures;
    platform.loop.advance(seconds);
    return pictures - before;
  }

  FakePlatform platform;
  SystemWidgetModel model;
  bool isShown = true;
  int pictures = 0;
};

TEST(PetWidget, IsDrawnAtMostEightTimesASecondAndOnlyWhereItShows) {
  PetBench bench(at(12));
  const int pictures = bench.picturesIn(60);
  EXPECT_GT(pictures, 20);
  EXPECT_LE(pictures, 8 * 60);
  bench.isShown = false;
  bench.model.sightChanged();
  EXPECT_EQ(bench.platform.loop.activeTimers(), 0U);
  EXPECT_EQ(bench.picturesIn(600), 0);
  bench.isShown = true;
  bench.model.sightChanged();
  EXPECT_GT(bench.picturesIn(60), 10);
}

TEST(PetWidget, SleepsThroughTheNightAndWakes) {
  PetBench bench(at(23));
  EXPECT_EQ(bench.model.pet().pose().activity, PetActivity::sleeping);
  const int firings = bench.platform.loop.firings;
  EXPECT_EQ(bench.picturesIn(3600), 0);
  EXPECT_LE(bench.platform.loop.firings - firings, 1);
  bench.picturesIn(8 * 3600 + 60);
  EXPECT_NE(bench.model.pet().pose().activity, PetActivity::sleeping);
  EXPECT_EQ(bench.model.pet().sky(), PetSky::day);
}

TEST(PetWidget, HoldsStillWhenAskedTo) {
  PetBench bench(at(12));
  bench.platform.fakeWorkspace.reducedMotion = true;
  bench.model.sightChanged();
  EXPECT_EQ(bench.picturesIn(600), 0);
  bench.platform.fakeWorkspace.reducedMotion = false;
  bench.model.sightChanged();
  EXPECT_GT(bench.picturesIn(60), 10);
  bench.model.setSavesEnergy(true);
  bench.picturesIn(1);
  EXPECT_EQ(bench.picturesIn(600), 0);
}

TEST(PetWidget, AStrokeShowsAtOnce) {
  PetBench bench(at(23));
  bench.model.strokePet();
  EXPECT_EQ(bench.pictures, 1);
  EXPECT_EQ(bench.model.pet().pose().activity, PetActivity::happy);
  bench.picturesIn(10);
  EXPECT_EQ(bench.model.pet().pose().activity, PetActivity::sleeping);
}

TEST(PetWidget, ReadsTheLoadOnlyWhereItFollowsIt) {
  PetBench following(at(12), {PetSpecies::cat, true, true});
  following.picturesIn(60);
  EXPECT_GT(following.platform.host.reads, 5);
  EXPECT_LE(following.platform.host.reads, 32);
  PetBench other(at(12), {PetSpecies::fox, false, true});
  other.picturesIn(60);
  EXPECT_EQ(other.platform.host.reads, 0);
}

TEST(PetSprites, EveryFrameIsADifferentPictureThatStandsOnTheGround) {
  using enum PetActivity;
  for (const auto species : allCases<PetSpecies>()) {
    std::vector<QImage> seen;
    for (const PetPose& pose :
         {PetPose{walking, 0}, PetPose{walking, 1}, PetPose{walking, 2}, PetPose{sitting, 0},
          PetPose{sitting, 1}, PetPose{sleeping, 0}, PetPose{happy, 0}}) {
      const bool isHop = species == PetSpecies::rabbit && pose.activity == walking;
      // A hop has two pictures, a gait four.
      if (isHop && pose.frame > 1)
        continue;
      const QImage picture = petSprite(species, pose);
      EXPECT_EQ(picture.size(), QSize(petWidth, petHeight));
      EXPECT_EQ(std::ranges::count(seen, picture), 0)
          << nameOf(species) << " " << static_cast<int>(pose.activity) << " " << pose.frame;
      seen.push_back(picture);
      bool stands = false;
      for (int x = 0; x < petWidth; ++x)
        stands |= qAlpha(picture.pixel(x, petHeight - 1)) != 0;
      EXPECT_TRUE(stands || isHop) << nameOf(species) << static_cast<int>(pose.activity);
    }
    EXPECT_EQ(petSprite(species, {walking, 0, 0, 0, true}),
              petSprite(species, {walking, 0, 0, 0, false}).mirrored(true, false));
  }
}

TEST(PetScene, AnySizeAndPlaceCanBeDrawn) {
  for (const QSize size : {QSize(1, 1), QSize(5, 40), QSize(24, 24), QSize(200, 26)})
    for (const int place : {-5, 0, 1000})
      EXPECT_EQ(petScene(PetSpecies::dog, {PetActivity::walking, 3, place, -7, false},
                         PetSky::night, size)
                    .size(),
                size);
  for (double hour = 0; hour < 24; hour += 0.25) {
    const double next = nextSkyHour(hour);
    EXPECT_GT(next, hour);
    EXPECT_LE(next, hour + 12);
  }
}

} // namespace
} // namespace tavrin::test
