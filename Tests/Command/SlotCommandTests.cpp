#include "TavrinHost/Dock/FocusSession.h"
#include "Tests/Command/HostFixture.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SlotCommandTest : public HostTest {
protected:
  SlotCommandTest() {
    platform.files.variables["TAVRIN_BUNDLES"] = folder / "bundles";
    std::filesystem::create_directories(program(1).parent_path());
    std::ofstream(program(1)) << "x";
    platform.running.onLaunch = [this](const auto& launch, int process) {
      for (int slot = 1; slot <= 12; ++slot)
        if (launch.program == program(slot))
          platform.running.owners[identifier(slot)] = process;
    };
  }
  std::filesystem::path program(int slot) const {
    return folder / "bundles" / ("Tavrin Slot " + std::to_string(slot) + ".app") /
           "Contents/MacOS/TavrinSlot";
  }
  static std::string identifier(int slot) {
    return "dev.quellby.Tavrin.Slot" + std::to_string(slot);
  }
};

TEST_F(SlotCommandTest, StartLaunchesOnlyPlacedSlotsThatDoNotRun) {
  run({"widgets", "add", "clock", "A", "--place"});
  run({"widgets", "add", "clock", "B"});
  run({"widgets", "add", "clock", "C", "--place"});
  EXPECT_EQ(run({"start"}), 0) << errors.str();
  ASSERT_EQ(platform.running.launches.size(), 2U);
  EXPECT_EQ(platform.running.launches[1].program, program(2));
  EXPECT_THAT(platform.running.launches[0].arguments, ElementsAre("--background"));
  EXPECT_EQ(run({"start"}), 0);
  EXPECT_EQ(platform.running.launches.size(), 2U);
  EXPECT_EQ(run({"start", "B"}), 3);
  EXPECT_EQ(run({"start", "9"}), 3);
}

TEST_F(SlotCommandTest, StartAndStopFollowWhatDockLayoutsAskFor) {
  SilentContext context(platform);
  const auto follower = folderIdentifier(context, "dev.quellby.Tavrin.Focus");
  const auto launch = platform.running.onLaunch;
  platform.running.onLaunch = [&](const auto& launched, int process) {
    launch(launched, process);
    if (launched.arguments == std::vector<std::string>{"focus"})
      platform.running.owners[follower] = process;
  };
  const auto followers = [&] {
    return std::ranges::count_if(platform.running.launches, [](const auto& launched) {
      return launched.arguments == std::vector<std::string>{"focus"};
    });
  };
  run({"profiles", "create", "Calm", "--empty"});
  run({"widgets", "add", "clock", "A", "--place"});
  EXPECT_EQ(run({"start"}), 0) << errors.str();
  EXPECT_EQ(followers(), 0) << "nothing leads to the layout";
  run({"profiles", "focus", "Calm", "on"});
  EXPECT_EQ(run({"start", "A"}), 0);
  EXPECT_EQ(followers(), 0) << "one slot was asked for";
  EXPECT_EQ(run({"start"}), 0);
  EXPECT_EQ(run({"start"}), 0);
  EXPECT_EQ(followers(), 1);
  EXPECT_EQ(run({"stop", "A"}), 0);
  EXPECT_TRUE(platform.running.programs.contains(platform.running.owners[follower]));
  EXPECT_EQ(run({"stop"}), 0);
  EXPECT_FALSE(platform.running.programs.contains(platform.running.owners[follower]));
  EXPECT_THAT(output.str(), HasSubstr("no longer followed"));
  // Layouts are followed without widgets, and not where it was switched off.
  platform.running.owners.erase(follower);
  run({"widgets", "remove", "A"});
  EXPECT_EQ(run({"start"}), 0) << errors.str();
  EXPECT_EQ(followers(), 2);
  platform.running.owners.erase(follower);
  followingRecord(context).change([](Following& following) { following.isOn = false; });
  EXPECT_EQ(run({"start"}), 3);
  EXPECT_EQ(followers(), 2);
}

TEST_F(SlotCommandTest, PlacingTellsWhatShowsTheWidgetUnlessItsSlotRuns) {
  const auto remark = HasSubstr("`tavrin start` shows it");
  EXPECT_EQ(run({"widgets", "add", "clock", "A"}), 0);
  EXPECT_EQ(errors.str(), "");
  EXPECT_EQ(run({"widgets", "place", "A"}), 0);
  EXPECT_THAT(errors.str(), remark);
  EXPECT_EQ(run({"start"}), 0);
  EXPECT_EQ(run({"widgets", "place", "A"}), 0);
  EXPECT_EQ(errors.str(), "");
  EXPECT_EQ(run({"widgets", "add", "clock", "B", "--place"}), 0);
  EXPECT_THAT(errors.str(), remark);
}

