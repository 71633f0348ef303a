#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/Linux/Devices/BusFanHelper.h"
#include "TavrinPlatform/Linux/Devices/SysfsFans.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Linux/FanMachine.h"

#include <QCoreApplication>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

/// The root helper on a system bus of its own, over fans in a tree like the kernel's.
namespace tavrin {
namespace {

using Refusal = std::optional<FanHelperClient::Refusal>;

class Helper : public testing::Test {
protected:
  void SetUp() override { allow(true); }
  static void allow(bool isAllowed) {
    shell("gdbus call --system -d org.freedesktop.PolicyKit1 -o "
          "/org/freedesktop/PolicyKit1/Authority -m org.freedesktop.DBus.Mock.SetAllowed \"" +
          std::string(isAllowed ? "['dev.quellby.tavrin.set-fans']" : "@as []") + "\"");
  }
  static void sleep(bool isGoing) {
    shell(std::string("gdbus call --system -d org.freedesktop.login1 -o /org/freedesktop/login1 "
                      "-m org.freedesktop.DBus.Mock.EmitSignal org.freedesktop.login1.Manager "
                      "PrepareForSleep b '[<") +
          (isGoing ? "true" : "false") + ">]'");
  }
  /// Starts the helper; when this returns it answers, or has been killed already.
  void startHelper(const QString& program = FAN_HELPER, const QStringList& arguments = {}) {
    helper_ = std::make_unique<Program>(program, arguments, machine_.environment());
    ASSERT_TRUE(eventually([this] {
      return helper_->hasEnded() ||
             shell("gdbus call --system -d org.freedesktop.DBus -o / -m "
                   "org.freedesktop.DBus.NameHasOwner dev.quellby.tavrin.fan-helper")
                     .find("true") != std::string::npos;
    }));
  }
  struct Caller {
    std::unique_ptr<Bus> bus = Bus::system();
    std::unique_ptr<BusFanHelper> client;
    bool isWaiting = false;
    Refusal answer;
  };
  std::unique_ptr<Caller> makeCaller() {
    auto caller = std::make_unique<Caller>();
    caller->client =
        std::make_unique<BusFanHelper>(loop_, [bus = caller->bus.get()] { return bus; });
    return caller;
  }
  static void ask(Caller& caller, bool isFull) {
    caller.isWaiting = true;
    caller.client->setFull(isFull, [&caller](const Refusal& refusal) {
      caller.answer = refusal;
      caller.isWaiting = false;
    });
  }
  Refusal request(Caller& caller, bool isFull) {
    ask(caller, isFull);
    EXPECT_TRUE(untilTrue([&] { return !caller.isWaiting; }));
    return caller.answer;
  }
  static void polkit(const std::string& call) {
    shell("gdbus call --system -d org.freedesktop.PolicyKit1 -o "
          "/org/freedesktop/PolicyKit1/Authority -m org.freedesktop.DBus.Mock." +
          call);
  }
  static std::string call(const std::string& method) {
    return shell("gdbus call --system -d dev.quellby.tavrin.fan-helper -o "
                 "/dev/quellby/tavrin/FanHelper -m " +
                 method + " 2>&1");
  }

