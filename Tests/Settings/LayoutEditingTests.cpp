#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinSettings/Dock/BackupPane.h"
#include "TavrinSettings/Dock/FollowControl.h"
#include "TavrinSettings/Dock/FollowPane.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "Tests/Settings/DockHome.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// One layout of Mail, Notes, a spacer and, right of the divider, Downloads and a link.
class LayoutEditingTest : public test::DockLayoutTest {
protected:
  LayoutEditingTest() {
    dock.apps = {{AppEntry{"/Applications/Mail.app", {}, "Mail", {}}},
                 {AppEntry{"/Applications/Notes.app", {}, "Notes", {}}},
                 {SpacerVariant::standard}};
    dock.others = {{FileEntry{"/home/Downloads", {}, true, {}, {}}},
                   {URLEntry{"https://example.org", {}, {}}}};
  }
  PlacedDockItem at(DockSection section, std::size_t index) const {
    return {section, index, section == DockSection::apps ? dock.apps[index] : dock.others[index]};
  }
  std::string names() const { return test::labelsOf(dock); }

  DockSnapshot dock;
};

TEST_F(LayoutEditingTest, ItemsAreMovedReplacedAndRemovedByWhereTheyStand) {
  movingTo(at(DockSection::apps, 2), {DockSection::apps, 0})(dock);
  EXPECT_EQ(names(), "Spacer Mail Notes | Downloads https://example.org");
  movingTo(at(DockSection::apps, 1), {DockSection::others, 0})(dock);
  EXPECT_EQ(names(), "Spacer Notes | Mail Downloads https://example.org");
  EXPECT_NE(dock.others[0].file(), nullptr) << "as it is read back from that side";
  movingTo(at(DockSection::others, 0), {DockSection::apps, 9})(dock);
  EXPECT_NE(dock.apps.back().app(), nullptr);
  const auto gone = at(DockSection::apps, 0);
  replacingAt(gone, {{SpacerVariant::flex}})(dock);
  EXPECT_EQ(names(), "Flex spacer Notes Mail | Downloads https://example.org");
  replacingAt(at(DockSection::apps, 0), {})(dock);
  EXPECT_EQ(names(), "Notes Mail | Downloads https://example.org");
  // Somebody else was there meanwhile.
  EXPECT_THROW(replacingAt(gone, {})(dock), HostError);
  EXPECT_THROW(movingTo(gone, {DockSection::others, 0})(dock), HostError);
  EXPECT_EQ(names(), "Notes Mail | Downloads https://example.org");
}

TEST_F(LayoutEditingTest, ALookIsSetAndSeenWhereTheItemsAreTheSame) {
  const DockSnapshot before = dock;
  EXPECT_TRUE(showTheSame(before, dock));
  dock.others[0] = withLook(dock.others[0],
                            {.label = std::nullopt,
                             .folder = {FolderOptions::Arrangement::dateAdded,
                                        FolderOptions::Display::folder, FolderOptions::View::fan}});
  dock.apps[1] = withLook(dock.apps[1], {.label = "Ideas", .folder = {}});
  EXPECT_EQ(folderOptions(*dock.others[0].file()).view, FolderOptions::View::fan);
  EXPECT_EQ(dock.others[0].displayName(), "Downloads");
  EXPECT_FALSE(showTheSame(before, dock));
  EXPECT_EQ(differenceWords(before, dock), "changes the look of Ideas and Downloads");
  for (auto* item : {&dock.apps[1], &dock.others[0]})
    *item = withLook(*item, {.label = "", .folder = {}});
  EXPECT_EQ(dock.apps[1].displayName(), "Notes");
  dock.others[0] = before.others[0];
  EXPECT_TRUE(showTheSame(before, dock));
  // Equal spacers are one and the same to the change detector.
  dock.apps.push_back({SpacerVariant::standard});
  EXPECT_FALSE(showTheSame(before, dock));
  EXPECT_EQ(differenceWords(before, dock), "changes the order");
}

TEST_F(LayoutEditingTest, ApplyingWritesNamesTooAndRestartsNothingForWhatIsShown) {
  const auto id = profiles.create();
  const auto kills = platform.dock.process.kills;
  job.apply(*profiles.profile(id));
  loop.runBackground();
  profiles.reload();
  EXPECT_EQ(profiles.file().activeProfileId, id);
  EXPECT_EQ(platform.dock.process.kills, kills) << "the Dock shows it";
  EXPECT_EQ(history.undoTitle(), "Apply Layout");
  profiles.edit(id, "Name", "", [](Profile& profile) {
    profile.items[0] = withLook(profile.items[0], {.label = "Post", .folder = {}});
  });
  job.apply(*profiles.profile(id));
  loop.runBackground();
  EXPECT_EQ(shown(), "Post Notes ");
  EXPECT_EQ(platform.dock.process.kills, kills + 1);
  history.undo();
  loop.runBackground();
  EXPECT_EQ(shown(), "Mail Notes ");
  // Only the mark goes back where nothing was written.
  history.undo();
  history.undo();
  loop.runBackground();
  profiles.reload();
  EXPECT_EQ(profiles.file().activeProfileId, std::nullopt);
}

