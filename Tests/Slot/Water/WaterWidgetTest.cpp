#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinStorage/WaterStore.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "Tests/Slot/SlotFixture.h"

#include <fstream>

namespace tavrin::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class WaterWidgetTest : public SlotTest {
protected:
  void SetUp() override {
    SlotTest::SetUp();
    platform_.fakeClock.set(Calendar().date({2026, 3, 9, 12, 0, 0, 1}));
  }
  QString amount() const { return all<PanelFigure>().front()->text(); }
  /// Somebody else's pour.
  void pourElsewhere(int millilitres) {
    WaterStore(folder_ / "water.json", platform_.center)
        .add(millilitres, platform_.fakeClock.now());
  }
};

TEST_F(WaterWidgetTest, DrinkingAndTakingBackThroughThePanel) {
  start(WaterSettings{});
  EXPECT_THAT(platform_.tile.value, HasSubstr("0/8"));
  click();
  EXPECT_THAT(words(), Contains("2000 ml is the goal"));
  EXPECT_THAT(words(), Contains("Time for a glass"));
  EXPECT_THAT(words(), Contains("This week"));
  ASSERT_NE(button("Edit Water…"), nullptr);
  auto* undo = button("Take a glass back");
  ASSERT_NE(undo, nullptr);
  EXPECT_FALSE(undo->isEnabled());
  auto* drink = button("Drink 250 ml");
  ASSERT_NE(drink, nullptr);
  drink->click();
  EXPECT_EQ(amount(), "250");
  EXPECT_THAT(words(), Contains("Next glass in 45 min"));
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.water-changed"), 1);
  platform_.loop.advance(0.2);
  for (int i = 0; i < 7; ++i)
    drink->click();
  platform_.loop.advance(0.2);
  EXPECT_EQ(amount(), "2000");
  EXPECT_THAT(words(), Contains("Goal reached"));
  EXPECT_THAT(words(), Not(Contains("2000 ml is the goal")));
  undo->click();
  platform_.loop.advance(0.2);
  EXPECT_EQ(amount(), "1750");
  EXPECT_THAT(platform_.tile.value, HasSubstr("7/8"));
}

TEST_F(WaterWidgetTest, APourMovesTheTankForAQuarterOfASecondAndThenItRests) {
  start(WaterSettings{});
  const int atRest = platform_.tile.displays;
  pourElsewhere(250);
  platform_.loop.advance(0.24);
  EXPECT_GE(platform_.tile.displays, atRest + 8);
  platform_.loop.advance(0.1);
  const int settled = platform_.tile.displays;
  platform_.loop.advance(59);
  EXPECT_EQ(platform_.tile.displays, settled);
  platform_.loop.advance(61);
  EXPECT_EQ(platform_.tile.displays, settled + 2) << "the tank drains by the minute";
  platform_.loop.advance(45 * 60);
  const int dry = platform_.tile.displays;
  platform_.loop.advance(3 * 3600);
  EXPECT_EQ(platform_.tile.displays, dry) << "a dry tank costs nothing";
}

TEST_F(WaterWidgetTest, NothingMovesUnderReducedMotionOrOutOfSight) {
  for (const bool isReduced : {true, false}) {
    platform_.fakeWorkspace.reducedMotion = isReduced;
    platform_.tile.visible = isReduced;
    start(WaterSettings{});
    const int before = platform_.tile.displays;
    pourElsewhere(250);
    platform_.loop.advance(1);
    EXPECT_EQ(platform_.tile.displays, before + 1) << isReduced;
    app_.reset();
  }
}

TEST_F(WaterWidgetTest, ABurstOfPoursElsewhereIsShownTogetherAndComplete) {
  WaterSettings settings;
  settings.style = WaterTileStyle::glass;
  start(settings);
  platform_.fakeWorkspace.reducedMotion = true;
  const int before = platform_.tile.displays;
  for (int i = 0; i < 100; ++i)
    pourElsewhere(10);
  platform_.loop.advance(0.15);
  EXPECT_THAT(platform_.tile.value, HasSubstr("1000 ml"));
  EXPECT_LE(platform_.tile.displays, before + 3);
}

TEST_F(WaterWidgetTest, TheNewDayShowsWithinAMinuteOfMidnight) {
  platform_.fakeClock.set(Calendar().date({2026, 3, 9, 23, 59, 30, 1}));
  start(WaterSettings{});
  pourElsewhere(500);
  platform_.loop.advance(1);
  EXPECT_THAT(platform_.tile.value, HasSubstr("2/8"));
  platform_.loop.advance(60);
  EXPECT_THAT(platform_.tile.value, HasSubstr("0/8"));
}

TEST_F(WaterWidgetTest, WhatASleepingComputerMissedIsShownOnWaking) {
  start(WaterSettings{});
  { // written without a word
    FakeNotificationCenter deaf;
    WaterStore(folder_ / "water.json", deaf).add(500, platform_.fakeClock.now());
  }
  platform_.fakeWorkspace.wake.call();
  EXPECT_THAT(platform_.tile.value, HasSubstr("2/8"));
  platform_.fakeClock.advance(86'400);
  platform_.fakeWorkspace.dayChange.call();
  EXPECT_THAT(platform_.tile.value, HasSubstr("0/8"));
}

TEST_F(WaterWidgetTest, AFileThatCannotBeReadShowsAnEmptyReadingUntilItCan) {
  std::ofstream(folder_ / "water.json") << "{";
  start(WaterSettings{});
  EXPECT_THAT(platform_.tile.value, HasSubstr("0/8"));
  click();
  button("Drink 250 ml")->click();
  EXPECT_EQ(amount(), "0");
  std::filesystem::remove(folder_ / "water.json");
  button("Drink 250 ml")->click();
  platform_.loop.advance(0.5);
  EXPECT_EQ(amount(), "250");
  std::ofstream(folder_ / "water.json") << "[]";
  platform_.fakeWorkspace.wake.call();
  EXPECT_EQ(amount(), "250") << "what was read last stays";
}

TEST_F(WaterWidgetTest, TheWideTilesButtonPours) {
  start(WaterSettings{}, 3);
  ASSERT_TRUE(platform_.tile.onClick);
  const TileSize size{64, 3};
  const double x = size.bodyRect().right() - size.padding() * 1.4 - size.actionSide() / 2;
  EXPECT_TRUE(platform_.tile.onClick({x, 32}));
  platform_.loop.advance(1);
  EXPECT_THAT(platform_.tile.value, HasSubstr("250 ml of 2000 ml"));
}

TEST_F(WaterWidgetTest, OuncesAreShownEverywhere) {
  WaterSettings settings;
  settings.unit = WaterUnit::ounces;
  start(settings);
  pourElsewhere(500);
  click();
  EXPECT_EQ(amount(), "16.9");
  EXPECT_THAT(words(), Contains("67.6 oz is the goal"));
  EXPECT_NE(button("Drink 8.5 oz"), nullptr);
}

} // namespace
} // namespace tavrin::test
