#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/FanHelper/FanDaemon.h"
#include "TavrinPlatform/macOS/FanHelper/FanHelperProtocol.h"
#include "Tests/macOS/Fakes/MachineFakes.h"

#include <IOKit/IOMessage.h>
#include <csignal>
#include <cstdlib>
#include <dispatch/dispatch.h>

/// The helper's `main`, under a name of its own.
int fanHelperMain(int count, char** words);

namespace tavrin::test {
namespace {

class MacFanHelperTest : public MacTest {
protected:
  MacFanHelperTest() {
    (void)dispatch_get_main_queue();
    tavrin_snapshot();
    machine = {};
    machine.smc = {{"FNum", {"ui8 ", {1}}},      {"Ftst", {"ui8 ", {0}}},
                   {"F0Ac", {"fpe2", {0x1f, 0x40}}}, {"F0Mn", {"fpe2", {0x12, 0xc0}}},
                   {"F0Mx", {"fpe2", {0x5d, 0xc0}}}, {"F0Tg", {"fpe2", {0, 0}}},
                   {"F0Md", {"ui8 ", {1}}}};
  }
  ~MacFanHelperTest() override {
    EXPECT_EQ(machine.connections, 0);
    machine = {};
  }
  static int run(std::vector<std::string> words) {
    std::vector<char*> pointers;
    for (auto& word : words)
      pointers.push_back(word.data());
    return fanHelperMain(int(pointers.size()), pointers.data());
  }
  bool isForced() const { return machine.smc.at("F0Md").bytes == std::vector<std::uint8_t>{1}; }
  static void tellSleep(std::uint32_t message) {
    machine.power(machine.powerContext, 0, message, reinterpret_cast<void*>(77));
  }
};

TEST_F(MacFanHelperTest, AdmitsNobodyWithoutATeam) {
  const std::string app = "dev.quellby.Tavrin.Slot3";
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"helper"}, {"helper", app}, {"helper", app, ""},
        {"helper", app, "TEAM", "more"}, {"helper", app, "TEAM\" or anchor trusted"},
        {"helper", "a\"b", "TEAM"}})
    EXPECT_EQ(run(words), EXIT_FAILURE) << words.back();
  EXPECT_EQ(called(), Calls{}) << "nobody is listened to";
  EXPECT_TRUE(isForced()) << "nor a fan touched";
}

TEST_F(MacFanHelperTest, ServesItsCallersOverSleepUntilItIsToldToEnd) {
  NSXPCConnection* caller = nil;
  int turns = 0;
  std::string answer = "none";
  machine.loopTurn = [&](double) -> int {
    switch (turns++) {
    case 0: {
      EXPECT_FALSE(isForced()) << "what a former helper left";
      const Calls opening = called();
      EXPECT_EQ(opening.size(), 4U);
      EXPECT_EQ(opening.at(0), "add source") << "of sleep";
      EXPECT_EQ(opening.at(1), "listen as dev.quellby.Tavrin.Slot3.fan-helper");
      EXPECT_NE(opening.at(2).find("AB12CD34EF"), std::string::npos) << opening.at(2);
      EXPECT_EQ(opening.at(3), "activate listener") << "after the requirement on its callers";
      caller = [[NSXPCConnection alloc] initWithMachServiceName:@"caller" options:0];
      EXPECT_TRUE([machine.listener.delegate listener:machine.listener shouldAcceptNewConnection:caller]);
      [(id<TavrinFanHelper>)caller.exportedObject setFull:YES
                                                    reply:^(NSString* refusal) {
                                                      answer = refusal != nil ? refusal.UTF8String : "done";
                                                    }];
      runQueues();
      EXPECT_EQ(answer, "done");
      EXPECT_TRUE(isForced());
      called();
      break;
    }
    case 1:
      tellSleep(kIOMessageCanSystemSleep);
      EXPECT_TRUE(isForced());
      tellSleep(kIOMessageSystemWillSleep);
      EXPECT_FALSE(isForced()) << "before the system may go on";
      EXPECT_EQ(called(), (Calls{"allow 77", "allow 77"}));
      break;
    case 2:
      tellSleep(kIOMessageSystemHasPoweredOn);
      EXPECT_TRUE(isForced());
      EXPECT_EQ(called(), Calls{}) << "this one is no question";
      break;
    default:
      std::raise(SIGTERM);
    }
    return kCFRunLoopRunTimedOut;
  };
  EXPECT_EQ(run({"helper", "dev.quellby.Tavrin.Slot3", "AB12CD34EF"}), EXIT_SUCCESS);
  EXPECT_EQ(turns, 4);
  EXPECT_FALSE(isForced()) << "the fans are the system's again";
  EXPECT_EQ(called(), (Calls{"invalidate listener", "no more of sleep 9", "close 7", "destroy port"}));
  @autoreleasepool {
    [caller invalidate];
    caller = nil;
  }
  runQueues();
  for (const int number : {SIGTERM, SIGINT, SIGHUP})
    std::signal(number, SIG_DFL);
}

} // namespace
} // namespace tavrin::test