TEST_F(LayoutEditingTest, ALayoutIsWrittenForADockThatRestartsLater) {
  const auto id = profiles.create();
  show({"/Applications/Mail.app"});
  job.apply(*profiles.profile(id), false);
  loop.runBackground();
  EXPECT_EQ(shown(), "Mail Notes ");
  history.undo();
  loop.runBackground();
  EXPECT_EQ(shown(), "Mail ");
  EXPECT_EQ(platform.dock.process.kills, 0);
}

TEST_F(LayoutEditingTest, LayoutsGoIntoDockFilesAndComeFromThemAndAllAreExportedAtOnce) {
  const auto id = profiles.create();
  const auto file = folder / "Other.plist";
  dockPlistWriter(file).write(dock);
  const auto other = profiles.importFrom(file);
  ASSERT_TRUE(other);
  EXPECT_EQ(profiles.profile(*other)->name, "Other");
  EXPECT_THAT(profiles.profile(*other)->others, SizeIs(2));
  profiles.exportTo(file, id);
  EXPECT_THAT(dockPlistReader(file).read({}).others, IsEmpty());
  profiles.exportTo(folder / "all.json", std::nullopt);
  EXPECT_THAT(profiles.library().importProfiles(*readFile(folder / "all.json"), "all"), SizeIs(2));
  EXPECT_THROW(profiles.importFrom(folder / "gone.plist"), DockError);
}

TEST_F(LayoutEditingTest, WhatABackupHoldsIsSaid) {
  ASSERT_EQ(run({"widgets", "add", "clock", "Tea"}), 0);
  profiles.create();
  ASSERT_EQ(run({"backups", "create"}), 0);
  const auto store = workspaceBackups(context);
  EXPECT_EQ(workspaceContents(store.contents(store.list().front())),
            "Widgets: Tea. Dock layouts: Layout.");
  EXPECT_EQ(workspaceContents({}), "Widgets: none. Dock layouts: none.");
}

class FollowTest : public test::DockLayoutTest {
protected:
  std::size_t launches() const { return platform.running.launches.size(); }
  FollowControl following{context, history};
};

TEST_F(FollowTest, ALayoutWithAShortcutOrAFocusIsFollowedByItselfAndOnce) {
  const auto id = profiles.create();
  following.keepUp();
  EXPECT_EQ(launches(), 0U);
  profiles.edit(id, "Focus", "", [](Profile& profile) { profile.focusModeBinding = "on"; });
  following.keepUp();
  following.keepUp();
  EXPECT_EQ(launches(), 1U) << "also before its identifier is known";
  EXPECT_THAT(platform.running.launches.front().arguments, ElementsAre("focus"));
  EXPECT_TRUE(following.isFollowed());
  platform.running.programs.clear();
  EXPECT_FALSE(following.isFollowed()) << "it ended";
}

TEST_F(FollowTest, SwitchedOffNothingFollowsAndEachChangeIsAStep) {
  platform.running.onLaunch = [this](const auto&, int process) {
    platform.running.owners[folderIdentifier(context, "dev.quellby.Tavrin.Focus")] = process;
  };
  const auto id = profiles.create();
  profiles.edit(id, "Focus", "", [](Profile& profile) { profile.focusModeBinding = "off"; });
  following.set("Stop", "", [](Following& record) { record.isOn = false; });
  EXPECT_EQ(launches(), 0U);
  EXPECT_EQ(run({"start"}), 3) << "no widget, and nothing is followed";
  following.follow();
  EXPECT_EQ(launches(), 1U);
  EXPECT_EQ(following.following().isOn, true);
  history.undo();
  EXPECT_EQ(following.following().isOn, false);
  EXPECT_THAT(platform.running.terminations, SizeIs(1));
  for (const int seconds : {5, 6, 7})
    following.set("Interval", "interval", [&](Following& record) { record.interval = seconds; });
  history.undo();
  EXPECT_EQ(following.following().interval, 2) << "one step";
  // Another one's change stays.
  following.set("Numbers", "", [](Following& record) { record.numbered = {}; });
  auto record = followingRecord(context);
  record.change([](Following& other) { other.interval = 9; });
  EXPECT_THAT(history.undo(), ElementsAre(HasSubstr("was changed elsewhere")));
  EXPECT_EQ(following.following().interval, 9);
}

TEST_F(FollowTest, NumbersAreShownAsTheirKeys) {
  EXPECT_EQ(numberedTitle({}), "None");
  EXPECT_EQ(numberedTitle(WorkspaceHotkeys::defaultModifiers), "Ctrl+Alt+1 to Ctrl+Alt+9");
}

} // namespace
} // namespace tavrin
