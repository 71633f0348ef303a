#include "TavrinPlatform/Linux/Files/LinuxFolderWatch.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Platform/FolderWatchContract.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using State = FolderListing::State;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class FolderWatchTest : public testing::Test {
protected:
  std::unique_ptr<FolderFollower> follow(const std::vector<fs::path>& folders,
                                         std::size_t limit = 20) {
    FolderRequest request;
    request.folders = folders;
    request.limit = limit;
    request.classify = [](std::string_view name) {
      if (name.ends_with(".part"))
        return FolderEntry::unfinished;
      return name.starts_with('.') ? FolderEntry::ignored : FolderEntry::wanted;
    };
    return follow(request);
  }
  std::unique_ptr<FolderFollower> follow(const FolderRequest& request) {
    return watch.follow(request, [this](const FolderListing& told) {
      listing = told;
      ++tellings;
    });
  }
  bool comesTrue(const std::function<bool()>& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const FolderFile& file : listing.files)
      all.push_back(file.path.filename().native());
    return all;
  }
  State state(std::size_t index = 0) const { return listing.folders.at(index).state; }
  bool shows(std::vector<std::string> expected) {
    std::ranges::sort(expected);
    return comesTrue([&] {
      auto shown = names();
      std::ranges::sort(shown);
      return tellings > 0 && shown == expected;
    });
  }

  QtRunLoop loop;
  LinuxFolderWatch watch{loop};
  TemporaryFolder temporary;
  fs::path folder = temporary / "watched";
  FolderListing listing;
  int tellings = 0;
};

TEST_F(FolderWatchTest, TheNewestAreToldAndFollowed) {
  fs::create_directory(folder);
  for (int i = 0; i < 300; ++i)
    put(folder / ("file" + std::to_string(1000 + i)), "x");
  const auto follower = follow({folder}, 3);
  ASSERT_TRUE(comesTrue([&] { return tellings > 0; }));
  EXPECT_THAT(names(), ElementsAre("file1299", "file1298", "file1297"));
  put(folder / "newest", "12345");
  ASSERT_TRUE(comesTrue([&] { return names().front() == "newest"; }));
  EXPECT_EQ(listing.files.front().size, 5U);
  EXPECT_EQ(listing.files.size(), 3U);
  fs::rename(folder / "newest", folder / "renamed");
  ASSERT_TRUE(comesTrue([&] { return names().front() == "renamed"; }));
  // Removed down to files that had never been listed.
  for (int i = 5; i < 300; ++i)
    fs::remove(folder / ("file" + std::to_string(1000 + i)));
  EXPECT_TRUE(shows({"renamed", "file1004", "file1003"}));
}

TEST_F(FolderWatchTest, UnfinishedFilesAreCountedUntilTheyAreDone) {
  fs::create_directory(folder);
  put(folder / "film.mkv.part", "beginning");
  put(folder / ".hidden", "");
  const auto follower = follow({folder});
  ASSERT_TRUE(comesTrue([&] { return listing.unfinished == 1; }));
  EXPECT_THAT(names(), IsEmpty());
  fs::rename(folder / "film.mkv.part", folder / "film.mkv");
  ASSERT_TRUE(shows({"film.mkv"}));
  EXPECT_EQ(listing.unfinished, 0U);
}

TEST_F(FolderWatchTest, TheFolderComesGoesAndComesAgain) {
  const auto deep = temporary / "a" / "b";
  const auto follower = follow({deep});
  ASSERT_TRUE(comesTrue([&] { return tellings > 0; }));
  EXPECT_EQ(state(), State::missing);
  for (int round = 0; round < 2; ++round) {
    fs::create_directories(deep);
    put(deep / "one", "");
    ASSERT_TRUE(shows({"one"})) << round;
    EXPECT_EQ(state(), State::listed);
    fs::remove_all(temporary / "a");
    ASSERT_TRUE(comesTrue([&] { return state() == State::missing; })) << round;
    EXPECT_THAT(names(), IsEmpty());
  }
  // Something else of that name, and at last the folder moved into its place.
  fs::create_directory(temporary / "a");
  put(deep, "a file");
  fs::create_directory(temporary / "other");
  put(temporary / "other" / "two", "");
  fs::remove(deep);
  fs::rename(temporary / "other", deep);
  EXPECT_TRUE(shows({"two"}));
  fs::rename(deep, temporary / "away");
  EXPECT_TRUE(comesTrue([&] { return state() == State::missing; }));
}

TEST_F(FolderWatchTest, AFolderThatMayNotBeReadIsToldUntilItMay) {
  if (::geteuid() == 0)
    GTEST_SKIP() << "root may read everything";
  fs::create_directory(folder);
  put(folder / "one", "");
  fs::permissions(folder, fs::perms::none);
  const auto follower = follow({folder});
  ASSERT_TRUE(comesTrue([&] { return tellings > 0; }));
  EXPECT_EQ(state(), State::unreadable);
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_TRUE(shows({"one"}));
}

