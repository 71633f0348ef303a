#include "TavrinHost/Widgets/SlotControl.h"
#include "Tests/Command/HostFixture.h"

namespace tavrin::test {
namespace {

class DoctorCommandTest : public HostTest {};

TEST_F(DoctorCommandTest, TheReportIsPrintedWholeForPeopleAndForScripts) {
  using State = DesktopReport::State;
  platform.desktop.items = {
      {"bus", State::good, "The session has a message bus."},
      {"keyring", State::missing, "There is no \033[31mkeyring.", "Install one.", {"clipboard"}}};
  ASSERT_EQ(run({"doctor"}), 0);
  const std::string text = output.str();
  for (const char* part : {"good     bus", "missing  keyring", "Install one.", "For: clipboard."})
    EXPECT_NE(text.find(part), std::string::npos) << part;
  EXPECT_EQ(text.find('\033'), std::string::npos);

  const auto items = json({"doctor"});
  ASSERT_EQ(items.array()->size(), 2U);
  const auto& second = items.array()->back();
  EXPECT_EQ(*second.member("topic"), JSONValue("keyring"));
  EXPECT_EQ(*second.member("state"), JSONValue("missing"));
  EXPECT_EQ(*second.member("remedy"), JSONValue("Install one."));
  EXPECT_EQ(*second.member("kinds"), JSONValue(JSONValue::Array{JSONValue("clipboard")}));
}

TEST_F(DoctorCommandTest, AutostartIsTurnedOnAndOffAndASystemWithoutItSaysSo) {
  EXPECT_EQ(run({"autostart", "on"}), 0);
  EXPECT_TRUE(platform.starting.isOn);
  EXPECT_EQ(*json({"autostart", "status"}).member("isOn"), JSONValue(true));
  EXPECT_EQ(run({"autostart", "off"}), 0);
  EXPECT_FALSE(platform.starting.isOn);
  EXPECT_EQ(run({"autostart"}), 2);
  platform.starting.isStuck = true;
  EXPECT_EQ(run({"autostart", "on"}), 1);
}

TEST_F(DoctorCommandTest, TheSettingsWindowIsAskedForOrStartedFromItsBundle) {
  EXPECT_EQ(run({"settings"}), 0);
  EXPECT_EQ(platform.running.actions, std::vector<std::string>{"open dev.quellby.Tavrin"});
  platform.running.hasBus = false;
  EXPECT_EQ(run({"settings"}), 1);
  EXPECT_NE(errors.str().find("/opt/tavrin/bin/tavrin-settings"), std::string::npos);
  const auto program = folder / "bundles/Tavrin Settings.app/Contents/MacOS/TavrinSettings";
  std::filesystem::create_directories(program.parent_path());
  std::ofstream(program) << "program";
  platform.files.variables["TAVRIN_BUNDLES"] = folder / "bundles";
  EXPECT_EQ(run({"settings"}), 0) << errors.str();
  ASSERT_EQ(platform.running.launches.size(), 1U);
  EXPECT_EQ(platform.running.launches[0].program, program);
  platform.hasDisplay = false;
  EXPECT_EQ(run({"settings"}), 1);
  EXPECT_NE(errors.str().find("There is no display"), std::string::npos);
  EXPECT_EQ(platform.running.launches.size(), 1U);
}

TEST_F(DoctorCommandTest, AProgramInABundleFindsTheSlotsBesideIt) {
  const auto slot = folder / "Applications/Tavrin Slot 1.app/Contents/MacOS";
  std::filesystem::create_directories(slot);
  std::ofstream(slot / "TavrinSlot") << "program";
  SilentContext context(platform);
  EXPECT_THROW(SlotControl(context).bundlesFolder(), HostError);
  platform.bundle.bundlePath = folder / "Applications/Tavrin Settings.app";
  EXPECT_EQ(SlotControl(context).bundlesFolder(), folder / "Applications");
}

} // namespace
} // namespace tavrin::test
