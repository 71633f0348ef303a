#include "Tests/Linux/Desk.h"

#include <QCoreApplication>
#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>

/// The tile and the panel on a real X server, driven by a pointer and a keyboard.
namespace tavrin {
namespace {

struct Window {
  int x = 0, y = 0, width = 0, height = 0;
  std::string id;
  std::string centre() const {
    return std::to_string(x + width / 2) + " " + std::to_string(y + height / 2);
  }
};

std::string visibleWindow(const std::string& name) {
  std::string id;
  EXPECT_TRUE(eventually([&] {
    id = shell("xdotool search --onlyvisible --name '^" + name + "$' 2>/dev/null | head -1");
    return !id.empty();
  }));
  return id;
}

Window tileWindow() {
  Window window;
  window.id = visibleWindow("Double");
  std::istringstream(shell("eval $(xdotool getwindowgeometry --shell " + window.id +
                           "); echo $X $Y $WIDTH $HEIGHT")) >>
      window.x >> window.y >> window.width >> window.height;
  return window;
}

void click(const std::string& place) {
  shell("xdotool mousemove " + place + " click 1");
}

std::string focusedWindow() {
  return shell("xdotool getwindowfocus");
}

bool hasWindowManager() {
  return qEnvironmentVariable("DESK_KIND") != "bare";
}

/// The ring is white, as little else of the tile is.
bool hasRing(const Window& window) {
  const std::string share =
      shell("import -window " + window.id +
            " png:- | convert - -fill black +opaque '#FFFFFF' -format '%[fx:mean]' info:");
  return !share.empty() && std::stod(share) > 0.04;
}

bool isUrgent(const Window& window) {
  return shell("xprop -id " + window.id + " _NET_WM_STATE").find("DEMANDS_ATTENTION") !=
         std::string::npos;
}

class Desktop : public testing::Test {
protected:
  /// Another program's window in the top left corner, with the keyboard focus.
  void SetUp() override {
    other_ = std::make_unique<Program>(
        "/usr/bin/xev", QStringList{"-geometry", "200x100+10+40", "-name", "elsewhere"});
    otherId_ = visibleWindow("elsewhere");
    shell((hasWindowManager() ? "xdotool windowactivate " : "xdotool windowfocus ") + otherId_);
    ASSERT_TRUE(eventually([&] { return focusedWindow() == otherId_; }));
  }

  std::unique_ptr<Program> other_;
  std::string otherId_;
};

TEST_F(Desktop, TilesStandInARowAtTheBottomEdge) {
  Program first(TILE_DOUBLE, {"--place=0,1,3"});
  ASSERT_TRUE(first.says("visible 1"));
  const Window a = tileWindow();
  EXPECT_EQ(a.y + a.height, 800);
  {
    Program wide(TILE_DOUBLE, {"--place=1,2,3", "--button"});
    ASSERT_TRUE(wide.says("visible 1"));
    std::istringstream ids(shell("xdotool search --onlyvisible --name '^Double$'"));
    std::string id;
    Window b;
    while (ids >> id)
      if (id != a.id)
        std::istringstream(shell("eval $(xdotool getwindowgeometry --shell " + id +
                                 "); echo $X $Y $WIDTH $HEIGHT")) >>
            b.x >> b.y >> b.width >> b.height;
    EXPECT_EQ(b.x, a.x + a.width);
    EXPECT_EQ(b.width, 2 * a.width);
    // Centred: as much room before the first tile as after the last one.
    EXPECT_NEAR(a.x, 1280 - (b.x + b.width), 2);
    click(b.centre());
    ASSERT_TRUE(wide.says("click "));
    EXPECT_TRUE(wide.says("opened"));
  }
  EXPECT_EQ(first.number("click"), 0);
}

TEST_F(Desktop, NothingOfWaylandIsLoaded) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--front"});
  ASSERT_TRUE(tile.says("front "));
  click(tileWindow().centre());
  ASSERT_TRUE(tile.says("opened"));
  EXPECT_TRUE(loads(tile, "libqxcb"));
  EXPECT_FALSE(loads(tile, "libwayland"));
  EXPECT_FALSE(loads(tile, "libtavrin-wayland"));
}

TEST_F(Desktop, TheTileIsADockWindowThatNeverTakesTheFocus) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--button"});
  ASSERT_TRUE(tile.says("visible 1"));
  const Window window = tileWindow();
  EXPECT_NE(shell("xprop -id " + window.id + " _NET_WM_WINDOW_TYPE").find("DOCK"),
            std::string::npos);
  const std::string state = shell("xprop -id " + window.id + " _NET_WM_STATE");
  EXPECT_NE(state.find("SKIP_TASKBAR"), std::string::npos) << state;
  // A fullscreen window is to cover it.
  EXPECT_EQ(state.find("ABOVE"), std::string::npos) << state;
  // The left half is a button and uses the click up.
  click(std::to_string(window.x + 10) + " " + std::to_string(window.y + 24));
  ASSERT_TRUE(tile.says("click "));
  EXPECT_EQ(tile.number("opened"), 0);
  EXPECT_EQ(focusedWindow(), otherId_);
  // Pressed inside and released outside is no click.
  shell("xdotool mousemove " + window.centre() + " mousedown 1 mousemove 300 300 mouseup 1");
  click(window.centre());
  ASSERT_TRUE(tile.says("click ", 2));
  EXPECT_EQ(tile.number("click "), 2);
}

