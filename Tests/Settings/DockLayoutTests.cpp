#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinHost/Dock/FocusSession.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinSettings/Computer/ComputerPage.h"
#include "TavrinSettings/Dock/BackupPane.h"
#include "Tests/Settings/DockHome.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

using test::DockLayoutTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(DockLayoutTest, LayoutsAreMadeChangedAndSteppedBackThrough) {
  const auto first = profiles.create();
  EXPECT_EQ(profiles.profile(first)->name, "Layout");
  EXPECT_THAT(profiles.profile(first)->items, SizeIs(2));
  for (const char* name : {"W", "Wo", "Work"})
    profiles.edit(first, "Rename", "name", [&](Profile& profile) { profile.name = name; });
  profiles.edit(first, "Focus", "", [](Profile& profile) { profile.focusModeBinding = "on"; });
  const auto copy = profiles.duplicate(first);
  EXPECT_EQ(profiles.profile(copy)->name, "Work 2");
  EXPECT_EQ(profiles.profile(copy)->focusModeBinding, std::nullopt) << "a Focus is one layout's";
  profiles.remove(first);
  // Somebody else meanwhile.
  ASSERT_EQ(run({"profiles", "rename", "Work 2", "Other"}), 0) << errors.str();
  profiles.reload();

  EXPECT_THAT(history.undo(), IsEmpty());
  EXPECT_EQ(profiles.profile(first)->focusModeBinding, "on");
  EXPECT_THAT(history.undo(), ElementsAre(HasSubstr("\"Other\" was changed elsewhere")));
  EXPECT_TRUE(profiles.profile(copy));
  history.undo();
  EXPECT_EQ(profiles.profile(first)->focusModeBinding, std::nullopt);
  history.undo();
  EXPECT_EQ(profiles.profile(first)->name, "Layout") << "letters of one name are one step";
  history.undo();
  EXPECT_FALSE(profiles.profile(first));
}

TEST_F(DockLayoutTest, LayoutsGoToAFileAndComeFromOne) {
  const auto first = profiles.create();
  const auto file = folder / "Layout.json";
  profiles.exportTo(file, first);
  const auto again = profiles.importFrom(file);
  ASSERT_TRUE(again);
  EXPECT_NE(*again, first) << "beside the one there is";
  EXPECT_EQ(profiles.profile(*again)->items, profiles.profile(first)->items);
  history.undo();
  EXPECT_FALSE(profiles.profile(*again));
  writeFileAtomically(file, "{\"no\": \"profiles\"}");
  EXPECT_THROW(profiles.importFrom(file), FileError);
  EXPECT_THROW(profiles.importFrom(folder / "gone.json"), FileError);
  EXPECT_THAT(profiles.file().profiles, SizeIs(1));
}

TEST_F(DockLayoutTest, ApplyingGoesThereAndUndoComesBackWithTheActiveProfile) {
  const auto home = profiles.create();
  profiles.library().profiles().setActive(home);
  show({"/Applications/Mail.app"});
  const auto calm = profiles.create();
  show({"/Applications/Mail.app", "/Applications/Notes.app"});

  job.apply(*profiles.profile(calm));
  EXPECT_THROW(job.apply(*profiles.profile(home)), HostError) << "one at a time";
  loop.runBackground();
  EXPECT_EQ(shown(), "Mail ");
  EXPECT_THAT(said, ElementsAre("The Dock restarts…", "“Layout 2” is in the Dock."));
  profiles.reload();
  EXPECT_EQ(profiles.file().activeProfileId, calm);
  EXPECT_EQ(history.undoTitle(), "Apply Layout 2");

  history.undo();
  loop.runBackground();
  profiles.reload();
  EXPECT_EQ(shown(), "Mail Notes ");
  EXPECT_EQ(profiles.file().activeProfileId, home);
  history.redo();
  loop.runBackground();
  EXPECT_EQ(shown(), "Mail ");
}

TEST_F(DockLayoutTest, WhatWasNotWrittenAndWhatFailedIsSaidAndIsNoStep) {
  const auto same = profiles.create();
  profiles.library().profiles().setActive(same);
  const auto before = history.undoTitle();
  job.apply(*profiles.profile(same));
  loop.runBackground();
  EXPECT_THAT(said.back(), HasSubstr("Nothing was written"));

  show({"/Applications/Mail.app"});
  platform.dock.process.isThere = false;
  job.apply(*profiles.profile(same));
  loop.runBackground();
  EXPECT_EQ(said.back(), "! Failed to reload dock because killall exited with 1: Dock: no process "
                         "found.");
  EXPECT_FALSE(job.isRunning());
  EXPECT_EQ(history.undoTitle(), before);
}

TEST_F(DockLayoutTest, WithoutADockALayoutIsWrittenAndNothingIsEnded) {
  platform.dock.process.runs = platform.dock.process.isThere = false;
  const auto both = profiles.create();
  show({"/Applications/Mail.app"});
  EXPECT_FALSE(job.hasDock());
  job.apply(*profiles.profile(both));
  loop.runBackground();
  EXPECT_EQ(shown(), "Mail Notes ");
  EXPECT_EQ(platform.dock.process.kills, 0);
  EXPECT_EQ(said.back(), "“Layout” is written, for a Dock that starts.");
  EXPECT_TRUE(history.undoTellsItself()) << "it is not over when the call returns";
  history.undo();
  loop.runBackground();
  EXPECT_EQ(shown(), "Mail ");
  EXPECT_EQ(said.back(), "Undone: Apply Layout.");
  EXPECT_EQ(stages.back(), DockJob::Stage::stepped) << "no undo of it is offered";
}

