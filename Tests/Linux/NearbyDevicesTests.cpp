#include "TavrinPlatform/Linux/Devices/BusNearbyDevices.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"

#include <QApplication>
#include <gmock/gmock.h>
#include <memory>

/// Sending files over scripted services on real buses.
namespace tavrin {
namespace {

using testing::ElementsAre;

class NearbyDevicesTest : public testing::Test {
protected:
  void SetUp() override {
    session_ = Bus::session();
    system_ = Bus::system();
    ASSERT_TRUE(session_);
  }
  static std::unique_ptr<Program> service(const char* kind) {
    auto program =
        std::make_unique<Program>("/usr/bin/python3", QStringList{NEARBY_SERVICES, kind});
    EXPECT_TRUE(program->says("ready"));
    return program;
  }
  void begin() {
    nearby_ = std::make_unique<BusNearbyDevices>(
        session_.get(), [this] { return system_.get(); }, loop_);
    token_ = nearby_->observe([] {});
  }
  bool until(const std::function<bool()>& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& device : nearby_->devices())
      names.push_back(device.name);
    return names;
  }
  const NearbyDevice& device(const std::string& name) const {
    for (const auto& device : nearby_->devices())
      if (device.name == name)
        return device;
    throw std::runtime_error("no device " + name);
  }
  /// Sends, and waits for how it ends.
  SendingResult send(const std::string& name, std::vector<std::filesystem::path> files) {
    std::optional<SendingResult> result;
    steps_.clear();
    const auto token = nearby_->send(
        device(name), std::move(files),
        [this](const SendingProgress& progress) { steps_.push_back(progress); },
        [&](const SendingResult& answer) { result = answer; });
    EXPECT_TRUE(until([&] { return result.has_value(); }));
    return result.value_or(SendingResult{"no answer", false});
  }

  QtRunLoop loop_;
  std::unique_ptr<Bus> session_;
  std::unique_ptr<Bus> system_;
  std::unique_ptr<BusNearbyDevices> nearby_;
  TokenPtr token_;
  std::vector<SendingProgress> steps_;
};

TEST_F(NearbyDevicesTest, WithoutAServiceThereIsNothing) {
  begin();
  EXPECT_TRUE(until([&] { return !nearby_->isAvailable(); }));
  EXPECT_TRUE(nearby_->devices().empty());
}

TEST_F(NearbyDevicesTest, KDEConnectTakesFilesForTheDevicesThatCanHaveThem) {
  const auto connect = service("connect");
  begin();
  ASSERT_TRUE(until([&] { return names().size() == 2; }));
  EXPECT_THAT(names(), ElementsAre("Ada's Phone", "Old Tablet"));
  EXPECT_EQ(device("Old Tablet").kind, NearbyDevice::Kind::tablet);
  const auto result = send("Ada's Phone", {"/tmp/a b.txt", "/tmp/ä.txt"});
  EXPECT_EQ(result.trouble, "");
  EXPECT_TRUE(result.isHandedOver);
  EXPECT_TRUE(connect->says("shared phone file:///tmp/a%20b.txt"));
  EXPECT_TRUE(connect->says("shared phone file:///tmp/%C3%A4.txt"));
  EXPECT_EQ(send("Old Tablet", {"/tmp/a"}).trouble,
            "Failed to send to Old Tablet because KDE Connect did not take the files");
  shell("gdbus call --session -d org.kde.kdeconnect -o /modules/kdeconnect -m "
        "dev.quellby.Test.Lose old");
  EXPECT_TRUE(until([&] { return names().size() == 1; }));
}

TEST_F(NearbyDevicesTest, BluetoothSendsOneFileAfterAnother) {
  const auto bluetooth = service("bluetooth");
  const auto obex = service("obex");
  begin();
  ASSERT_TRUE(until([&] { return names().size() == 2; }));
  EXPECT_THAT(names(), ElementsAre("Deaf", "Laptop")) << "paired, and able to take files";
  const auto result = send("Laptop", {"/tmp/one", "/tmp/two"});
  EXPECT_EQ(result.trouble, "");
  EXPECT_FALSE(result.isHandedOver);
  ASSERT_FALSE(steps_.empty());
  EXPECT_EQ(steps_.back(), (SendingProgress{1, 2, 500, 1000}));
  EXPECT_TRUE(obex->says("session 00:11 opp"));
  EXPECT_TRUE(obex->says("sending /tmp/two"));
  EXPECT_TRUE(obex->says("removed /org/bluez/obex/client/session0"));
  EXPECT_EQ(send("Laptop", {"/tmp/one", "/tmp/refused"}).trouble,
            "Failed to send refused to Laptop because the device refused it or is gone");
  EXPECT_EQ(send("Deaf", {"/tmp/one"}).trouble,
            "Failed to send one to Deaf because the device did not take the connection");
  shell("gdbus call --system -d org.bluez -o / -m dev.quellby.Test.Power false");
  EXPECT_TRUE(until([&] { return names().empty(); })) << "switched off";
}

TEST_F(NearbyDevicesTest, ASendingCalledOffIsTakenBack) {
  const auto bluetooth = service("bluetooth");
  const auto obex = service("obex");
  begin();
  ASSERT_TRUE(until([&] { return names().size() == 2; }));
  std::optional<SendingResult> result;
  std::uint64_t sent = 0;
  auto token = nearby_->send(
      device("Laptop"), {"/tmp/slow"},
      [&](const SendingProgress& progress) { sent = progress.sent; },
      [&](const SendingResult& answer) { result = answer; });
  ASSERT_TRUE(until([&] { return sent == 400; }));
  token.reset();
  EXPECT_TRUE(obex->says("cancelled /tmp/slow"));
  EXPECT_TRUE(obex->says("removed "));
  EXPECT_FALSE(result);
}

TEST_F(NearbyDevicesTest, AServiceThatDiesEndsTheSending) {
  const auto bluetooth = service("bluetooth");
  auto obex = service("obex");
  begin();
  ASSERT_TRUE(until([&] { return names().size() == 2; }));
  std::optional<SendingResult> result;
  bool hasBegun = false;
  const auto token = nearby_->send(
      device("Laptop"), {"/tmp/slow"},
      [&](const SendingProgress& progress) { hasBegun |= progress.sent > 0; },
      [&](const SendingResult& answer) { result = answer; });
  ASSERT_TRUE(until([&] { return hasBegun; }));
  obex.reset();
  ASSERT_TRUE(until([&] { return result.has_value(); }));
  EXPECT_EQ(result->trouble, "Failed to send slow to Laptop because the Bluetooth service ended");
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
