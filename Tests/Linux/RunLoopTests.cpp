#include "TavrinPlatform/Linux/Desktop/CanberraPlayer.h"
#include "TavrinPlatform/Qt/QtProcessRunner.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Linux/Sound/LastingSound.h"
#include "Tests/Platform/SoundPlayerContract.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <limits>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

/// The event loop, its threads and child processes.
namespace tavrin {
namespace {

TEST(QtRunLoop, TimersComeInTimeAndEndWithTheirTokens) {
  QtRunLoop loop;
  QElapsedTimer clock;
  clock.start();
  int ticks = 0;
  int once = 0;
  TokenPtr ticker = loop.repeat(0.02, [&] {
    // The callee drops its own token.
    if (++ticks == 3)
      ticker.reset();
  });
  TokenPtr dropped = loop.after(0.01, [&] { once += 100; });
  dropped.reset();
  TokenPtr later = loop.after(0.15, [&] { ++once; });
  ASSERT_TRUE(untilTrue([&] { return once != 0; }));
  EXPECT_GE(clock.elapsed(), 149);
  EXPECT_EQ(once, 1);
  EXPECT_EQ(ticks, 3);
  // Far off and unbounded delays are no overflow.
  const TokenPtr far = loop.after(1e12, [&] { ++once; });
  const TokenPtr never = loop.after(std::numeric_limits<double>::infinity(), [&] { ++once; });
  QCoreApplication::processEvents();
  EXPECT_EQ(once, 1);
}

TEST(QtRunLoop, AnswersComeOnTheMainThreadToLivingOwners) {
  QtRunLoop loop;
  const auto main = std::this_thread::get_id();
  auto owner = std::make_shared<int>(0);
  auto gone = std::make_shared<int>(0);
  std::thread::id worked;
  std::thread::id answered;
  bool isWrong = false;
  bool isPosted = false;
  loop.background([] {}, gone, [&] { isWrong = true; });
  gone.reset();
  loop.background([&] { worked = std::this_thread::get_id(); }, owner,
                  [&] { answered = std::this_thread::get_id(); });
  std::thread([&] { loop.post([&] { isPosted = std::this_thread::get_id() == main; }); }).join();
  ASSERT_TRUE(untilTrue([&] { return answered != std::thread::id() && isPosted; }));
  EXPECT_EQ(answered, main);
  EXPECT_NE(worked, main);
  EXPECT_FALSE(isWrong);
}

TEST(QtRunLoop, AQueueKeepsItsOrderAndDropsWhatHasNotBegun) {
  QtRunLoop loop;
  std::vector<int> order;
  std::atomic<bool> isOpen = false;
  std::atomic<bool> hasBegun = false;
  std::atomic<int> late = 0;
  {
    auto queue = loop.makeSerialQueue();
    for (int i = 0; i < 50; ++i)
      queue->run([&order, i] { order.push_back(i); });
    queue->run([&] {
      hasBegun = true;
      while (!isOpen)
        std::this_thread::yield();
    });
    queue->run([&] { ++late; });
    ASSERT_TRUE(eventually([&] { return hasBegun.load(); }));
    loop.background([&] { isOpen = true; }, {}, [] {});
  }
  EXPECT_EQ(order.size(), 50U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  EXPECT_EQ(late, 0);
}

TEST(QtRunLoop, EndsItsWorkBeforeWhatThatRefersToGoes) {
  QtRunLoop loop;
  auto service = std::make_unique<std::atomic<int>>(0);
  std::atomic<bool> isOpen = false;
  // More than there are threads: some wait for their turn.
  for (int i = 0; i < 8; ++i)
    loop.background(
        [&service = *service, &isOpen] {
          while (!isOpen)
            std::this_thread::yield();
          ++service;
        },
        {}, [] {});
  std::thread opener([&] { isOpen = true; });
  loop.endWork();
  opener.join();
  EXPECT_EQ(*service, 8);
  service.reset();
  bool isDone = false;
  loop.background([&] { isDone = true; }, {}, [] {});
  loop.makeSerialQueue()->run([&] { isDone = true; });
  loop.endWork();
  EXPECT_FALSE(isDone);
}

TEST(CanberraPlayer, GoesWithoutWaitingForASoundToEnd) {
  QtRunLoop loop;
  QElapsedTimer clock;
  const int before = test::lastingSoundsBegun();
  {
    CanberraPlayer player(loop);
    player.play("Glass");
    player.play("Tink");
    ASSERT_TRUE(eventually([&] { return test::lastingSoundsBegun() == before + 1; }));
    clock.start();
  }
  EXPECT_LT(clock.elapsed(), 5000) << "a sound is waited for ten seconds";
  EXPECT_EQ(test::lastingSoundsBegun(), before + 1) << "what has not begun stays silent";
}

ProcessResult runToEnd(ProcessRequest request) {
  QtProcessRunner runner;
  std::optional<ProcessResult> result;
  const auto token = runner.run(std::move(request), [&](const auto& r) { result = r; });
  EXPECT_TRUE(untilTrue([&] { return result.has_value(); }));
  return result.value_or(ProcessResult());
}

ProcessRequest script(const std::string& text) {
  ProcessRequest request;
  request.program = "/bin/sh";
  request.arguments = {"-c", text};
  return request;
}

TEST(QtProcessRunner, TellsHowAChildEnded) {
  using Outcome = ProcessResult::Outcome;
  auto input = script("cat; echo error >&2; exit 3");
  input.standardInput = std::string(200'000, 'x');
  const auto echoed = runToEnd(input);
  EXPECT_EQ(echoed.outcome, Outcome::exited);
  EXPECT_EQ(echoed.status, 3);
  EXPECT_EQ(echoed.standardOutput, input.standardInput);
  EXPECT_EQ(echoed.standardError, "error\n");

  auto environment = script("echo $VALUE");
  environment.environment["VALUE"] = "of mine";
  EXPECT_EQ(runToEnd(environment).standardOutput, "of mine\n");

  const auto killed = runToEnd(script("kill -9 $$"));
  EXPECT_EQ(killed.outcome, Outcome::signalled);
  EXPECT_EQ(killed.status, SIGKILL);

  ProcessRequest missing;
  missing.program = "/no/such/program";
  EXPECT_EQ(runToEnd(missing).outcome, Outcome::failedToStart);

  auto chatty = script("head -c 100000 /dev/zero; exit 0");
  chatty.outputLimit = 1000;
  const auto bounded = runToEnd(chatty);
  EXPECT_EQ(bounded.standardOutput.size(), 1000U);
  EXPECT_TRUE(bounded.wasTruncated);
  EXPECT_EQ(bounded.outcome, Outcome::exited);
}

TEST(QtProcessRunner, LeavesNoDescriptorAndNoChild) {
  const std::string file = shell("mktemp");
  shell("printf '#!/no/such/shell\\n' > " + file + "; chmod +x " + file);
  ProcessRequest failing[] = {{}, {}, {}, {}};
  failing[0].program = "/no/such/program";
  failing[1].program = "/etc";
  failing[2].program = file;
  failing[3].program = "";
  const auto descriptors = [] {
    return shell("ls /proc/" + std::to_string(getpid()) + "/fd | wc -l");
  };
  runToEnd(script("exit 0"));
  const auto before = descriptors();
  for (int i = 0; i < 10; ++i) {
    for (const auto& request : failing)
      EXPECT_EQ(runToEnd(request).outcome, ProcessResult::Outcome::failedToStart);
    runToEnd(script("echo x; sleep 1 & exit 3"));
  }
  // Of the last ones the toolkit lets go when it is back in its loop.
  const bool isEven = untilTrue([&] {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return descriptors() == before;
  });
  EXPECT_TRUE(isEven) << descriptors() << " where there were " << before;
  shell("rm " + file);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
}

bool isAlive(const std::string& pid) {
  return ::kill(std::stoi(pid), 0) == 0;
}

TEST(QtProcessRunner, ALateChildGoesWithAllItStarted) {
  // One that ignores the polite signal, with a grandchild that holds the pipe open.
  auto stubborn = script("trap '' TERM; sleep 60 & echo $!; while :; do sleep 1; done");
  stubborn.timeLimit = 0.3;
  QElapsedTimer clock;
  clock.start();
  const auto result = runToEnd(stubborn);
  EXPECT_EQ(result.outcome, ProcessResult::Outcome::timedOut);
  EXPECT_LT(clock.elapsed(), 5000);
  ASSERT_FALSE(result.standardOutput.empty());
  EXPECT_TRUE(eventually([&] { return !isAlive(result.standardOutput); }));
}

TEST(QtProcessRunner, ADroppedTokenEndsTheChildAndBringsNoAnswer) {
  QtProcessRunner runner;
  const std::string file = shell("mktemp");
  bool isAnswered = false;
  auto token = runner.run(script("echo $$ > " + file + "; exec sleep 60"),
                          [&](const auto&) { isAnswered = true; });
  ASSERT_TRUE(untilTrue([&] { return !shell("cat " + file).empty(); }));
  const std::string child = shell("cat " + file + "; rm " + file);
  EXPECT_TRUE(isAlive(child));
  token.reset();
  EXPECT_TRUE(untilTrue([&] { return !isAlive(child); }));
  EXPECT_FALSE(isAnswered);
}

} // namespace

namespace test {
namespace {

struct CanberraRig {
  SoundPlayer& player() { return *player_; }
  void end() { player_.reset(); }
  int begun() const { return lastingSoundsBegun() - before_; }
  bool comesTrue(const std::function<bool()>& condition) { return untilTrue(condition); }
  QtRunLoop loop_;
  const int before_ = lastingSoundsBegun();
  std::unique_ptr<CanberraPlayer> player_ = std::make_unique<CanberraPlayer>(loop_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Canberra, SoundPlayerContract, CanberraRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