TEST_F(Desktop, ThePanelTakesTheKeysAndGivesTheFocusBack) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1"});
  ASSERT_TRUE(tile.says("visible 1"));
  const Window window = tileWindow();
  click(window.centre());
  ASSERT_TRUE(tile.says("opened"));
  ASSERT_TRUE(eventually([&] { return focusedWindow() != otherId_; }));
  shell("xdotool type hi");
  EXPECT_TRUE(tile.says("text hi"));
  shell("xdotool key Escape");
  EXPECT_TRUE(tile.says("closed"));
  EXPECT_TRUE(eventually([&] { return focusedWindow() == otherId_; })) << focusedWindow();
}

/// A hairline at the most, on a light panel before a light desktop.
TEST_F(Desktop, ThePanelsCornersAreNotDark) {
  if (shell("wmctrl -m").find("Xfwm4") != std::string::npos)
    GTEST_SKIP() << "there is a shadow where windows are mixed";
  shell("xsetroot -solid white");
  Program tile(TILE_DOUBLE, {"--place=0,1,1"});
  ASSERT_TRUE(tile.says("visible 1"));
  click(tileWindow().centre());
  ASSERT_TRUE(tile.says("opened"));
  const auto look = [](const char* part, const char* value) {
    return std::stod("0" + shell(std::string("import -window root png:- | convert - -crop ") +
                                 part + " +repage -format '%[fx:" + value + "]' info:"));
  };
  ASSERT_TRUE(eventually([&] { return look("1x1+640+700", "mean") < 0.99; }));
  // From above its upper corners to the line in it.
  EXPECT_TRUE(eventually([&] { return look("400x60+440+600", "minima") > 0.8; }))
      << look("400x60+440+600", "minima");
}

TEST_F(Desktop, EverySecondClickClosesThePanel) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1"});
  ASSERT_TRUE(tile.says("visible 1"));
  shell("xdotool mousemove " + tileWindow().centre());
  for (int i = 1; i <= 5; ++i) {
    shell("xdotool click 1");
    ASSERT_TRUE(tile.says("opened", i));
    shell("xdotool click 1");
    ASSERT_TRUE(tile.says("closed", i));
  }
  EXPECT_EQ(tile.number("opened"), 5);
}