  Machine machine_;
  QtRunLoop loop_;
  std::unique_ptr<Program> helper_;
};

TEST_F(Helper, FullSpeedWhileSomebodyHolds) {
  startHelper();
  auto first = makeCaller();
  auto second = makeCaller();
  EXPECT_EQ(request(*first, true), std::nullopt);
  EXPECT_TRUE(machine_.isFull());
  EXPECT_EQ(request(*second, true), std::nullopt);
  first.reset(); // leaves the bus
  EXPECT_EQ(request(*second, true), std::nullopt);
  EXPECT_TRUE(machine_.isFull());
  second.reset();
  EXPECT_TRUE(untilTrue([&] { return machine_.isAutomatic(); }));
}

TEST_F(Helper, TheClientFindsItOnTheBus) {
  auto caller = makeCaller();
  EXPECT_EQ(caller->client->status(), FanHelperClient::Status::notRegistered);
  startHelper();
  auto later = makeCaller();
  EXPECT_TRUE(untilTrue([&] { return later->client->status() == FanHelperClient::Status::ready; }));
  helper_.reset();
  EXPECT_EQ(request(*later, true)->message, "Failed to reach the fan helper");
}

TEST_F(Helper, WhomPolkitRefusesChangesNothing) {
  startHelper();
  allow(false);
  auto caller = makeCaller();
  EXPECT_EQ(request(*caller, true)->message,
            "Failed to reach the fan controller because the connection was refused (not "
            "authorized)");
  EXPECT_TRUE(machine_.isAutomatic());
  allow(true);
  auto other = makeCaller();
  request(*other, true);
  allow(false);
  EXPECT_NE(request(*caller, false), std::nullopt);
  EXPECT_TRUE(machine_.isFull());
  // Who was let in hands back without being asked again.
  EXPECT_EQ(request(*other, false), std::nullopt);
  EXPECT_TRUE(machine_.isAutomatic());
  EXPECT_NE(request(*other, true), std::nullopt);
}

/// Another user's connections, each with a question that nobody answers; until the pipe closes.
pid_t startStrangers(int count, int& ready) {
  int told[2];
  EXPECT_EQ(::pipe(told), 0);
  const pid_t child = ::fork();
  if (child != 0) {
    ::close(told[1]);
    ready = told[0];
    return child;
  }
  if (::setgid(65534) != 0 || ::setuid(65534) != 0)
    ::_exit(1);
  constexpr const char* name = "dev.quellby.tavrin.fan-helper";
  constexpr const char* path = "/dev/quellby/tavrin/FanHelper";
  for (int i = 0; i < count; ++i) {
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) < 0)
      ::_exit(2);
    sd_bus_call_method_async(bus, nullptr, name, path, "dev.quellby.tavrin.FanHelper", "SetFull",
                             nullptr, nullptr, "b", 1);
    // Answered in turn: the question before it has been taken note of.
    sd_bus_call_method(bus, name, path, "org.freedesktop.DBus.Peer", "Ping", nullptr, nullptr, "");
  }
  if (::write(told[1], "y", 1) == 1)
    ::pause();
  ::_exit(3);
}

TEST_F(Helper, StrangersWithoutAnAnswerStandInNobodysWay) {
  if (::geteuid() != 0)
    GTEST_SKIP() << "another user cannot be tried";
  startHelper();
  auto holder = makeCaller();
  ASSERT_EQ(request(*holder, true), std::nullopt);
  polkit("SimulateHang true");
  int ready = -1;
  const pid_t strangers = startStrangers(70, ready);
  char answer = 0;
  EXPECT_EQ(::read(ready, &answer, 1), 1);
  ::close(ready);
  polkit("SimulateHang false");

  auto later = makeCaller();
  EXPECT_EQ(request(*later, true), std::nullopt) << "another user's question is asked";
  later.reset();
  EXPECT_EQ(request(*holder, false), std::nullopt);
  EXPECT_TRUE(machine_.isAutomatic());
  ::kill(strangers, SIGKILL);
  ::waitpid(strangers, nullptr, 0);
}

TEST_F(Helper, HandingBackOvertakesTheOwnQuestion) {
  startHelper();
  auto holder = makeCaller();
  ASSERT_EQ(request(*holder, true), std::nullopt);
  polkit("SimulateHang true");
  Refusal overtaken;
  bool isAnswered = false;
  holder->client->setFull(true, [&](const Refusal& refusal) {
    overtaken = refusal;
    isAnswered = true;
  });
  EXPECT_EQ(request(*holder, false), std::nullopt);
  EXPECT_TRUE(machine_.isAutomatic());
  EXPECT_TRUE(untilTrue([&] { return isAnswered; }));
  EXPECT_NE(overtaken, std::nullopt);
  polkit("ReleaseHangingCalls");
  polkit("SimulateHang false");
  EXPECT_EQ(request(*holder, false), std::nullopt);
  EXPECT_TRUE(machine_.isAutomatic()) << "what was overtaken is not taken up again";
}

TEST_F(Helper, ASecondOneLeavesTheFirstsFansAlone) {
  startHelper();
  auto caller = makeCaller();
  ASSERT_EQ(request(*caller, true), std::nullopt);
  for (const QStringList& arguments : {QStringList{}, QStringList{"--hand-back"}}) {
    Program second(FAN_HELPER, arguments, machine_.environment());
    EXPECT_TRUE(second.ends());
    EXPECT_NE(second.exitCode(), 0);
    EXPECT_TRUE(machine_.isFull());
  }
  EXPECT_EQ(request(*caller, false), std::nullopt);
  EXPECT_TRUE(machine_.isAutomatic());
}

TEST_F(Helper, KnowsOneMessageAlone) {
  startHelper();
  for (const char* method :
       {"dev.quellby.tavrin.FanHelper.SetFull 1 2",
        "dev.quellby.tavrin.FanHelper.SetFull \"'yes'\"",
        "dev.quellby.tavrin.FanHelper.SetSpeed true", "org.freedesktop.Nothing.SetFull true"})
    EXPECT_NE(call(method).find("rror"), std::string::npos) << method;
  EXPECT_TRUE(machine_.isAutomatic());
}

