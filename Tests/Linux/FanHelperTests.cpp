#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/Linux/Devices/BusFanHelper.h"
#include "TavrinPlatform/Linux/Devices/SysfsFans.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Storage/TemporaryFolder.h"

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

namespace fs = std::filesystem;
using Refusal = std::optional<FanHelperClient::Refusal>;

bool untilTrue(const std::function<bool()>& condition) {
  return eventually([&] {
    QCoreApplication::processEvents();
    return condition();
  });
}

/// applesmc with two fans, and a board whose driver steers in its own way (mode 5).
struct Machine {
  Machine() {
    for (int fan = 1; fan <= 2; ++fan) {
      const std::string stem = "hwmon0/device/fan" + std::to_string(fan);
      for (const auto& [suffix, value] : {std::pair{"_input", 2000},
                                          {"_min", 1200},
                                          {"_max", 6200},
                                          {"_manual", 0},
                                          {"_output", 2000}})
        set(stem + suffix, value);
    }
    set("hwmon1/fan1_input", 900);
    set("hwmon1/pwm1", 90);
    set("hwmon1/pwm1_enable", 5);
    set("hwmon1/fan2_input", 700); // without a way to steer it
  }
  void set(const std::string& file, long value) const {
    const fs::path path = folder.path() / "sys/class/hwmon" / file;
    fs::create_directories(path.parent_path());
    std::ofstream(path) << value;
  }
  long get(const std::string& file) const {
    long value = -1;
    std::ifstream(folder.path() / "sys/class/hwmon" / file) >> value;
    return value;
  }
  bool isFull() const {
    return get("hwmon0/device/fan1_manual") == 1 && get("hwmon0/device/fan1_output") == 6200 &&
           get("hwmon0/device/fan2_manual") == 1 && get("hwmon1/pwm1_enable") == 1 &&
           get("hwmon1/pwm1") == 255;
  }
  bool isAutomatic() const {
    return get("hwmon0/device/fan1_manual") == 0 && get("hwmon0/device/fan2_manual") == 0 &&
           get("hwmon1/pwm1_enable") == 5;
  }
  fs::path state() const { return folder.path() / "run/fans"; }
  QStringList environment() const {
    return {"TAVRIN_SYSFS_ROOT=" + QString::fromStdString(folder.path().string()),
            "TAVRIN_FAN_STATE=" + QString::fromStdString(state().string())};
  }
  TemporaryFolder folder;
};

TEST(SysfsFans, KeysOfBothDrivers) {
  Machine machine;
  SysfsFans fans(machine.folder.path());
  FanControl control(fans, [](double) {});
  const auto readings = control.readings();
  ASSERT_EQ(readings.size(), 3U);
  EXPECT_EQ(readings[0], (FanReading{0, 2000, 1200, 6200, false}));
  EXPECT_EQ(readings[2], (FanReading{2, 900, 0, 0, false}));
}

TEST(SysfsFans, NonsenseAndAFanThatVanishes) {
  Machine machine;
  SysfsFans fans(machine.folder.path());
  FanControl control(fans, [](double) {});
  std::ofstream(machine.folder.path() / "sys/class/hwmon/hwmon1/fan1_input") << "soon";
  EXPECT_THROW(control.readings(), FanError);
  fs::remove_all(machine.folder.path() / "sys/class/hwmon/hwmon1");
  EXPECT_THROW(control.readings(), FanError);
  for (const char* key : {"F9Ac", "F0Xx", "FxAc", "F", "", "F-1Ac", "F99999999999999999999Ac"})
    EXPECT_THROW(fans.read(key), FanError) << key;
  TemporaryFolder empty;
  SysfsFans none(empty.path());
  EXPECT_EQ(FanControl(none, [](double) {}).fanCount(), 0);
}

TEST(SysfsFans, AnotherProgramsManualControlStays) {
  Machine machine;
  machine.set("hwmon1/pwm1_enable", 1);
  SysfsFans fans(machine.folder.path(), machine.state());
  fs::create_directories(machine.state().parent_path());
  FanControl control(fans, [](double) {});
  control.setAuto();
  EXPECT_EQ(machine.get("hwmon1/pwm1_enable"), 1);
  control.setFull();
  EXPECT_EQ(machine.get("hwmon1/pwm1"), 255);
  control.setAuto();
  EXPECT_EQ(machine.get("hwmon1/pwm1"), 90);
}

