#include "TavrinPlatform/Files/DocumentLock.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinStorage/SharedDocument.h"
#include "Tests/Storage/ChildProcess.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <thread>

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
    EXPECT_FALSE(lock.isContended()) << "one holder that hangs";
  });
  EXPECT_GT(seconds, DocumentLock::longestWait / 2);
  EXPECT_LT(seconds, 2 * DocumentLock::longestWait);
}

/// Never free at the moments at which it is looked for.
TEST(DocumentLock, AmongWritersThatTakeTurnsAChangeIsRefused) {
  const TemporaryFolder folder;
  const auto file = folder / "a.json";
  put(file, "1");
  const fs::path lockFile = folder / ".a.json.lock";
  std::vector<Descriptor> holders;
  const auto take = [&] {
    const fs::path next = folder / "next";
    holders.emplace_back(::open(next.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    ASSERT_EQ(::flock(holders.back().number(), LOCK_EX | LOCK_NB), 0);
    fs::rename(next, lockFile);
  };
  take();
  std::atomic<bool> isOver = false;
  std::thread turns([&] {
    while (!isOver) {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
      take();
    }
  });
  int attempts = 0;
  EXPECT_THROW(changeSharedFile(file, [&](const FileStamp&) { return ++attempts > 0; }), FileError);
  EXPECT_EQ(attempts, 0);
  isOver = true;
  turns.join();
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