TEST_F(Helper, SleepHandsBackAndWakingTakesAgain) {
  startHelper();
  auto caller = makeCaller();
  request(*caller, true);
  sleep(true);
  EXPECT_TRUE(untilTrue([&] { return machine_.isAutomatic(); }));
  sleep(false);
  EXPECT_TRUE(untilTrue([&] { return machine_.isFull(); }));
}

TEST_F(Helper, ASignalHandsBack) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    startHelper();
    auto caller = makeCaller();
    request(*caller, true);
    ASSERT_TRUE(machine_.isFull());
    ::kill(static_cast<pid_t>(helper_->id()), signal);
    EXPECT_TRUE(helper_->ends());
    EXPECT_TRUE(machine_.isAutomatic()) << signal;
  }
}

TEST_F(Helper, AKilledHelpersFansAreHandedBackByTheNext) {
  // Killed at a random moment of switching, and restarted; by itself or for handing back alone.
  std::mt19937 random(7);
  for (int round = 0; round < 12; ++round) {
    startHelper();
    auto caller = makeCaller();
    ask(*caller, true);
    const auto delay = std::uniform_int_distribution<>(0, 3000)(random);
    QElapsedTimer timer;
    timer.start();
    while (timer.nsecsElapsed() / 1000 < delay)
      QCoreApplication::processEvents();
    ::kill(static_cast<pid_t>(helper_->id()), SIGKILL);
    EXPECT_TRUE(helper_->ends());
    caller.reset();
    if (round % 2 == 0) {
      startHelper();
    } else {
      Program handBack(FAN_HELPER, {"--hand-back"}, machine_.environment());
      EXPECT_TRUE(handBack.ends());
    }
    EXPECT_TRUE(machine_.isAutomatic()) << round;
    helper_.reset();
  }
}

TEST_F(Helper, KilledAtAnyOfItsWritesTheNextHandsTheFansBack) {
  int kills = 0;
  for (const QString call : {"write", "rename"})
    for (int number = 1;; ++number) {
      ASSERT_TRUE(machine_.isAutomatic());
      // The tracer stands aside: the process is the helper, killed as it enters the call.
      startHelper("/usr/bin/strace",
                  {"-E", "ASAN_OPTIONS=detect_leaks=0", // which cannot be looked for while traced
                   "-D", "-qq", "-o", "/dev/null", "-e", "trace=" + call, "-e",
                   "inject=" + call + ":signal=KILL:when=" + QString::number(number), FAN_HELPER});
      auto caller = makeCaller();
      const bool wasSwitched = !request(*caller, true);
      EXPECT_TRUE(!wasSwitched || machine_.isFull()) << number;
      caller.reset();
      helper_->terminate();
      ASSERT_TRUE(helper_->ends());
      if (helper_->exitedByItself())
        break;
      ++kills;
      if (number % 2 == 0) {
        startHelper();
        helper_.reset();
      } else {
        EXPECT_TRUE(Program(FAN_HELPER, {"--hand-back"}, machine_.environment()).ends());
      }
      EXPECT_TRUE(machine_.isAutomatic()) << call.toStdString() << " " << number;
    }
  std::printf("killed at %d writes\n", kills);
  EXPECT_GE(kills, 15);
}

TEST_F(Helper, AnyOrderOfEventsLeavesNoFanForced) {
  startHelper();
  const int steps =
      qEnvironmentVariableIsSet("FAN_STEPS") ? qEnvironmentVariableIntValue("FAN_STEPS") : 60;
  std::mt19937 random(11);
  std::vector<std::unique_ptr<Caller>> callers(4);
  for (int step = 0; step < steps; ++step) {
    auto& caller = callers[random() % callers.size()];
    switch (random() % 6) {
    case 0:
    case 1:
    case 2:
      if (!caller)
        caller = makeCaller();
      if (!caller->isWaiting)
        ask(*caller, random() % 2 == 0);
      break;
    case 3:
      caller.reset();
      break;
    case 4:
      sleep(true);
      break;
    default:
      sleep(false);
    }
    if (random() % 3 == 0)
      QCoreApplication::processEvents();
  }
  sleep(false);
  for (auto& caller : callers)
    caller.reset();
  EXPECT_TRUE(untilTrue([&] { return machine_.isAutomatic(); }));
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