TEST_F(Desktop, AClickElsewhereClosesThePanelAndIsNotSwallowed) {
  struct Case {
    const char* name;
    const char* place;
  };
  Program tile(TILE_DOUBLE, {"--place=0,1,1"});
  ASSERT_TRUE(tile.says("visible 1"));
  const Window window = tileWindow();
  int count = 0;
  for (const Case& c : {Case{"another program", "100 100"}, Case{"the desktop", "900 300"}}) {
    SCOPED_TRACE(c.name);
    ++count;
    click(window.centre());
    ASSERT_TRUE(tile.says("opened", count));
    ASSERT_TRUE(eventually([&] { return focusedWindow() != otherId_; }));
    const int pressed = other_->number("ButtonPress");
    click(c.place);
    EXPECT_TRUE(tile.says("closed", count));
    EXPECT_TRUE(tile.says("resigned", count));
    if (count == 1) {
      EXPECT_TRUE(other_->says("ButtonPress", pressed + 1));
    }
  }
}

TEST_F(Desktop, AnotherTileClosesThisPanelAndOpensItsOwn) {
  Program first(TILE_DOUBLE, {"--place=0,1,2"});
  ASSERT_TRUE(first.says("visible 1"));
  const Window a = tileWindow();
  Program second(TILE_DOUBLE, {"--place=1,1,2"});
  ASSERT_TRUE(second.says("visible 1"));
  click(a.centre());
  ASSERT_TRUE(first.says("opened"));
  click(std::to_string(a.x + a.width + 20) + " " + std::to_string(a.y + 20));
  EXPECT_TRUE(second.says("opened"));
  EXPECT_TRUE(first.says("closed"));
}

TEST_F(Desktop, WithoutAClickThePanelOpensAtItsOwnTile) {
  shell("xdotool mousemove 20 20");
  Program tile(TILE_DOUBLE, {"--place=0,1,4", "--open"});
  ASSERT_TRUE(tile.says("opened"));
  const Window window = tileWindow();
  double x = 0;
  double y = 0;
  const auto output = tile.output();
  ASSERT_EQ(std::sscanf(output.constData() + output.indexOf("opened"), "opened %lf %lf", &x, &y),
            2);
  EXPECT_NEAR(x, window.x + window.width / 2.0, 1.5);
  EXPECT_EQ(y, window.height + 2);
}

TEST_F(Desktop, TheRowFollowsTheScreen) {
  if (!hasWindowManager())
    GTEST_SKIP() << "one desk is enough";
  Program tile(TILE_DOUBLE, {"--place=0,1,1"});
  ASSERT_TRUE(tile.says("visible 1"));
  EXPECT_EQ(tileWindow().y, 752);
  shell("xrandr --newmode s 60 1024 1048 1184 1344 700 703 709 720; xrandr --addmode screen s; "
        "xrandr --output screen --mode s");
  EXPECT_TRUE(eventually([] { return tileWindow().y == 700 - 48; })) << tileWindow().y;
  shell("xrandr --output screen --mode 1280x800");
  EXPECT_TRUE(eventually([] { return tileWindow().y == 800 - 48; })) << tileWindow().y;
}

TEST_F(Desktop, AttentionIsShownUntilTheUserComes) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--attention"});
  ASSERT_TRUE(tile.says("visible 1"));
  const Window window = tileWindow();
  EXPECT_TRUE(eventually([&] { return hasRing(window); }));
  // Without one nobody takes it back.
  if (hasWindowManager()) {
    EXPECT_TRUE(eventually([&] { return isUrgent(window); }));
  }
  EXPECT_TRUE(eventually([&] { return tileWindow().y == 752; })) << "comes to rest";
  click(window.centre());
  ASSERT_TRUE(tile.says("opened"));
  EXPECT_TRUE(eventually([&] { return !hasRing(window); }));
  if (hasWindowManager()) {
    EXPECT_TRUE(eventually([&] { return !isUrgent(window); }));
  }
}

