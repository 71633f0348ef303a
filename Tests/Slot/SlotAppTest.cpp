#include "TavrinSlot/SlotApp.h"
#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Kinds/System/PetSettings.h"

#include "TavrinPlatform/Files/AtomicFile.h"
#include "Tests/Support/FakePlatform.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

using testing::Contains;
using testing::HasSubstr;

/// A slot on a data folder of its own.
class SlotAppTest : public testing::Test {
protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() / ("tavrin-slot-" + UUID::random().text());
    std::filesystem::create_directories(folder_);
    platform_.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder_.string();
    platform_.bundle.integers["TavrinSlot"] = 3;
    platform_.bundle.strings["CFBundleIdentifier"] = "dev.quellby.Tavrin.Slot3";
    platform_.fakeApplication.args = {"TavrinSlot", "--background"};
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path file() const { return folder_ / "widgets.json"; }

  void write(const std::vector<DockWidget>& widgets) {
    writeJSONFile(file(), encode(WidgetsFile{1, widgets, {}}));
  }
  void announce() { platform_.center.post("dev.quellby.tavrin.widgetsChanged", std::nullopt); }

  static DockWidget widget(DockWidget::Kind kind, std::optional<int> slot = 3, int span = 1) {
    return {UUID::random(), "A widget", slot, std::move(kind), span};
  }

  FakePlatform platform_;
  std::filesystem::path folder_;
};

TEST_F(SlotAppTest, ShowsTheFirstWidgetOfItsSlot) {
  const auto other = widget(ClockSettings{}, 1, 2);
  const auto mine = widget(TimerSettings{}, 3, 2);
  write({other, mine, widget(NoteSettings{}, 3)});
  SlotApp app(platform_);
  app.applicationDidFinishLaunching();
  EXPECT_EQ(app.widget(), mine);
  EXPECT_GE(platform_.tile.displays, 1);
  EXPECT_EQ(platform_.tile.place, (DockTile::Place{2, 2, 4}));
  EXPECT_FALSE(platform_.fakePopover.shown);
  EXPECT_EQ(platform_.fakeApplication.terminations, 0);
}

TEST_F(SlotAppTest, OpensItsPanelAtOnceUnlessStartedInTheBackground) {
  write({widget(TimerSettings{})});
  platform_.fakeApplication.args = {"TavrinSlot", "--backgrounds"};
  SlotApp app(platform_);
  app.applicationDidFinishLaunching();
  EXPECT_TRUE(platform_.fakePopover.shown);
  EXPECT_FALSE(app.applicationShouldHandleReopen(true));
  EXPECT_FALSE(platform_.fakePopover.shown);
  app.applicationShouldHandleReopen(false);
  app.applicationDidResignActive();
  EXPECT_FALSE(platform_.fakePopover.shown);
}

TEST_F(SlotAppTest, QuitsWithAMessageWhenItsSlotIsEmpty) {
  const auto mine = widget(TimerSettings{});
  write({mine});
  SlotApp app(platform_);
  app.applicationDidFinishLaunching();
  auto moved = mine;
  moved.slot = 5;
  write({moved});
  announce();
  EXPECT_EQ(platform_.fakeApplication.terminations, 1);
  EXPECT_THAT(platform_.fakeLog.lines, Contains("info slot slot 3 has no widget; quitting"));
}

TEST_F(SlotAppTest, ABundleWithoutANumberAndAFolderThatCannotBeOpenedQuit) {
  write({widget(TimerSettings{}, 3)});
  platform_.bundle.integers.clear();
  SlotApp numberless(platform_);
  numberless.applicationDidFinishLaunching();
  EXPECT_THAT(platform_.fakeLog.lines, Contains("info slot slot 0 has no widget; quitting"));

  platform_.bundle.integers["TavrinSlot"] = 3;
  platform_.files.variables["TAVRIN_APP_SUPPORT_DIR"] = file().string();
  SlotApp storeless(platform_);
  storeless.applicationDidFinishLaunching();
  EXPECT_THAT(platform_.fakeLog.lines, Contains(HasSubstr("error slot slot 3: Failed to ")));
  EXPECT_THAT(platform_.fakeLog.lines, Contains("info slot slot 3 has no widget; quitting"));
}

