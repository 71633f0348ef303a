#include "Tests/Linux/Desk.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <utility>

/// The tile in a real panel's tray.
namespace tavrin {
namespace {

/// The centre of the pixels of one colour on the screen; empty when there are none.
std::string spot(const std::string& colour) {
  const std::string place =
      shell("import -window root png:- | convert - -fill black +opaque '" + colour +
            "' -trim -format '%[mean] %[fx:int(page.x+w/2)] %[fx:int(page.y+h/2)]' info:");
  return place.starts_with("0 ") ? "" : place.substr(place.find(' ') + 1);
}

TEST(TraySurface, TheIconIsThereAndTakesClicks) {
  Program tile(TILE_DOUBLE, {}, {"TAVRIN_SURFACE=tray"});
  ASSERT_TRUE(tile.says("visible 1"));
  std::string place;
  // The panel makes room for the icon in several steps.
  ASSERT_TRUE(eventually([&] {
    const std::string before = std::exchange(place, spot("#C02060"));
    return !place.empty() && place == before;
  }));
  EXPECT_EQ(shell("gdbus call --session -d org.kde.StatusNotifierWatcher -o "
                  "/StatusNotifierWatcher -m org.freedesktop.DBus.Properties.Get "
                  "org.kde.StatusNotifierWatcher RegisteredStatusNotifierItems")
                    .find("/StatusNotifierItem") != std::string::npos,
            true);
  // A panel that has just started may miss a click.
  EXPECT_TRUE(eventually([&] {
    shell("xdotool mousemove " + spot("#C02060") + " click 1");
    return eventually([&] { return tile.number("opened") == 1; }, 700);
  }));
  // The press closes the panel; the click that follows it does not open it again.
  shell("xdotool click 1");
  EXPECT_TRUE(tile.says("closed"));
  shell("xdotool mousemove 600 400 click 1");
  EXPECT_EQ(tile.number("opened"), 1);
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
