#include "TavrinCore/Kinds/AirDrop/AirDropSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinWidgetsUI/AirDrop/AirDropModel.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Slot/SlotFixture.h"

#include <fstream>

namespace tavrin::test {
namespace {

class AirDropWidget : public SlotTest {
protected:
  void SetUp() override {
    SlotTest::SetUp();
    nearby().all = {{"1", "Phone", NearbyDevice::Kind::phone, "Wire"},
                    {"2", "Laptop", NearbyDevice::Kind::computer, "Bluetooth"}};
    start(AirDropSettings{});
  }
  FakeNearbyDevices& nearby() { return platform_.nearby; }
  std::filesystem::path file(const std::string& name) {
    std::ofstream(folder_ / name) << "1234567890";
    return folder_ / name;
  }
  void drop(const std::vector<std::filesystem::path>& paths) {
    EXPECT_TRUE(app_->applicationOpenFiles(paths));
    platform_.loop.runBackground();
  }
  PanelList& devices() { return *all<PanelList>().front(); }
};

TEST_F(AirDropWidget, DroppedFilesOpenThePanelAndGoToTheDeviceChosen) {
  drop({file("a b%.txt"), file("c.txt")});
  EXPECT_TRUE(platform_.fakePopover.shown);
  EXPECT_EQ(platform_.tile.value, "2 files to send");
  EXPECT_TRUE(words().contains("2 files"));
  EXPECT_TRUE(words().contains("20 bytes") || words().contains("20 B"))
      << words().join('|').toStdString();
  ASSERT_EQ(devices().count(), 2);
  devices().onOpen(1);
  EXPECT_EQ(nearby().target, "Laptop");
  EXPECT_EQ(nearby().sent,
            (std::vector<std::filesystem::path>{folder_ / "a b%.txt", folder_ / "c.txt"}));
  nearby().progress({1, 2, 5, 10});
  EXPECT_TRUE(words().filter("file 2 of 2").size() == 1) << words().join('|').toStdString();
  nearby().done({{}, false});
  EXPECT_EQ(platform_.tile.value, "Sent to Laptop");
  platform_.loop.advance(30);
  EXPECT_EQ(platform_.tile.value, "Drop files here");
}

TEST_F(AirDropWidget, OnlyFilesAreSent) {
  std::filesystem::create_directory(folder_ / "sub");
  drop({folder_ / "sub", "/dev/zero", folder_ / "missing"});
  EXPECT_TRUE(words().contains("Only files can be sent, not folders"));
  EXPECT_EQ(platform_.tile.value, "Not sent");
  drop({folder_ / "sub", file("a\nb")});
  EXPECT_TRUE(words().contains("One item was left out: only files can be sent"));
  EXPECT_EQ(platform_.tile.value, "One file to send");
}

TEST_F(AirDropWidget, ASendingIsCalledOffAndAnotherDeviceChosen) {
  drop({file("a")});
  devices().onOpen(0);
  EXPECT_TRUE(nearby().isSending);
  button("Cancel")->click();
  EXPECT_FALSE(nearby().isSending);
  EXPECT_EQ(platform_.tile.value, "One file to send");
  devices().onOpen(1);
  nearby().done({"Failed to send a to Laptop because the device refused it or is gone", false});
  EXPECT_TRUE(
      words().contains("Failed to send a to Laptop because the device refused it or is gone"));
  devices().onOpen(0);
  nearby().done({{}, true});
  EXPECT_EQ(platform_.tile.value, "Passed on to Phone");
}

TEST_F(AirDropWidget, FilesDroppedMeanwhileWait) {
  drop({file("a")});
  devices().onOpen(0);
  drop({file("b")});
  EXPECT_EQ(nearby().sent.front(), folder_ / "a");
  EXPECT_EQ(platform_.tile.value, "Sending to Phone");
  nearby().done({{}, false});
  platform_.loop.runBackground();
  EXPECT_EQ(platform_.tile.value, "One file to send");
  devices().onOpen(0);
  EXPECT_EQ(nearby().sent.front(), folder_ / "b");
}

TEST_F(AirDropWidget, WhereThereIsNothingToSendWithItSaysSo) {
  nearby().all.clear();
  click();
  EXPECT_TRUE(words().contains("No device is near"));
  nearby().available = false;
  nearby().changes.call();
  EXPECT_TRUE(words().contains("Nothing here can send files"));
  const int before = nearby().refreshes;
  button("Look Again")->click();
  EXPECT_EQ(nearby().refreshes, before + 1);
}

TEST_F(AirDropWidget, OtherKindsTakeNoFiles) {
  write(TimerSettings{});
  announce();
  EXPECT_FALSE(app_->applicationOpenFiles({file("a")}));
}

} // namespace
} // namespace tavrin::test
