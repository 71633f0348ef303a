#include "TavrinCore/Kinds/Files/FilesSettings.h"
#include "TavrinWidgetsUI/Files/FileRoll.h"
#include "TavrinWidgetsUI/Files/ScreenshotRoll.h"
#include "TavrinWidgetsUI/Files/ShelfModel.h"
#include "Tests/Support/FakeFolderWatch.h"
#include "Tests/Support/ManualRunLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = FolderListing::State;

class FolderRollTest : public testing::Test {
protected:
  const FolderRequest& request() const { return watch.followers.back().request; }
  FolderEntry classify(const char* name) const { return request().classify(name); }
  static FolderFile file(const char* path, double date, std::uint64_t size = 1) {
    return {path, {date}, size, false};
  }

  test::ManualClock clock{{1000}};
  test::ManualRunLoop loop{clock};
  test::FakeFolderWatch watch;
  test::FakeUserFiles user;
  int changes = 0;
};

class FileRollTest : public FolderRollTest {
protected:
  FileRollTest() {
    roll.onChange = [this] { ++changes; };
  }
  void set(const FilesSettings& settings) {
    roll.setSettings(settings);
    loop.runBackground();
  }
  FileRoll roll{watch, user, loop};
};

TEST_F(FileRollTest, FollowsDownloadsUnlessFoldersAreChosen) {
  set({});
  EXPECT_THAT(request().folders, ElementsAre("/home/user/Downloads"));
  EXPECT_EQ(request().limit, 21U) << "one more tells whether there are more";
  set({{"~/Desktop", "/data", "file:///odd%FF", "nonsense"}, 5, true, std::nullopt});
  EXPECT_THAT(request().folders,
              ElementsAre("/home/user/Desktop", "/data", "/odd\xFF", "nonsense"));
  EXPECT_EQ(request().limit, 6U);
  EXPECT_EQ(watch.followers.size(), 1U);
}