TEST_F(SlotCommandTest, AStarterSetIsNeverMadeUnasked) {
  EXPECT_EQ(run({"start"}), 3);
  EXPECT_FALSE(std::filesystem::exists(widgetsFile()));
  isInteractive = true;
  EXPECT_EQ(run({"start"}, "n\n"), 3);
  EXPECT_FALSE(std::filesystem::exists(widgetsFile()));
  EXPECT_EQ(run({"start"}, "y\n"), 0) << errors.str();
  EXPECT_EQ(platform.running.launches.size(), 6U);
  EXPECT_EQ(run({"start", "--starter"}), 0);
  const auto list = json({"widgets"});
  EXPECT_EQ(list.member("widgets")->array()->size(), 6U);
}

TEST_F(SlotCommandTest, ASlotThatDiesIsReportedWithItsLastWords) {
  run({"widgets", "add", "clock", "A", "--place"});
  platform.running.onLaunch = [&](const auto& launch, int process) {
    std::ofstream(launch.log) << "first\nno display\n";
    platform.running.programs.erase(process);
  };
  EXPECT_EQ(run({"start"}), 1);
  EXPECT_THAT(output.str(), HasSubstr("no display"));
}

/// Of a log that goes back further, only what was said since this start counts.
TEST_F(SlotCommandTest, OldWordsAreNotTakenForNewOnes) {
  run({"widgets", "add", "clock", "A", "--place"});
  platform.running.onLaunch = [&](const auto& launch, int process) {
    if (platform.running.launches.size() == 1)
      std::ofstream(launch.log, std::ios::app) << "no display\n";
    platform.running.programs.erase(process);
  };
  EXPECT_EQ(run({"start"}), 1);
  EXPECT_THAT(output.str(), HasSubstr("no display"));
  EXPECT_EQ(run({"start"}), 1);
  EXPECT_THAT(output.str(),
              testing::AllOf(HasSubstr("said nothing"), testing::Not(HasSubstr("no display"))));
}

TEST_F(SlotCommandTest, WidgetsThatCannotBeReadKeepNothingFromStoppingAndHaveAWayBack) {
  run({"widgets", "add", "clock", "A", "--place"});
  run({"widgets", "add", "clock", "B", "--place"});
  writeFile("{ not json");
  EXPECT_EQ(run({"status"}), 1);
  EXPECT_THAT(errors.str(), HasSubstr("there is no backup of it"));
  std::filesystem::remove(widgetsFile());
  run({"widgets", "add", "clock", "A", "--place"});
  run({"widgets", "add", "clock", "B", "--place"});
  EXPECT_EQ(run({"start"}), 0) << errors.str();
  // A backup of the broken file is no way back.
  writeFile("{ not json");
  platform.time.date = platform.time.date + 60;
  EXPECT_EQ(run({"backups", "create"}), 0) << errors.str();
  const auto launched = platform.running.launches.size();
  std::string way;
  for (const auto& words : std::vector<std::vector<std::string>>{
           {"status"}, {"start"}, {"start", "1"}, {"stop", "A"}, {"restart"}, {"open", "1"}}) {
    EXPECT_EQ(run(words), 1) << words[0];
    const auto text = errors.str();
    const auto begin = text.find("`tavrin backups restore ");
    ASSERT_NE(begin, std::string::npos) << text;
    way = text.substr(begin + 24, text.find('`', begin + 1) - begin - 24);
  }
  EXPECT_TRUE(platform.running.terminations.empty());
  EXPECT_EQ(platform.running.launches.size(), launched);
  EXPECT_EQ(run({"stop", "2"}), 1);
  EXPECT_THAT(platform.running.terminations, ElementsAre(std::pair(102, false)));
  EXPECT_THAT(output.str(), HasSubstr("stopped"));
  EXPECT_EQ(run({"stop"}), 1);
  EXPECT_EQ(platform.running.terminations.back(), std::pair(101, false));
  EXPECT_EQ(fileText(), "{ not json");
  EXPECT_EQ(run({"backups", "restore", way}), 0) << errors.str();
  EXPECT_EQ(run({"start"}), 0) << errors.str();
}

TEST_F(SlotCommandTest, WhatCannotBeStartedAgainIsNotStopped) {
  run({"widgets", "add", "clock", "A", "--place"});
  run({"start"});
  EXPECT_EQ(run({"restart", "7"}), 3);
  platform.files.variables["TAVRIN_BUNDLES"] = "/no/such/folder";
  EXPECT_EQ(run({"restart"}), 1);
  EXPECT_THAT(errors.str(), HasSubstr("in \"/no/such/folder\""));
  EXPECT_TRUE(platform.running.terminations.empty());
  platform.files.variables["TAVRIN_BUNDLES"] = folder / "bundles";
  EXPECT_EQ(run({"restart"}), 0) << errors.str();
  EXPECT_EQ(platform.running.terminations.size(), 1U);
  EXPECT_EQ(platform.running.launches.size(), 2U);
}

