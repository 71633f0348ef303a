#include "TavrinCore/Desktop/XSettings.h"
#include "Tests/Support/XSettingsBytes.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(XSettings, TextsAreFoundByNameInEitherByteOrder) {
  for (const bool isBig : {false, true}) {
    const auto bytes = test::xsettings(
        {{"Gtk/FontName", "Sans 10"}, {"Net/IconThemeName", "Papirus"}, {"Empty", ""}}, isBig);
    EXPECT_EQ(textInXSettings(bytes, "Gtk/FontName"), "Sans 10");
    EXPECT_EQ(textInXSettings(bytes, "Net/IconThemeName"), "Papirus");
    EXPECT_EQ(integerInXSettings(bytes, "Xft/DPI"), 98304);
    EXPECT_EQ(integerInXSettings(bytes, "Gtk/FontName"), std::nullopt);
    for (const char* name : {"Empty", "Xft/DPI", "Some/Colour", "Net", "Nobody", ""})
      EXPECT_EQ(textInXSettings(bytes, name), std::nullopt) << name;
  }
}

TEST(XSettings, WhatIsCutOrLiesHasNoText) {
  const auto bytes = test::xsettings({{"Net/IconThemeName", "Papirus"}});
  for (std::size_t size = 0; size + 1 < bytes.size(); ++size)
    EXPECT_EQ(textInXSettings(bytes.substr(0, size), "Net/IconThemeName"), std::nullopt) << size;
  const auto end = bytes.find("Xft/DPI") + 8 + 4 + 4;
  for (std::size_t size = 0; size < end; ++size)
    EXPECT_EQ(integerInXSettings(bytes.substr(0, size), "Xft/DPI"), std::nullopt) << size;
  auto unknownType = bytes;
  unknownType[12] = 9;
  EXPECT_EQ(textInXSettings(unknownType, "Net/IconThemeName"), std::nullopt);
  EXPECT_EQ(textInXSettings(std::string(64, '\xFF'), "Net/IconThemeName"), std::nullopt);
}

} // namespace
} // namespace tavrin
