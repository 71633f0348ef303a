#include "TavrinPlatform/Files/DocumentLock.h"

#include "TavrinPlatform/Files/AtomicFile.h"
#include "Tests/Storage/ChildProcess.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <chrono>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

double secondsFor(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Holds the lock of `document` until it is killed.
std::unique_ptr<ChildProcess> holderOf(const fs::path& document) {
  return std::make_unique<ChildProcess>([document](const ChildProcess::Ready& ready) {
    const DocumentLock lock(document);
    if (lock.isHeld())
      ready();
    while (true)
      ::pause();
  });
}

TEST(DocumentLock, AKilledHolderDelaysNobody) {
  const TemporaryFolder folder;
  const auto file = folder / "a.json";
  auto holder = holderOf(file);
  ASSERT_TRUE(holder->isReady());
  EXPECT_THAT(folder.names(), ElementsAre(".a.json.lock"));
  holder->kill();
  bool isHeld = false;
  const double seconds = secondsFor([&] { isHeld = DocumentLock(file).isHeld(); });
  EXPECT_TRUE(isHeld);
  EXPECT_LT(seconds, DocumentLock::longestWait / 2) << "the dead one was waited for";
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(DocumentLock, WhoeverHoldsItTooLongIsNotWaitedFor) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "real");
  const auto file = folder / "link.json";
  fs::create_symlink("real/a.json", file);
  const auto holder = holderOf(folder / "real/a.json");
  ASSERT_TRUE(holder->isReady());
  const double seconds = secondsFor([&] {
    const DocumentLock lock(file);
    EXPECT_FALSE(lock.isHeld()) << "another name of the document is another lock";
    EXPECT_TRUE(lock.isTaken());
  });
  EXPECT_GT(seconds, DocumentLock::longestWait / 2);
  EXPECT_LT(seconds, 2 * DocumentLock::longestWait);
}

TEST(DocumentLock, GoesOnWithoutWhereThereIsNone) {
  const TemporaryFolder folder;
  fs::create_directory(folder / ".a.json.lock");
  fs::create_symlink("elsewhere", folder / ".b.json.lock");
  for (const auto& file : {folder / "a.json", folder / "b.json", folder / "gone/c.json",
                           fs::path("/proc/self/status"), folder / std::string(300, 'x')}) {
    EXPECT_LT(secondsFor([&] {
                const DocumentLock lock(file);
                EXPECT_FALSE(lock.isHeld() || lock.isTaken()) << file;
              }),
              DocumentLock::longestWait / 2);
  }
  EXPECT_FALSE(fs::exists(folder / "elsewhere"));
}

/// The lock's file goes with each holder, while others wait for it.
TEST(DocumentLock, OneAtATime) {
  constexpr int processes = 6;
  constexpr int rounds = 60;
  const TemporaryFolder folder;
  const auto file = folder / "count";
  put(file, "0");
  std::vector<std::unique_ptr<ChildProcess>> children;
  for (int process = 0; process < processes; ++process)
    children.push_back(std::make_unique<ChildProcess>([&](const auto&) {
      for (int round = 0; round < rounds;) {
        const DocumentLock lock(file);
        if (!lock.isHeld())
          continue;
        const int count = std::stoi(contents(file));
        std::this_thread::yield();
        put(file, std::to_string(count + 1));
        ++round;
      }
    }));
  for (const auto& child : children)
    EXPECT_EQ(child->exitStatus(), 0);
  EXPECT_EQ(contents(file), std::to_string(processes * rounds));
  EXPECT_THAT(folder.names(), ElementsAre("count"));
}

} // namespace
} // namespace tavrin
