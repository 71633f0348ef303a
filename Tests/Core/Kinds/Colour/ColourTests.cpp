#include "TavrinCore/Kinds/Colour/ColourHistory.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::ElementsAre;

PickedColour colour(int packed, bool isPinned = false) {
  return {UUID::random(), packed >> 16, packed >> 8 & 255, packed & 255, {1}, isPinned};
}

TEST(PickedColour, SevenNotations) {
  struct Case {
    int packed;
    std::vector<std::string> texts;
  };
  const Case cases[] = {
      {0xFF8000,
       {"#FF8000", "#ff8000", "rgb(255, 128, 0)", "hsl(30, 100%, 50%)",
        "Color(red: 1.000, green: 0.502, blue: 0.000)",
        "NSColor(srgbRed: 1.000, green: 0.502, blue: 0.000, alpha: 1)", "--colour: #ff8000;"}},
      {0x808080,
       {"#808080", "#808080", "rgb(128, 128, 128)", "hsl(0, 0%, 50%)",
        "Color(red: 0.502, green: 0.502, blue: 0.502)",
        "NSColor(srgbRed: 0.502, green: 0.502, blue: 0.502, alpha: 1)", "--colour: #808080;"}},
      {0x0A1B2C,
       {"#0A1B2C", "#0a1b2c", "rgb(10, 27, 44)", "hsl(210, 63%, 11%)",
        "Color(red: 0.039, green: 0.106, blue: 0.173)",
        "NSColor(srgbRed: 0.039, green: 0.106, blue: 0.173, alpha: 1)", "--colour: #0a1b2c;"}}};
  for (const auto& [packed, texts] : cases) {
    std::vector<std::string> found;
    for (const auto format : allCases<ColourFormat>())
      found.push_back(colour(packed).text(format));
    EXPECT_EQ(found, texts);
  }
  std::vector<std::string_view> titles;
  for (const auto format : allCases<ColourFormat>())
    titles.push_back(title(format));
  EXPECT_THAT(titles, ElementsAre("Hex", "Hex, lowercase", "CSS rgb()", "CSS hsl()",
                                  "SwiftUI Color", "NSColor", "CSS variable"));
}

TEST(PickedColour, HueTakesTheEarlierChannelOfATie) {
  const std::pair<int, const char*> cases[] = {
      {0xFFFF00, "hsl(60, 100%, 50%)"},  {0x00FFFF, "hsl(180, 100%, 50%)"},
      {0xFF00FF, "hsl(300, 100%, 50%)"}, {0xFF0001, "hsl(360, 100%, 50%)"},
      {0x0000FF, "hsl(240, 100%, 50%)"}, {0xFFFFFF, "hsl(0, 0%, 100%)"},
      {0x000000, "hsl(0, 0%, 0%)"},      {0xBFFFBF, "hsl(120, 100%, 87%)"}};
  for (const auto& [packed, text] : cases)
    EXPECT_EQ(colour(packed).text(ColourFormat::hsl), text);
}

TEST(PickedColour, LabelsAreDarkAboveTheThreshold) {
  const std::pair<int, bool> cases[] = {{0xFFFFFF, true}, {0x000000, false}, {0x0000FF, false},
                                        {0xFF0000, true}, {0x00FF00, true},  {0x757575, false},
                                        {0x767676, true}};
  for (const auto& [packed, isDark] : cases)
    EXPECT_EQ(colour(packed).wantsDarkLabel(), isDark) << packed;
  EXPECT_NEAR(colour(0x0000FF).luminance(), 0.0722, 1e-9);
}

std::vector<int> packed(const ColourHistory& history) {
  std::vector<int> all;
  for (const auto& each : history.colours)
    all.push_back(each.packed());
  return all;
}

TEST(ColourHistory, TheSameColourMovesToTheFrontAndStaysPinned) {
  ColourHistory history{1, {colour(1), colour(2, true), colour(3), colour(2)}};
  auto again = colour(2);
  history.add(again, 24);
  EXPECT_THAT(packed(history), ElementsAre(2, 1, 3));
  EXPECT_EQ(history.colours[0].id, again.id);
  EXPECT_TRUE(history.colours[0].isPinned);
  history.togglePin(again.id, 24);
  EXPECT_FALSE(history.colours[0].isPinned);
}

TEST(ColourHistory, TheLimitTakesTheOldestUnpinned) {
  struct Case {
    int limit;
    std::vector<int> left;
  };
  for (const auto& [limit, left] : {Case{4, {9, 1, 2, 5}}, Case{1, {9, 1, 2, 5}},
                                    Case{5, {9, 1, 2, 3, 5}}, Case{100, {9, 1, 2, 3, 4, 5}}}) {
    ColourHistory history{1, {colour(1), colour(2), colour(3), colour(4), colour(5, true)}};
    history.add(colour(9), limit);
    EXPECT_EQ(packed(history), left) << limit;
  }
  ColourHistory pinned{1, {}};
  for (int i = 0; i < 6; ++i)
    pinned.colours.push_back(colour(i, true));
  pinned.add(colour(7), 4);
  EXPECT_THAT(packed(pinned), ElementsAre(0, 1, 2, 3, 4, 5)) << "pinned ones are never dropped";
  pinned.colours.push_back(colour(8));
  pinned.clearUnpinned();
  EXPECT_EQ(pinned.colours.size(), 6U);
}

TEST(ColourHistory, CodesItsDocument) {
  const auto json = JSONValue::parse(
      R"({"version":1,"colours":[{"id":"6BA7B810-9DAD-41D1-80B4-00C04FD430C8","red":255,"green":-4,
          "blue":999,"pickedAt":12.5,"isPinned":true}]})");
  const auto history = decode<ColourHistory>(json);
  EXPECT_EQ(history.colours[0].packed(), 0xFF00FF) << "channels come into range";
  EXPECT_EQ(decode<ColourHistory>(encode(history)), history);
}

} // namespace
} // namespace tavrin
