#include "TavrinWidgetsUI/Fans/FanSwitch.h"
#include "TavrinWidgetsUI/Fans/FanViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/PanelWords.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

using Status = FanHelperClient::Status;

struct FanBench {
  explicit FanBench(int count = 2) {
    platform.fakeSMC.addFans(count);
    fans.onChange = [this] { ++changes; };
    fans.start();
    platform.loop.runBackground();
  }
  FakePlatform platform;
  FanSwitch fans{platform.loop, platform.fakeSMC, platform.fans};
  int changes = 0;
};

TEST(FanSwitch, ReadsAndTellsWhenASpeedDiffers) {
  FanBench bench;
  ASSERT_EQ(bench.fans.readings().size(), 2U);
  EXPECT_EQ(bench.changes, 1);
  bench.platform.fakeSMC.set("F0Ac", 2003, "fpe2"); // within the rounding
  bench.platform.loop.advance(FanSwitch::idlePeriod);
  bench.platform.loop.runBackground();
  EXPECT_EQ(bench.changes, 1);
  bench.platform.fakeSMC.set("F0Ac", 2400, "fpe2");
  bench.platform.loop.advance(FanSwitch::idlePeriod);
  bench.platform.loop.runBackground();
  EXPECT_EQ(bench.fans.readings()[0].current, 2400);
  EXPECT_EQ(bench.changes, 2);
}

TEST(FanSwitch, FullSpeedAndBack) {
  FanBench bench;
  bench.fans.setFull(true);
  EXPECT_TRUE(bench.fans.isBusy());
  bench.fans.setFull(false); // busy
  EXPECT_EQ(bench.platform.fans.asked, std::vector<bool>{true});
  bench.platform.fans.answer();
  EXPECT_TRUE(bench.fans.isFull());
  bench.fans.setFull(false);
  bench.platform.fans.answer();
  EXPECT_FALSE(bench.fans.isFull() || bench.fans.isBusy());
}

TEST(FanSwitch, FullSpeedThatIsLostIsNotClaimed) {
  FanBench bench;
  auto& smc = bench.platform.fakeSMC;
  const auto read = [&](int times) {
    for (int i = 0; i < times; ++i) {
      bench.platform.loop.advance(FanSwitch::idlePeriod);
      bench.platform.loop.runBackground();
    }
  };
  bench.fans.setFull(true);
  bench.platform.fans.answer();
  smc.set("F1Md", 1, "ui8 ");
  read(20);
  EXPECT_TRUE(bench.fans.isFull());
  smc.set("F1Md", 0, "ui8 ");
  read(FanSwitch::readingsWithoutForce - 1);
  smc.set("F1Md", 1, "ui8 "); // taken again after a sleep
  read(1);
  smc.set("F1Md", 0, "ui8 ");
  read(FanSwitch::readingsWithoutForce - 1);
  EXPECT_TRUE(bench.fans.isFull());
  const int before = bench.changes;
  read(1);
  EXPECT_FALSE(bench.fans.isFull());
  EXPECT_EQ(bench.changes, before + 1);
  EXPECT_EQ(bench.platform.fans.asked, (std::vector<bool>{true}));
  bench.fans.setFull(true); // anew, for which the old hold is let go
  EXPECT_EQ(bench.platform.fans.asked, (std::vector<bool>{true, false}));
  bench.platform.fans.answer();
  EXPECT_EQ(bench.platform.fans.asked, (std::vector<bool>{true, false, true}));
  bench.platform.fans.answer();
  EXPECT_TRUE(bench.fans.isFull());
}

TEST(FanSwitch, ARefusalIsShownUntilTheNextTry) {
  FanBench bench;
  bench.fans.setFull(true);
  bench.platform.fans.answer(FanHelperClient::Refusal{"Failed to reach the fan helper"});
  bench.platform.loop.runBackground();
  EXPECT_EQ(bench.fans.trouble(), "Failed to reach the fan helper");
  EXPECT_FALSE(bench.fans.isFull());
  bench.fans.setFull(true);
  EXPECT_EQ(bench.fans.trouble(), "");
}

TEST(FanSwitch, AnUnregisteredHelperIsRegisteredFirst) {
  FanBench bench;
  bench.platform.fans.current = Status::notRegistered;
  bench.fans.setFull(true);
  EXPECT_EQ(bench.platform.fans.registrations, 1);
  bench.platform.fans.current = Status::needsApproval;
  bench.platform.fans.answer();
  EXPECT_TRUE(bench.platform.fans.asked.empty()) << "the user has to approve first";
  EXPECT_FALSE(bench.fans.isBusy());
  bench.platform.fans.current = Status::notRegistered;
  bench.fans.setFull(true);
  bench.platform.fans.current = Status::ready;
  bench.platform.fans.answer();
  EXPECT_EQ(bench.platform.fans.asked, std::vector<bool>{true});
}

TEST(FanSwitch, AnAnswerForOneThatIsGoneIsDropped) {
  auto bench = std::make_unique<FanBench>();
  bench->fans.setFull(true);
  auto replies = std::move(bench->platform.fans.replies);
  bench.reset();
  for (const auto& reply : replies)
    reply(std::nullopt);
}

TEST(FanSwitch, AMachineWithoutFansAndOneThatCannotBeRead) {
  FanBench none(0);
  EXPECT_TRUE(none.fans.hasNoFans());
  EXPECT_EQ(none.fans.trouble(), "");
  FanBench failing;
  failing.platform.fakeSMC.values.erase("F1Ac");
  failing.platform.loop.advance(FanSwitch::idlePeriod);
  failing.platform.loop.runBackground();
  EXPECT_EQ(failing.fans.trouble(), "Failed to read fan value F1Ac because the key does not exist");
  EXPECT_FALSE(failing.fans.hasNoFans());
}

TEST(FanPanelView, SaysWhoDecides) {
  FanBench bench;
  const auto name = [] { return QString("Fans"); };
  const FanPanelView here({}, bench.fans, name, {});
  EXPECT_TRUE(shows(here, "The desktop decides how fast they turn."));
  const FanPanelView elsewhere({}, bench.fans, name, {}, FanPanelView::Control::ownDock);
  EXPECT_TRUE(shows(elsewhere, "Full speed is switched from Tavrin's own Dock."));
  EXPECT_TRUE(offers(here, "Full speed"));
  EXPECT_FALSE(offers(elsewhere, "Full speed"));
  bench.platform.fans.current = Status::notRegistered;
  EXPECT_TRUE(
      shows(FanPanelView({}, bench.fans, name, {}),
            "The first time, the desktop asks you to allow a helper that runs as administrator. "
            "Only it can change the fans."));
}

} // namespace
} // namespace tavrin::test