TEST_F(FolderWatchTest, OnlyRegularFilesCountAndNoneIsOpened) {
  fs::create_directory(folder);
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  fs::create_directory(folder / "inner");
  fs::create_symlink("/dev/zero", folder / "device");
  fs::create_symlink(folder / "pipe", folder / "link to the pipe");
  fs::create_symlink("loop", folder / "loop");
  fs::create_symlink("round2", folder / "round1");
  fs::create_symlink("round1", folder / "round2");
  fs::create_symlink("nothing", folder / "nowhere");
  put(temporary / "target", "abc");
  fs::create_symlink(temporary / "target", folder / "link");
  put(folder / "line\nbreak", "");
  put(folder / "\xFF\xFE not a text", "");
  const auto follower = follow({folder});
  ASSERT_TRUE(shows({"link", "line\nbreak", "\xFF\xFE not a text"}));
  // A reader of the pipe would be seen by a writer that does not wait.
  EXPECT_EQ(::open((folder / "pipe").c_str(), O_WRONLY | O_NONBLOCK), -1);
  put(folder / "later", "");
  EXPECT_TRUE(shows({"link", "line\nbreak", "\xFF\xFE not a text", "later"}));
}

TEST_F(FolderWatchTest, LinksInCirclesPipesAndFilesInTheFoldersPlaceAreMissing) {
  fs::create_symlink("circle", temporary / "circle");
  ASSERT_EQ(::mkfifo((temporary / "pipe").c_str(), 0600), 0);
  put(temporary / "file", "");
  const auto follower =
      follow({temporary / "circle", temporary / "pipe", temporary / "file", "/dev/null", "", "x"});
  ASSERT_TRUE(comesTrue([&] { return tellings > 0; }));
  for (const auto& each : listing.folders)
    EXPECT_EQ(each.state, State::missing) << each.path;
}

TEST_F(FolderWatchTest, FoldersTogetherEachFileOnce) {
  fs::create_directories(folder / "inner");
  put(folder / "one", "");
  put(folder / "inner" / "two", "");
  fs::create_symlink(folder, temporary / "alias");
  const auto follower =
      follow({folder, folder, temporary / "alias", folder / "inner", temporary / "gone"});
  ASSERT_TRUE(shows({"one", "two"}));
  put(folder / "inner" / "three", "");
  ASSERT_TRUE(shows({"one", "two", "three"}));
  fs::create_directory(temporary / "gone");
  put(temporary / "gone" / "four", "");
  EXPECT_TRUE(shows({"one", "two", "three", "four"}));
}

TEST_F(FolderWatchTest, AFutureDateCountsOnlyAsFarAsItIsPast) {
  fs::create_directory(folder);
  put(folder / "a forged", "");
  const timespec future[2] = {{4'000'000'000, 0}, {4'000'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "a forged").c_str(), future, 0), 0);
  put(folder / "b old", "");
  const timespec past[2] = {{1'000'000, 0}, {1'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "b old").c_str(), past, 0), 0);
  put(folder / "c now", "");
  FolderRequest request;
  request.folders = {folder};
  request.order = FolderRequest::Order::modification;
  const auto follower = follow(request);
  ASSERT_TRUE(comesTrue([&] { return listing.files.size() == 3; }));
  EXPECT_THAT(names(), ElementsAre("c now", "a forged", "b old"));
  EXPECT_LT(listing.files[1].date, Date::fromUnixSeconds(3'999'999'999));
}

TEST_F(FolderWatchTest, AStormIsToldSeldomAndEndsWithTheTruth) {
  fs::create_directory(folder);
  const auto follower = follow({folder}, 5);
  ASSERT_TRUE(comesTrue([&] { return tellings == 1; }));
  // More than the kernel's queue holds, so that it must overflow unless it is read meanwhile.
  constexpr int count = 20'000;
  QElapsedTimer storm;
  storm.start();
  for (int i = 0; i < count; ++i) {
    const auto file = folder / std::to_string(100'000 + i);
    ::close(::open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    if (i % 2 == 0)
      ::unlink(file.c_str());
  }
  const std::string last = std::to_string(100'000 + count - 1);
  ASSERT_TRUE(comesTrue([&] { return !names().empty() && names().front() == last; }));
  EXPECT_EQ(listing.files.size(), 5U);
  // The first two, and one for each four tenths of a second.
  EXPECT_LE(tellings, 3 + static_cast<int>(storm.elapsed() / 400));
}

TEST_F(FolderWatchTest, NothingIsToldAfterItsEnd) {
  fs::create_directory(folder);
  auto follower = follow({folder});
  ASSERT_TRUE(comesTrue([&] { return tellings == 1; }));
  put(folder / "one", "");
  follower->refresh();
  follower.reset();
  QThread::msleep(250);
  QCoreApplication::processEvents();
  EXPECT_EQ(tellings, 1);
}

} // namespace

namespace test {
namespace {

struct LinuxFolderRig {
  FolderWatch& watch() { return watch_; }
  /// The system tells.
  void changed(const fs::path&) {}
  bool comesTrue(const std::function<bool()>& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }
  QtRunLoop loop_;
  LinuxFolderWatch watch_{loop_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, FolderWatchContract, LinuxFolderRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
