#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/Files/MacFolderWatch.h"
#include "Tests/Storage/TemporaryFolder.h"

#import <CoreServices/CoreServices.h>

namespace tavrin::test {
namespace {

namespace fs = std::filesystem;

class MacFoldersTest : public MacTest {
protected:
  std::unique_ptr<FolderFollower> follow(std::vector<fs::path> folders) {
    return watch_.follow({.folders = std::move(folders)}, [this](const FolderListing& told) {
      std::string text;
      for (const auto& file : told.files)
        text += file.path.filename().string() + " ";
      tellings_.push_back(text);
    });
  }
  /// What was told once all had its turn.
  Calls told() {
    runQueues();
    runLoop_.runPosts();
    return std::exchange(tellings_, {});
  }

  TemporaryFolder folder_;
  MacFolderWatch watch_{runLoop_};
  Calls tellings_;
};

TEST_F(MacFoldersTest, OneStreamOfAllFoldersTellsEachFile) {
  const auto other = folder_ / "other";
  fs::create_directory(other);
  const auto follower = follow({folder_.path(), other});
  EXPECT_EQ(told(), Calls{""});
  EXPECT_EQ(called(), (Calls{"queue dev.quellby.tavrin.folders serial",
                             "stream of 2 each 500 ms flags 20"}));
  put(folder_ / "a", "");
  put(folder_ / "b", "");
  changeFile(folder_ / "a");
  EXPECT_EQ(told(), Calls{"a "}) << "only what is told is looked at";
  changeFile(folder_ / "a");
  EXPECT_EQ(told(), Calls{}) << "nothing is other";
  changeFile(other / "deep" / "c");
  EXPECT_EQ(told(), Calls{});
  EXPECT_EQ(called(), Calls{});
  // The system has lost track.
  changeFile(folder_.path().string(), kFSEventStreamEventFlagMustScanSubDirs);
  EXPECT_EQ(told().size(), 1U);
  EXPECT_EQ(kernel.streams, 1);
}

TEST_F(MacFoldersTest, WhereNobodyTellsItLooksEveryFewSeconds) {
  for (const bool hasStream : {false, true}) {
    kernel.canStream = hasStream;
    kernel.canStart = false;
    const auto follower = follow({folder_.path()});
    told();
    runLoop_.advance(5);
    EXPECT_EQ(told(), Calls{});
    put(folder_ / (hasStream ? "b" : "a"), "");
    runLoop_.advance(5);
    EXPECT_EQ(told().size(), 1U);
  }
  EXPECT_EQ(runLoop_.activeTimers(), 0U);
}

TEST_F(MacFoldersTest, EventsUnderWayOutliveNobody) {
  auto follower = follow({folder_.path()});
  told();
  put(folder_ / "a", "");
  changeFile(folder_ / "a");
  follower->refresh();
  follower.reset();
  EXPECT_EQ(told(), Calls{});
  EXPECT_TRUE(kernel.waiting.empty());
}

} // namespace
} // namespace tavrin::test
