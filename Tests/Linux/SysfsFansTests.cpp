#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/Linux/Devices/SysfsFans.h"
#include "Tests/Linux/FanMachine.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

/// The fans as the kernel's files show them, without the helper.
namespace tavrin {
namespace {

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

} // namespace
} // namespace tavrin