TEST(SysfsFans, ADriverThatRefusesHandsAllBack) {
  Machine machine;
  fs::create_directories(machine.state().parent_path());
  const fs::path output = machine.folder.path() / "sys/class/hwmon/hwmon0/device/fan2_output";
  fs::remove(output);
  fs::create_symlink("/dev/full", output);
  SysfsFans fans(machine.folder.path(), machine.state());
  FanControl control(fans, [](double) {});
  EXPECT_THROW(control.setFull(), FanError);
  EXPECT_TRUE(machine.isAutomatic());
}

TEST(SysfsFans, ADeviceWithTwoEntriesIsHandedBack) {
  Machine machine;
  fs::create_directories(machine.state().parent_path());
  const fs::path entries = machine.folder.path() / "sys/class/hwmon";
  fs::create_directories(entries / "hwmon2");
  fs::create_directory_symlink(entries / "hwmon0/device", entries / "hwmon2/device");
  fs::create_directory_symlink(entries / "hwmon1", entries / "hwmon3");
  SysfsFans fans(machine.folder.path(), machine.state());
  FanControl control(fans, [](double) {});
  EXPECT_EQ(control.fanCount(), 3);
  control.setFull();
  EXPECT_TRUE(machine.isFull());
  // By another process, which may come upon the entries in another order.
  fs::rename(entries / "hwmon3", entries / "hwmon");
  SysfsFans next(machine.folder.path(), machine.state());
  FanControl(next, [](double) {}).setAuto();
  EXPECT_TRUE(machine.isAutomatic());
  EXPECT_EQ(machine.get("hwmon1/pwm1_enable"), 5);
}

/// How many fans another user finds where one folder may not be searched, and then another neither.
int fansOfAnotherUser(const fs::path& root) noexcept {
  const fs::path entries = root / "sys/class/hwmon";
  fs::permissions(entries / "hwmon1", fs::perms{0644});
  if (::seteuid(65534) != 0)
    return 90;
  SysfsFans fans(root);
  const int found = FanControl(fans, [](double) {}).fanCount();
  if (::seteuid(0) != 0)
    return 91;
  fs::permissions(entries / "hwmon0/device", fs::perms{0644});
  if (::seteuid(65534) != 0)
    return 92;
  try {
    fans.read("F0Mx");
    fans.read("F0Ac");
    return 93;
  } catch (const FanError&) {
    return found;
  }
}

TEST(SysfsFans, WhatMayNotBeSearchedHasNoFans) {
  if (::geteuid() != 0)
    GTEST_SKIP() << "another user cannot be tried";
  Machine machine;
  fs::permissions(machine.folder.path(), fs::perms{0755});
  const pid_t child = ::fork();
  if (child == 0)
    ::_exit(fansOfAnotherUser(machine.folder.path()));
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status)) << "ended by a signal";
  EXPECT_EQ(WEXITSTATUS(status), 2);
}

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

/// Kills at every write: each prefix of the writes of a switch is left behind in turn.
TEST(SysfsFansCrash, EveryPrefixOfTheWritesCanBeHandedBack) {
  struct Stop {};
  class Stopping final : public SMCAccess {
  public:
    Stopping(SMCAccess& fans, int left) : fans_(fans), left_(left) {}
    SMCValue read(const std::string& key) override { return fans_.read(key); }
    void write(const std::string& key, const std::vector<std::uint8_t>& bytes) override {
      if (left_-- == 0)
        throw Stop();
      fans_.write(key, bytes);
    }

  private:
    SMCAccess& fans_;
    int left_;
  };
  int stops = 0;
  for (int writes = 0; writes < 20; ++writes) {
    Machine machine;
    fs::create_directories(machine.state().parent_path());
    SysfsFans fans(machine.folder.path(), machine.state());
    Stopping stopping(fans, writes);
    FanControl control(stopping, [](double) {});
    try {
      control.setFull();
      control.setAuto();
    } catch (const Stop&) {
      ++stops;
    }
    SysfsFans next(machine.folder.path(), machine.state());
    FanControl(next, [](double) {}).setAuto();
    EXPECT_TRUE(machine.isAutomatic()) << writes;
  }
  EXPECT_EQ(stops, 11);
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