TEST_F(SlotAppTest, AFileThatCannotBeReadLeavesEverythingAsItWas) {
  const auto mine = widget(TimerSettings{});
  write({mine});
  SlotApp app(platform_);
  app.applicationDidFinishLaunching();
  for (const std::string text : {"", "{", "[]", R"({"version":1})", "\xff"}) {
    std::ofstream(file()) << text;
    announce();
    EXPECT_EQ(app.widget(), mine);
    EXPECT_EQ(platform_.fakeApplication.terminations, 0) << text;
  }
  auto renamed = mine;
  renamed.name = "Tea";
  write({renamed});
  announce();
  EXPECT_EQ(app.widget(), renamed);
}

TEST_F(SlotAppTest, KeepsTheControllerWithinAKindAndAmongTheSimpleKinds) {
  struct Case {
    DockWidget::Kind before;
    DockWidget::Kind after;
    bool same;
  };
  const Case cases[] = {
      {TimerSettings{}, TimerSettings{{60}, "#30D158"}, true},
      {BatterySettings{}, ClockSettings{}, true},
      {StopwatchSettings{}, PetSettings{}, true},
      {NetworkSettings{}, CountdownSettings{}, true},
      {BatterySettings{}, EmojiSettings{}, false},
      {TimerSettings{}, PomodoroSettings{}, false},
      {NoteSettings{}, ClockSettings{}, false},
  };
  for (const auto& [before, after, same] : cases) {
    EXPECT_EQ(SlotApp::sameKind(before, after), same) << before.key() << ' ' << after.key();
    EXPECT_FALSE(SlotApp::sameKind(std::nullopt, after));
    auto record = widget(before);
    write({record});
    SlotApp app(platform_);
    app.applicationDidFinishLaunching();
    app.applicationShouldHandleReopen(false); // with the panel open all along
    const auto* controller = app.controller();
    record.kind = after;
    write({record});
    announce();
    if (same) {
      EXPECT_EQ(app.controller(), controller) << before.key() << ' ' << after.key();
    }
    ASSERT_NE(app.controller(), nullptr);
    EXPECT_NE(platform_.fakePopover.content(), nullptr) << "the panel shows the new widget";
    platform_.fakePopover.close();
  }
}

TEST_F(SlotAppTest, EveryKindStandsAndOpensItsPanel) {
  for (const auto& info : allKinds()) {
    const auto kind = freshKind(info.key, platform_.fakeClock.now());
    for (int span = 1; span <= info.maxSpan; ++span) {
      write({widget(*kind, 3, span)});
      SlotApp app(platform_);
      app.applicationDidFinishLaunching();
      app.applicationShouldHandleReopen(false);
      EXPECT_TRUE(platform_.fakePopover.shown) << info.key;
      EXPECT_GT(platform_.fakePopover.size.height(), 60) << info.key;
      EXPECT_FALSE(platform_.tile.name.empty()) << info.key << " has a name for everybody";
      platform_.loop.advance(3);
      platform_.fakePopover.close();
    }
  }
}

TEST_F(SlotAppTest, ATileOfAnotherSizeIsDrawnAgain) {
  write({widget(TimerSettings{})});
  SlotApp app(platform_);
  app.applicationDidFinishLaunching();
  platform_.tile.current = {128, 1, 2};
  platform_.tile.onFormatChange();
  EXPECT_EQ(platform_.tile.last.size(), QSize(256, 256));
}

TEST_F(SlotAppTest, AnOpenPanelFollowsItsTile) {
  write({widget(TimerSettings{})});
  SlotApp app(platform_);
  app.applicationDidFinishLaunching();
  app.applicationShouldHandleReopen(false);
  ASSERT_TRUE(platform_.fakePopover.shown);
  platform_.geometry.frame = Rect{100, 0, 400, 48};
  platform_.geometry.tileCenter = Point{300, 24};
  platform_.tile.onMove();
  EXPECT_EQ(platform_.fakePopover.anchor, (Point{300, 50}));
}

} // namespace
} // namespace tavrin::test