TEST_F(FileRollTest, SettingsOfAnyNonsenseAreBounded) {
  const std::pair<int, std::size_t> limits[] = {
      {0, 1}, {-5, 1}, {101, 100}, {2'000'000'000, 100}, {7, 7}};
  for (const auto& [limit, expected] : limits) {
    set({{}, limit, true, std::nullopt});
    EXPECT_EQ(request().limit, expected + 1);
  }
  set({std::vector<std::string>(500, "/x"), 1, true, std::nullopt});
  EXPECT_LE(request().folders.size(), 32U);
}

TEST_F(FileRollTest, OnlyFoldersAndLimitMakeItLookAnew) {
  set({});
  const auto* before = &watch.followers.back();
  set({{}, 20, false, Date{5}});
  EXPECT_EQ(&watch.followers.back(), before);
  EXPECT_EQ(before->refreshes, 0);
  roll.refresh();
  loop.runBackground();
  EXPECT_EQ(before->refreshes, 1);
}

TEST_F(FileRollTest, WhatIsWantedByItsName) {
  set({});
  const std::pair<const char*, FolderEntry> cases[] = {{"a.zip", FolderEntry::wanted},
                                                       {"a.zip.part", FolderEntry::unfinished},
                                                       {"a.crdownload", FolderEntry::unfinished},
                                                       {".hidden", FolderEntry::ignored},
                                                       {"backup~", FolderEntry::ignored},
                                                       {"a.part2", FolderEntry::wanted}};
  for (const auto& [name, expected] : cases)
    EXPECT_EQ(classify(name), expected) << name;
}

TEST_F(FileRollTest, AnEmptyFileIsAPlaceKeptWhileADownloadGoesOn) {
  set({});
  EXPECT_FALSE(roll.isKnown());
  const FolderListing listing{{{"/d", State::listed}}, {file("/d/a", 9, 0), file("/d/b", 8)}, 1};
  watch.tell(listing);
  EXPECT_THAT(roll.files(), ElementsAre(file("/d/b", 8)));
  auto done = listing;
  done.unfinished = 0;
  watch.tell(done);
  EXPECT_EQ(roll.files().size(), 2U);
  EXPECT_EQ(changes, 2);
}

TEST_F(FileRollTest, MarksLastUntilThePanelWasLookedAt) {
  set({{}, 20, true, Date{100}});
  watch.tell({{{"/d", State::listed}}, {file("/d/new", 150), file("/d/old", 100)}, 0});
  EXPECT_EQ(roll.unseenCount(), 1U);
  roll.holdMarks();
  set(roll.seen({120}));
  // The file is dated after the clock, as files of the same moment are.
  EXPECT_EQ(roll.unseenCount(), 0U);
  EXPECT_TRUE(roll.isMarked(roll.files().front()));
  EXPECT_FALSE(roll.isMarked(roll.files().back()));
  watch.tell({{{"/d", State::listed}}, {file("/d/newer", 200), file("/d/new", 150)}, 0});
  EXPECT_EQ(roll.unseenCount(), 1U);
  EXPECT_TRUE(roll.isMarked(roll.files().back()));
  roll.releaseMarks();
  EXPECT_FALSE(roll.isMarked(roll.files().back()));
  set({{}, 20, false, std::nullopt});
  EXPECT_EQ(roll.unseenCount(), 0U);
  set({{}, 20, true, std::nullopt});
  EXPECT_EQ(roll.unseenCount(), 2U);
}

TEST_F(FileRollTest, MoreUnseenOnesThanAreListedAreKnownOf) {
  set({{}, 2, true, Date{100}});
  const auto tell = [&](std::vector<FolderFile> files) {
    watch.tell({{{"/d", State::listed}}, std::move(files), 0});
  };
  tell({file("/d/a", 150), file("/d/b", 140)});
  EXPECT_EQ(roll.unseenCount(), 2U);
  EXPECT_FALSE(roll.hasMoreUnseen()) << "exactly as many as are listed";
  tell({file("/d/a", 150), file("/d/b", 140), file("/d/c", 130)});
  EXPECT_EQ(roll.files().size(), 2U);
  EXPECT_EQ(roll.unseenCount(), 2U);
  EXPECT_TRUE(roll.hasMoreUnseen());
  tell({file("/d/a", 150), file("/d/b", 140), file("/d/c", 90)});
  EXPECT_FALSE(roll.hasMoreUnseen());
}

TEST_F(FileRollTest, TroubleIsToldOnlyWhereNoFolderCanBeListed) {
  set({});
  EXPECT_EQ(roll.trouble(), nullptr);
  watch.tell({{{"/a", State::missing}, {"/b", State::listed}}, {}, 0});
  EXPECT_EQ(roll.trouble(), nullptr);
  watch.tell({{{"/a", State::missing}, {"/b", State::unreadable}}, {}, 0});
  ASSERT_NE(roll.trouble(), nullptr);
  EXPECT_EQ(roll.trouble()->path, "/a");
}

TEST_F(FolderRollTest, ScreenshotsArePicturesOfTheDesktopsFolder) {
  ScreenshotRoll roll(watch, user, loop);
  roll.setSettings({});
  loop.runBackground();
  EXPECT_THAT(request().folders, ElementsAre("/home/user/Pictures/Screenshots"));
  EXPECT_EQ(request().order, FolderRequest::Order::modification);
  EXPECT_EQ(classify("a.png"), FolderEntry::wanted);
  EXPECT_EQ(classify(".a.png"), FolderEntry::ignored);
  EXPECT_EQ(classify("a.mp4"), FolderEntry::ignored);
  EXPECT_EQ(classify("a.png.part"), FolderEntry::ignored);
  roll.setSettings({"~/Shots", 3});
  loop.runBackground();
  EXPECT_THAT(request().folders, ElementsAre("/home/user/Shots"));
  roll.setSettings({"", -1});
  loop.runBackground();
  EXPECT_THAT(request().folders, ElementsAre("/home/user/Pictures/Screenshots"));
  EXPECT_EQ(request().limit, 1U);
}

TEST_F(FolderRollTest, AnOvertakenSearchIsForgotten) {
  ScreenshotRoll roll(watch, user, loop);
  roll.setSettings({"/one", 5});
  roll.setSettings({"/two", 5});
  loop.runBackground();
  ASSERT_EQ(watch.followers.size(), 1U);
  EXPECT_THAT(request().folders, ElementsAre("/two"));
}

TEST_F(FolderRollTest, TheShelfFollowsItsFilesByTheirFolders) {
  ShelfModel model(watch, loop);
  model.onChange = [this] { ++changes; };
  model.setSettings({{"/a/one", "/b/two", "/a/three"}});
  loop.runBackground();
  EXPECT_THAT(request().folders, ElementsAre("/a", "/b"));
  EXPECT_TRUE(request().includesFolders);
  EXPECT_EQ(classify("one"), FolderEntry::wanted);
  EXPECT_EQ(classify("four"), FolderEntry::ignored);
  EXPECT_EQ(model.missingCount(), 0U) << "not known yet";
  // A file of the same name in the other folder is another one.
  watch.tell({{}, {file("/a/one", 1), file("/b/one", 2)}, 0});
  EXPECT_EQ(model.missingCount(), 2U);
  EXPECT_FALSE(model.items()[0].isMissing);
  EXPECT_TRUE(model.items()[1].isMissing);
  watch.tell({{}, {file("/a/one", 1), file("/b/two", 2), file("/a/three", 3)}, 0});
  EXPECT_EQ(model.missingCount(), 0U);
  // What is known stays known while the new one is looked for.
  model.setSettings({{"/c/new", "/a/one"}});
  EXPECT_TRUE(model.items()[1].file.has_value());
  EXPECT_FALSE(model.items()[0].isMissing);
  loop.runBackground();
  EXPECT_THAT(request().folders, ElementsAre("/a", "/c"));
  EXPECT_EQ(changes, 2);
}

TEST_F(FolderRollTest, AnEmptyShelfLooksForNoFolders) {
  ShelfModel model(watch, loop);
  model.setSettings({});
  model.refresh();
  loop.runBackground();
  EXPECT_THAT(watch.followers, IsEmpty());
}

} // namespace
} // namespace tavrin
