#include "TavrinPlatform/Linux/Devices/BusConnectedDevices.h"
#include "TavrinPlatform/Linux/Devices/UPowerSources.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Platform/PowerSourcesContract.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

/// Batteries and devices as mocks of UPower and BlueZ tell of them on a system bus.
namespace tavrin {
namespace {

const std::string upower = "org.freedesktop.UPower /org/freedesktop/UPower";
const std::string devicePath = "/org/freedesktop/UPower/devices/";
const std::string mock = "org.freedesktop.DBus.Mock.";

/// "SERVICE PATH" METHOD ARGUMENTS... in the syntax of gdbus.
std::string call(const std::string& at, const std::string& method) {
  const auto space = at.find(' ');
  return shell("gdbus call --system -d " + at.substr(0, space) + " -o " + at.substr(space + 1) +
               " -m " + method + " 2>&1");
}

class Power : public testing::Test {
protected:
  void SetUp() override {
    bus_ = Bus::system();
    ASSERT_TRUE(bus_);
    call(upower, mock + "Reset");
    call(upower, mock + "UpdateProperties org.freedesktop.UPower \"{'OnBattery': <false>}\"");
    call("org.bluez /", mock + "Reset");
  }
  Bus* bus() { return bus_.get(); }

  std::unique_ptr<Bus> bus_;
  UPowerSources sources_{[this] { return bus(); }};
  BusConnectedDevices devices_{[this] { return bus(); }, sources_};
};

TEST_F(Power, AComputerWithoutABattery) {
  EXPECT_TRUE(sources_.list().empty());
  // An answer has come for sure once the devices are known.
  ASSERT_TRUE(untilTrue([&] { return !sources_.devices().empty(); }));
  EXPECT_TRUE(sources_.list().empty());
}

TEST_F(Power, LevelsAndTheCableShowByThemselves) {
  call(upower, mock + "AddDischargingBattery BAT0 ACME 62.0 5400");
  call("org.freedesktop.UPower " + devicePath + "BAT0",
       mock + "AddProperty org.freedesktop.UPower.Device TimeToFull '<int64 0>'");
  call(upower, mock + "UpdateProperties org.freedesktop.UPower \"{'OnBattery': <true>}\"");
  int changes = 0;
  const auto token = sources_.observe([&] { ++changes; });
  ASSERT_TRUE(untilTrue([&] {
    const auto list = sources_.list();
    return list.size() == 1 && !list[0].isOnACPower;
  }));
  EXPECT_EQ(sources_.list()[0], (PowerSource{62, 100, false, false, 0, 90}));
  changes = 0;
  call(upower,
       mock + "SetDeviceProperties " + devicePath +
           "BAT0 \"{'Percentage': <41.4>, 'State': <uint32 1>, 'TimeToFull': <int64 660>}\"");
  call(upower, mock + "UpdateProperties org.freedesktop.UPower \"{'OnBattery': <false>}\"");
  ASSERT_TRUE(untilTrue([&] {
    const auto list = sources_.list();
    return list.size() == 1 && list[0].isOnACPower && list[0].currentCapacity == 41;
  }));
  EXPECT_GT(changes, 0);
  EXPECT_TRUE(sources_.list()[0].isCharging);
  EXPECT_EQ(sources_.list()[0].timeToFullCharge, 11);
  call(upower, mock + "RemoveDevice " + devicePath + "BAT0");
  EXPECT_TRUE(untilTrue([&] { return sources_.list().empty(); }));
}

TEST_F(Power, TwoBatteriesAreSummedUpFirst) {
  call(upower, mock + "AddDischargingBattery BAT0 First 10.0 600");
  call(upower, mock + "AddDischargingBattery BAT1 Second 90.0 6000");
  call(upower, mock + "SetupDisplayDevice 2 2 50.0 50.0 100.0 10.0 6600 0 true battery 3");
  ASSERT_TRUE(untilTrue([&] { return sources_.list().size() == 3; }));
  EXPECT_EQ(sources_.list()[0].currentCapacity, 50);
}

TEST_F(Power, NonsenseIsHarmless) {
  call(upower, mock + "AddDischargingBattery BAT0 ACME 62.0 5400");
  ASSERT_TRUE(untilTrue([&] { return sources_.list().size() == 1; }));
  call(upower, mock + "SetDeviceProperties " + devicePath +
                   "BAT0 \"{'Percentage': <1e300>, 'TimeToEmpty': <int64 -5>}\"");
  ASSERT_TRUE(untilTrue([&] { return sources_.list()[0].currentCapacity != 62; }));
  EXPECT_EQ(sources_.list()[0].currentCapacity, 1000);
  EXPECT_FALSE(sources_.list()[0].timeToEmpty);
}

TEST_F(Power, DevicesOfBothServicesAreListedOnce) {
  using Kind = DeviceBattery::Kind;
  call(upower, mock + "AddObject " + devicePath +
                   "kbd org.freedesktop.UPower.Device \"{'Type': <uint32 6>, 'Model': <'K380'>, "
                   "'Serial': <'11:22:33:44:55:66'>, 'Percentage': <80.0>, 'IsPresent': <true>}\" "
                   "\"@a(ssss) []\"");
  const std::string bluez = "org.bluez /";
  const std::string headset = "/org/bluez/hci0/dev_AA_BB_CC_DD_EE_FF";
  call(bluez, "org.bluez.Mock.AddAdapter hci0 pc");
  for (const char* address : {"11:22:33:44:55:66 Copy", "AA:BB:CC:DD:EE:FF Headset"}) {
    call(bluez, std::string("org.bluez.Mock.AddDevice hci0 ") + address);
    call(bluez,
         std::string("org.bluez.Mock.ConnectDevice hci0 ") + std::string(address).substr(0, 17));
  }
  for (const std::string& path : {std::string("/org/bluez/hci0/dev_11_22_33_44_55_66"), headset})
    call("org.bluez " + path,
         mock + "AddProperties org.bluez.Battery1 \"{'Percentage': <byte 77>}\"");
  const auto token = devices_.observe([] {});
  devices_.refresh();
  // The services answer in any order.
  ASSERT_TRUE(untilTrue([&] {
    const auto devices = devices_.connected();
    return devices.size() == 2 && devices[1].name == "K380";
  }));
  const auto found = devices_.connected();
  EXPECT_EQ(found[0].name, "Headset");
  EXPECT_EQ(found[0].percent, 77);
  EXPECT_EQ(found[1], (DeviceBattery{"11:22:33:44:55:66", "K380", Kind::keyboard, 80}));
  call("org.bluez " + headset,
       mock + "UpdateProperties org.bluez.Battery1 \"{'Percentage': <byte 60>}\"");
  EXPECT_TRUE(untilTrue([&] { return devices_.connected()[0].percent == 60; }));
  call(bluez, "org.bluez.Mock.DisconnectDevice hci0 AA:BB:CC:DD:EE:FF");
  EXPECT_TRUE(untilTrue([&] { return devices_.connected().size() == 1; }));
}

TEST(PowerWithoutABus, IsEmpty) {
  UPowerSources sources([] { return nullptr; });
  BusConnectedDevices devices([] { return nullptr; }, sources);
  const auto token = devices.observe([] {});
  devices.refresh();
  EXPECT_TRUE(sources.list().empty());
  EXPECT_TRUE(devices.connected().empty());
}

} // namespace

namespace test {
namespace {

struct UPowerRig {
  UPowerRig() {
    call(upower, mock + "Reset");
    call(upower, mock + "UpdateProperties org.freedesktop.UPower \"{'OnBattery': <false>}\"");
  }
  PowerSources& sources() { return sources_; }
  void set(const std::vector<PowerSource>& list) {
    for (int i = 0; i < count_; ++i)
      call(upower, mock + "RemoveDevice " + device(i));
    count_ = 0;
    for (const auto& source : list) {
      const std::string name = "BAT" + std::to_string(count_++);
      call(upower, mock + "AddChargingBattery " + name + " ACME " +
                       std::to_string(*source.currentCapacity) + ".0 " +
                       std::to_string(*source.timeToFullCharge * 60));
      const std::string at = "org.freedesktop.UPower " + devicePath + name;
      call(at, mock + "AddProperty org.freedesktop.UPower.Device TimeToEmpty '<int64 " +
                   std::to_string(*source.timeToEmpty * 60) + ">'");
      // 4 is "fully charged".
      if (!source.isCharging)
        call(upower,
             mock + "SetDeviceProperties " + devicePath + name + " \"{'State': <uint32 4>}\"");
    }
  }
  void tell() {
    call(upower, mock + "SetDeviceProperties " + device(0) + " \"{'Percentage': <" +
                     std::to_string(++percentage_) + ".0>}\"");
  }
  bool comesTrue(const std::function<bool()>& condition) { return untilTrue(condition); }

private:
  static std::string device(int number) { return devicePath + "BAT" + std::to_string(number); }

  std::unique_ptr<Bus> bus_ = Bus::system();
  UPowerSources sources_{[this] { return bus_.get(); }};
  int count_ = 0;
  int percentage_ = 60;
};
INSTANTIATE_TYPED_TEST_SUITE_P(UPower, PowerSourcesContract, UPowerRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