TEST_F(Desktop, NobodyIsCalledWhoIsHere) {
  Program tile(TILE_DOUBLE, {"--place=0,1,1", "--attention=panel"});
  ASSERT_TRUE(tile.says("visible 1"));
  const Window window = tileWindow();
  click(window.centre());
  ASSERT_TRUE(tile.says("opened"));
  // A second click is answered after what the first one asked for has been drawn.
  click(window.centre());
  ASSERT_TRUE(tile.says("closed"));
  EXPECT_FALSE(hasRing(window));
  EXPECT_FALSE(isUrgent(window));
}

TEST_F(Desktop, TheTileHopsAwayFromItsEdge) {
  if (hasWindowManager())
    GTEST_SKIP() << "it tells of places in its own frame";
  struct Case {
    const char* edge;
    std::function<bool(int x, int y, const Window& home)> isInwards;
  };
  const Case cases[] = {
      {"left", [](int x, int y, const Window& home) { return x >= home.x && y == home.y; }},
      {"right", [](int x, int y, const Window& home) { return x <= home.x && y == home.y; }},
      {"bottom", [](int x, int y, const Window& home) { return x == home.x && y <= home.y; }}};
  for (const auto& [edge, isInwards] : cases) {
    SCOPED_TRACE(edge);
    shell("mkdir -p ~/Library/Preferences; echo '<plist version=\"1.0\"><dict><key>orientation"
          "</key><string>" +
          std::string(edge) +
          "</string></dict></plist>' > ~/Library/Preferences/com.apple.dock.plist");
    Program tile(TILE_DOUBLE, {"--place=0,1,1", "--button", "--attention=button"});
    ASSERT_TRUE(tile.says("visible 1"));
    const Window home = tileWindow();
    Program watch("/usr/bin/xev", {"-id", QString::fromStdString(home.id), "-event", "structure"});
    // Whatever came before the other program watched is not seen: asked for again.
    ASSERT_TRUE(eventually([&] {
      click(std::to_string(home.x + 12) + " " + std::to_string(home.y + 24));
      return watch.number("ConfigureNotify") > 3;
    }));
    int seen = 0;
    for (const QByteArray& line : watch.output().split('\n')) {
      int x = 0;
      int y = 0;
      const auto start = line.indexOf('(');
      if (start < 0 || std::sscanf(line.constData() + start, "(%d,%d)", &x, &y) != 2)
        continue;
      ++seen;
      EXPECT_TRUE(isInwards(x, y, home)) << x << "," << y;
    }
    EXPECT_GT(seen, 0);
  }
  shell("rm -r ~/Library");
}

TEST_F(Desktop, FilesAreRefusedWhileTheyHover) {
  shell("touch ~/one.txt");
  for (const bool takes : {true, false}) {
    SCOPED_TRACE(takes);
    Program tile(TILE_DOUBLE,
                 takes ? QStringList{"--place=0,1,1"} : QStringList{"--place=0,1,1", "--no-files"});
    ASSERT_TRUE(tile.says("visible 1"));
    const Window window = tileWindow();
    Program source(DRAG_DOUBLE, {"file:///tmp/one.txt"});
    ASSERT_TRUE(source.says("ready"));
    visibleWindow("drag double");
    ASSERT_TRUE(eventually([&] {
      shell("xdotool mousemove 80 90 mousedown 1 mousemove 90 90 sleep .1 mousemove 100 200 "
            "sleep .1 mousemove " +
            window.centre() +
            " sleep .1 mousemove_relative 1 1 sleep .1 mousemove_relative -- -1 -1 sleep .3 "
            "mouseup 1");
      return tile.number("asked") > 0 &&
             source.number(takes ? "dragged copy" : "dragged other") > 0;
    })) << source.output().toStdString();
    // What hovers learns before it is dropped; a drop is sent to those alone who would have taken
    // it.
    if (takes) {
      EXPECT_TRUE(tile.says("open "));
    } else {
      EXPECT_EQ(tile.number("open "), 0);
    }
  }
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