TEST_F(SlotCommandTest, ASlotOfAnotherDataFolderOnTheSameBusIsToldAndLeftAlone) {
  run({"widgets", "add", "clock", "A", "--place"});
  platform.running.owners[identifier(1)] = 7;
  platform.running.programs[7] = program(1);
  platform.running.environments[7] = {{"TAVRIN_APP_SUPPORT_DIR", folder / "other"}};
  for (const auto* command : {"start", "open"}) {
    EXPECT_EQ(run({command, "1"}), 1);
    EXPECT_THAT(output.str(), HasSubstr("process 7 shows this slot of another data folder"));
  }
  EXPECT_EQ(run({"stop"}), 0);
  EXPECT_TRUE(platform.running.launches.empty());
  EXPECT_TRUE(platform.running.actions.empty());
  EXPECT_TRUE(platform.running.terminations.empty());
}

TEST_F(SlotCommandTest, ASlotThatDoesNotAnswerIsReportedInBoundedTime) {
  run({"widgets", "add", "clock", "A", "--place"});
  platform.running.onLaunch = nullptr;
  EXPECT_EQ(run({"start"}), 1);
  EXPECT_THAT(output.str(), HasSubstr("did not answer"));
  EXPECT_LT(platform.waited, 20);
}

TEST_F(SlotCommandTest, StopEndsOnlySlotPrograms) {
  run({"widgets", "add", "clock", "A", "--place"});
  run({"start"});
  // Somebody else's program owns the identifier of slot 2.
  platform.running.owners[identifier(2)] = 7;
  platform.running.programs[7] = "/usr/bin/other";
  EXPECT_EQ(run({"stop"}), 0);
  EXPECT_THAT(platform.running.terminations, ElementsAre(std::pair(101, false)));
  EXPECT_EQ(run({"stop"}), 0);
  EXPECT_THAT(output.str(), HasSubstr("Nothing runs"));
}

TEST_F(SlotCommandTest, SlotsOfAnotherDataFolderAreLeftAlone) {
  run({"widgets", "add", "clock", "A", "--place"});
  platform.running.programs[7] = program(1);
  platform.running.environments[7] = {{"TAVRIN_APP_SUPPORT_DIR", folder / "other"}};
  EXPECT_FALSE(*json({"status"}).array()->front().member("isRunning")->boolean());
  EXPECT_EQ(run({"stop"}), 0);
  EXPECT_TRUE(platform.running.terminations.empty());
  EXPECT_EQ(run({"start"}), 0) << errors.str();
  EXPECT_EQ(platform.running.launches.size(), 1U);

  // The same folder, written otherwise; whose slot has no identifier.
  platform.running.owners.clear();
  platform.running.environments[7] = {{"TAVRIN_APP_SUPPORT_DIR", folder / "data/../data/"}};
  platform.running.programs.erase(101);
  EXPECT_EQ(json({"status"}).array()->front().member("process")->integerValue(), 7);
}

TEST_F(SlotCommandTest, WhatRunsIsFoundWhereverNewOnesWouldStartFrom) {
  run({"widgets", "add", "clock", "A", "--place"});
  run({"start"});
  platform.files.variables["TAVRIN_BUNDLES"] = "/no/such/folder";
  EXPECT_EQ(json({"status"}).array()->front().member("process")->integerValue(), 101);
  EXPECT_EQ(run({"stop"}), 0) << errors.str();
  EXPECT_THAT(platform.running.terminations, ElementsAre(std::pair(101, false)));
  EXPECT_EQ(run({"start"}), 1);
  EXPECT_THAT(errors.str() + output.str(), HasSubstr("in \"/no/such/folder\""));
}

TEST_F(SlotCommandTest, AStubbornSlotIsEndedByForce) {
  run({"widgets", "add", "clock", "A", "--place"});
  run({"start"});
  platform.running.stubborn = true;
  EXPECT_EQ(run({"stop"}), 0);
  EXPECT_THAT(platform.running.terminations,
              ElementsAre(std::pair(101, false), std::pair(101, true)));
}

TEST_F(SlotCommandTest, WithoutABusSlotsAreToldByTheirFiles) {
  platform.running.hasBus = false;
  platform.running.onLaunch = nullptr;
  run({"widgets", "add", "clock", "A", "--place"});
  EXPECT_EQ(run({"start"}), 0) << output.str();
  EXPECT_THAT(errors.str(), HasSubstr("There is no session bus: the widgets follow no change"));
  EXPECT_EQ(run({"open", "A"}), 1);
  EXPECT_THAT(output.str(), HasSubstr("cannot be reached without a session bus"));
  const auto status = json({"status"});
  EXPECT_TRUE(*status.array()->front().member("isRunning")->boolean());
  EXPECT_EQ(status.array()->front().member("process")->integerValue(), 101);
}

TEST_F(SlotCommandTest, OpenActivatesARunningSlotAndLaunchesOthersInTheForeground) {
  run({"widgets", "add", "clock", "A", "--place"});
  EXPECT_EQ(run({"open", "A"}), 0) << errors.str();
  EXPECT_TRUE(platform.running.launches.front().arguments.empty());
  EXPECT_TRUE(platform.running.actions.empty()) << "it opens its panel by itself";
  EXPECT_EQ(run({"open", "1"}), 0);
  EXPECT_THAT(output.str(), HasSubstr("panel open"));
  EXPECT_THAT(platform.running.actions, ElementsAre("open " + identifier(1)));
}

} // namespace
} // namespace tavrin::test
