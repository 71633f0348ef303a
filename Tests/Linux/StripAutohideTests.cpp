#include "TavrinPlatform/Linux/Edge/StripAutohide.h"
#include "Tests/Linux/Desk.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <optional>

/// Slots that agree over the session bus whether the strip is hidden.
namespace tavrin {
namespace {

struct HidingSlot {
  std::unique_ptr<Bus> bus = Bus::session();
  int changes = 0;
  std::optional<StripAutohide> autohide;

  HidingSlot() {
    autohide.emplace(bus.get(), [this] { ++changes; });
    autohide->setWanted(true);
  }
  bool isHidden() const { return autohide->isHidden(); }
};

bool comesTrue(const std::function<bool()>& condition) {
  return eventually([&] {
    QCoreApplication::processEvents();
    return condition();
  });
}

TEST(StripAutohide, OneSlotsReasonKeepsAllTilesThere) {
  HidingSlot first;
  HidingSlot second;
  EXPECT_TRUE(first.isHidden() && second.isHidden());
  first.autohide->hold(StripAutohide::panel, true);
  first.autohide->hold(StripAutohide::pointer, true);
  EXPECT_FALSE(first.isHidden());
  EXPECT_TRUE(comesTrue([&] { return !second.isHidden(); }));
  first.autohide->hold(StripAutohide::pointer, false);
  // One that comes later asks.
  const HidingSlot third;
  EXPECT_TRUE(comesTrue([&] { return !third.isHidden(); }));
  EXPECT_FALSE(first.isHidden() || second.isHidden());
  const int changes = second.changes;
  first.autohide->hold(StripAutohide::panel, false);
  EXPECT_TRUE(comesTrue([&] { return first.isHidden() && second.isHidden() && third.isHidden(); }));
  EXPECT_EQ(second.changes, changes + 1);
}

TEST(StripAutohide, AReasonEndsWithItsSlotAndWithTheWish) {
  HidingSlot first;
  {
    HidingSlot second;
    second.autohide->hold(StripAutohide::keyboard, true);
    EXPECT_TRUE(comesTrue([&] { return !first.isHidden(); }));
  }
  EXPECT_TRUE(comesTrue([&] { return first.isHidden(); }));
  first.autohide->hold(StripAutohide::panel, true);
  first.autohide->setWanted(false);
  EXPECT_FALSE(first.isHidden());
  first.autohide->hold(StripAutohide::panel, false);
  EXPECT_FALSE(first.isHidden());
}

TEST(StripAutohide, ATouchIsForAMomentAndAnAttentionForOneTileAlone) {
  HidingSlot first;
  HidingSlot second;
  first.autohide->attend();
  EXPECT_FALSE(first.isHidden());
  bool hasSecondCome = false;
  EXPECT_TRUE(comesTrue([&] {
    hasSecondCome |= !second.isHidden();
    return first.isHidden();
  }));
  EXPECT_FALSE(hasSecondCome);
  first.autohide->touch();
  EXPECT_TRUE(comesTrue([&] { return !second.isHidden(); }));
  EXPECT_TRUE(comesTrue([&] { return first.isHidden() && second.isHidden(); }));
}

} // namespace
} // namespace tavrin
