#include "TavrinWidgetsUI/FanSwitch.h"
#include "Tests/Support/FakePlatform.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

using Status = FanHelperClient::Status;

struct Bench {
  explicit Bench(int count = 2) {
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
  Bench bench;
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
  Bench bench;
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

TEST(FanSwitch, ARefusalIsShownUntilTheNextTry) {
  Bench bench;
  bench.fans.setFull(true);
  bench.platform.fans.answer(FanHelperClient::Refusal{"Failed to reach the fan helper"});
  bench.platform.loop.runBackground();
  EXPECT_EQ(bench.fans.trouble(), "Failed to reach the fan helper");
  EXPECT_FALSE(bench.fans.isFull());
  bench.fans.setFull(true);
  EXPECT_EQ(bench.fans.trouble(), "");
}

TEST(FanSwitch, AnUnregisteredHelperIsRegisteredFirst) {
  Bench bench;
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
  auto bench = std::make_unique<Bench>();
  bench->fans.setFull(true);
  auto replies = std::move(bench->platform.fans.replies);
  bench.reset();
  for (const auto& reply : replies)
    reply(std::nullopt);
}

TEST(FanSwitch, AMachineWithoutFansAndOneThatCannotBeRead) {
  Bench none(0);
  EXPECT_TRUE(none.fans.hasNoFans());
  EXPECT_EQ(none.fans.trouble(), "");
  Bench failing;
  failing.platform.fakeSMC.values.erase("F1Ac");
  failing.platform.loop.advance(FanSwitch::idlePeriod);
  failing.platform.loop.runBackground();
  EXPECT_EQ(failing.fans.trouble(), "Failed to read fan value F1Ac because the key does not exist");
  EXPECT_FALSE(failing.fans.hasNoFans());
}

} // namespace
} // namespace tavrin::test
