#include "TavrinCore/Kinds/System/DeviceBatteries.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

using Kind = DeviceBattery::Kind;

std::string report(const std::string& connected, const std::string& others = "[]") {
  return R"({"SPBluetoothDataType":[{"controller_properties":{},"device_connected":)" + connected +
         R"(,"device_not_connected":)" + others + "}]}";
}

std::vector<DeviceBattery> read(const std::string& text,
                                const DeviceBatteries::HIDTable& table = {}) {
  return DeviceBatteries::batteries(DeviceBatteries::devices(text), table);
}

TEST(DeviceBatteries, EarbudsWithTheirCaseAreThreeEntries) {
  const auto found = read(report(
      R"([{"Buds":{"device_address":"AA:BB","device_minorType":"Headphones","device_batteryLevelLeft":"80%",
          "device_batteryLevelRight":" 7 %","device_batteryLevelCase":100,"device_batteryLevelMain":"1%"}}])"));
  EXPECT_THAT(found, testing::ElementsAre(
                         DeviceBattery{"AA:BB/L", "Buds (left)", Kind::headphones, 80},
                         DeviceBattery{"AA:BB/R", "Buds (right)", Kind::headphones, 7},
                         DeviceBattery{"AA:BB/case", "Buds case", Kind::headphonesCase, 100}));
}

TEST(DeviceBatteries, OneEarbudAloneHidesTheMainLevel) {
  const auto found =
      read(report(R"([{"Buds":{"device_batteryLevelRight":5,"device_batteryLevel":"9%"}}])"));
  EXPECT_THAT(found, testing::ElementsAre(DeviceBattery{"Buds/R", "Buds (right)", Kind::other, 5}));
}

TEST(DeviceBatteries, TheMainLevelComesBeforeThePlainOneAndTheTable) {
  const DeviceBatteries::HIDTable table = DeviceBatteries::table(
      {{3, "aa-bb"}, {std::nullopt, "cc"}, {50, std::nullopt}, {44, "DD:EE"}});
  EXPECT_EQ(table.size(), 2U);
  const auto percentOf = [&](const std::string& properties) {
    const auto found =
        read(report("[{\"K\":{\"device_address\":\"AA:bb\"" + properties + "}}]"), table);
    return found.empty() ? -1 : found[0].percent;
  };
  EXPECT_EQ(percentOf(R"(,"device_batteryLevelMain":"1%","device_batteryLevel":"2%")"), 1);
  EXPECT_EQ(percentOf(R"(,"device_batteryLevel":"2%")"), 2);
  EXPECT_EQ(percentOf(""), 3);
  EXPECT_EQ(percentOf(R"(,"device_batteryLevel":"full")"), 3);
  EXPECT_TRUE(read(report(R"([{"K":{"device_address":"FF"}}])"), table).empty());
}

TEST(DeviceBatteries, DevicesThatAreNotConnectedDoNotCount) {
  EXPECT_TRUE(read(report("[]", R"([{"K":{"device_batteryLevel":"2%"}}])")).empty());
}

TEST(DeviceBatteries, KindsByMinorType) {
  const std::pair<const char*, Kind> cases[] = {
      {"Headphones", Kind::headphones}, {"Headset", Kind::headphones},
      {"Headphone", Kind::headphones},  {"Keyboard", Kind::keyboard},
      {"Mouse", Kind::mouse},           {"Trackpad", Kind::trackpad},
      {"Gamepad", Kind::other},         {"", Kind::other},
      {"keyboard", Kind::other}};
  for (const auto& [minorType, kind] : cases)
    EXPECT_EQ(DeviceBatteries::kind(minorType), kind) << minorType;
}

TEST(DeviceBatteries, Percents) {
  const std::pair<const char*, std::optional<int>> cases[] = {
      {"85", 85},      {"\"85%\"", 85},     {"\" 85 % \"", 85},
      {"\"-3%\"", -3}, {"\"+3%\"", 3},      {"\"8 5\"", {}},
      {"\"%\"", {}},   {"\"\"", {}},        {"\"85.5\"", {}},
      {"85.5", {}},    {"null", {}},        {"true", {}},
      {"[]", {}},      {"99999999999", {}}, {"\"99999999999\"", {}},
      {"\"+-3\"", {}}, {"\"85%x\"", {}}};
  for (const auto& [json, percent] : cases)
    EXPECT_EQ(DeviceBatteries::percent(JSONValue::parse(json)), percent) << json;
}

TEST(DeviceBatteries, MalformedReportsGiveNothing) {
  for (const char* text :
       {"", "{", "[]", "3", R"({"SPBluetoothDataType":3})", R"({"SPBluetoothDataType":[3,null]})",
        R"({"SPBluetoothDataType":[{"device_connected":{}}]})",
        R"({"SPBluetoothDataType":[{"device_connected":[3,"x",{"K":3}]}]})"})
    EXPECT_TRUE(read(text).empty()) << text;
}

TEST(DeviceBatteries, AddressesMeet) {
  EXPECT_EQ(DeviceBatteries::key("AA:BB-cc 1g"), "aabbcc1");
}

} // namespace
} // namespace tavrin