TEST_F(DockLayoutTest, WhatFollowsShortcutsAndFocusIsStartedAndKnown) {
  EXPECT_FALSE(isFollowed(context));
  startFollowing(context);
  EXPECT_EQ(platform.running.launches.back().program, "/opt/tavrin/bin/tavrin");
  EXPECT_THAT(platform.running.launches.back().arguments, ElementsAre("focus"));
  EXPECT_TRUE(claimFollowing(context));
  EXPECT_TRUE(isFollowed(context));
  EXPECT_FALSE(claimFollowing(context));
}

TEST_F(DockLayoutTest, AnEmptyOneIsMadeToBeFilled) {
  const auto id = profiles.create(true);
  EXPECT_THAT(profiles.profile(id)->items, IsEmpty());
  EXPECT_THAT(history.undo(), IsEmpty());
  EXPECT_FALSE(profiles.profile(id));
}

TEST_F(DockLayoutTest, AShortcutIsOneLayouts) {
  const auto first = profiles.create();
  const Hotkey keys = hotkeyFromText("ctrl+alt+1");
  profiles.edit(first, "Shortcut", "", [&](Profile& profile) { profile.hotkey = keys; });
  const auto file = folder / "Layout.json";
  profiles.exportTo(file, first);
  const auto again = profiles.importFrom(file);
  ASSERT_TRUE(again);
  EXPECT_EQ(profiles.profile(*again)->hotkey, std::nullopt);
  EXPECT_EQ(profiles.profile(first)->hotkey, keys);
  EXPECT_THROW(profiles.library().requireFree(keys, *again), HostError);
  profiles.library().requireFree(keys, first);
  // The command judges the same.
  const auto name = profiles.profile(*again)->name;
  EXPECT_NE(run({"profiles", "hotkey", name, "ctrl+alt+1"}), 0);
  EXPECT_THAT(errors.str(), HasSubstr("is the shortcut of \"Layout\""));
  profiles.remove(first);
  EXPECT_TRUE(profiles.profile(*profiles.importFrom(file))->hotkey) << "it is free";
}

// Shortcuts by number go by the order.
TEST_F(DockLayoutTest, ALayoutThatComesBackStandsWhereItStood) {
  const auto names = [&] {
    std::string all;
    for (const auto& profile : profiles.file().profiles)
      all += profile.name + " ";
    return all;
  };
  const auto first = profiles.createFrom({}, "A");
  const auto second = profiles.createFrom({}, "B");
  const auto third = profiles.createFrom({}, "C");
  profiles.remove(first);
  profiles.remove(second);
  history.undo();
  EXPECT_EQ(names(), "B C ");
  history.undo();
  EXPECT_EQ(names(), "A B C ");
  // Another one has gone meanwhile, and one has come.
  profiles.remove(third);
  ASSERT_EQ(run({"profiles", "delete", "B"}), 0) << errors.str();
  ASSERT_EQ(run({"profiles", "create", "D"}), 0) << errors.str();
  profiles.reload();
  history.undo();
  EXPECT_EQ(names(), "A C D ");
}

TEST_F(DockLayoutTest, DifferencesAreWords) {
  const auto snapshot = [](std::initializer_list<const char*> names) {
    DockSnapshot dock;
    for (const auto* name : names)
      dock.apps.push_back({AppEntry{std::string("/") + name, {}, name, {}}});
    return dock;
  };
  const auto words = [&](auto before, auto after) {
    return differenceWords(snapshot(before), snapshot(after));
  };
  using Names = std::initializer_list<const char*>;
  EXPECT_EQ(words(Names{"A", "B"}, Names{"A", "B"}), "changes nothing");
  EXPECT_EQ(words(Names{"A", "B"}, Names{"B", "A", "C", "D"}),
            "adds C and D and changes the order");
  EXPECT_EQ(words(Names{"A"}, Names{}), "removes A");

  WidgetsFile now;
  now.widgets = {DockWidget(UUID::random(), "A", 1, ClockSettings(), 1)};
  EXPECT_EQ(workspaceDifference({{}, now}, now, {}), "nothing differs from now");
  EXPECT_EQ(workspaceDifference({}, now, {}), "1 widget differs from now");
  ProfilesFile profilesNow;
  profilesNow.profiles.resize(2);
  profilesNow.profiles[0].id = UUID::random();
  profilesNow.profiles[1].id = UUID::random();
  EXPECT_EQ(workspaceDifference({}, now, profilesNow), "1 widget and 2 layouts differ from now");
}

TEST(ComputerReportTest, SaysWhatIsMissingAndWhatToDo) {
  using State = DesktopReport::State;
  DesktopReport report{{{"bus", State::good, "There is a session bus."}}};
  EXPECT_EQ(reportSummary(report), "Everything that widgets use is here.");
  EXPECT_EQ(reportRemedies(report), "");
  report.items.push_back({"keyring", State::missing, "No keyring.", "Install one.", {"clipboard"}});
  report.items.push_back({"tray", State::limited, "No tray.", "", {}});
  report.items.push_back({"gh", State::missing, "No gh.", "Install gh.", {"github"}});
  EXPECT_EQ(reportSummary(report), "2 things are missing and 1 is limited.");
  EXPECT_EQ(reportRemedies(report), "1. Install one.\n2. Install gh.");
}

} // namespace
} // namespace tavrin
