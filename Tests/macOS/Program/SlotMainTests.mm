#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Widgets/WidgetsFile.h"
#include "TavrinPlatform/CommandPlatform.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/macOS/Fakes/MachineFakes.h"

#include <QGuiApplication>
#include <QLocale>
#include <QTimer>
#include <algorithm>

extern "C" int tavrinSlotMain(int argc, char** argv);

/// Whole programs, from where they begin to where they end.
namespace tavrin::test {
namespace {

/// What the system does with the program once its loop runs.
std::function<void()> inTheLoop;

void whenThereIsAnApplication() {
  QTimer::singleShot(0, qApp, [] {
    if (inTheLoop)
      inTheLoop();
  });
}

class MacProgramTest : public testing::Test {
protected:
  MacProgramTest() {
    foundation = {};
    foundation.information["CFBundleIdentifier"] = @"dev.quellby.Tavrin.Slot3";
    foundation.information["TavrinSlot"] = @3;
    foundation.environment["TAVRIN_APP_SUPPORT_DIR"] = folder_.path().string();
    appKit = {};
    frontmost = 33;
    calls.clear();
    [[maybe_unused]] static const bool isKnown = (qAddPreRoutine(whenThereIsAnApplication), true);
  }
  ~MacProgramTest() override {
    inTheLoop = nullptr;
    appKit = {};
    foundation = {};
  }
  static id<NSApplicationDelegate> delegate() { return NSApplication.sharedApplication.delegate; }
  void write(int slot) const {
    writeJSONFile(folder_ / "widgets.json",
                  encode(WidgetsFile{1, {{UUID::random(), "Mine", slot, TimerSettings{}, 1}}, {}}));
  }
  int run(std::vector<std::string> words, std::function<void()> loop) {
    inTheLoop = std::move(loop);
    std::vector<char*> pointers;
    for (auto& word : words)
      pointers.push_back(word.data());
    return tavrinSlotMain(int(pointers.size()), pointers.data());
  }
  static int count(const Calls& all, const std::string& call) {
    return int(std::count(all.begin(), all.end(), call));
  }
  /// What was called since, less what tells of the tile's pictures.
  static Calls calledOfPanel() {
    Calls all = called();
    std::erase_if(all, [](const std::string& call) {
      return !call.starts_with("popover") && !call.starts_with("perform") && !call.starts_with("activate");
    });
    return all;
  }

  TemporaryFolder folder_;
};

TEST_F(MacProgramTest, ASlotStartsBehindShowsItsTileAndOpensOnAClick) {
  write(3);
  bool hasRun = false;
  const int status = run({"TavrinSlot", "--background"}, [&] {
    hasRun = true;
    const Calls begin = called();
    EXPECT_EQ(count(begin, "policy 0"), 1) << "a tile in the Dock";
    EXPECT_EQ(count(begin, "center"), 1) << "whoever tells of chosen notices is there before the launch is over";
    EXPECT_EQ(count(begin, "display"), 0);
    [delegate() applicationDidFinishLaunching:nil];
    const Calls launch = called();
    EXPECT_GE(count(launch, "display"), 1);
    EXPECT_EQ(count(launch, "activate self"), 0) << "nobody's focus is taken";
    [delegate() applicationShouldHandleReopen:NSApplication.sharedApplication hasVisibleWindows:NO];
    EXPECT_EQ(calledOfPanel(), (Calls{"activate self", "popover 1 edge 3"}));
    [delegate() applicationDidResignActive:nil];
    EXPECT_EQ(calledOfPanel(), (Calls{"perform close", "activate 33 with 0"}));
    // Its widget goes, and so does it.
    write(4);
    [NSDistributedNotificationCenter.defaultCenter post:@"dev.quellby.tavrin.widgetsChanged" object:nil info:nil];
  });
  EXPECT_TRUE(hasRun);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(lastPopover == nil) << "the panel went with it";
  EXPECT_EQ([NSDistributedNotificationCenter.defaultCenter observers], 0U);
}

TEST_F(MacProgramTest, ASlotOfNoWidgetEndsByItselfAndOneThatTheUserStartsOpens) {
  EXPECT_EQ(run({"TavrinSlot", "--background"}, [&] { [delegate() applicationDidFinishLaunching:nil]; }), 0);
  write(3);
  EXPECT_EQ(run({"TavrinSlot"},
                [&] {
                  called();
                  [delegate() applicationDidFinishLaunching:nil];
                  EXPECT_EQ(count(called(), "popover 1 edge 3"), 1);
                  QCoreApplication::quit();
                }),
            0);
}

TEST_F(MacProgramTest, DirectionsAndNumbersFollowTheLanguageOfTheTexts) {
  write(3);
  ::setenv("TAVRIN_LANGUAGE", "ar_EG", 1);
  bool hasRun = false;
  run({"TavrinSlot", "--background"}, [&] {
    hasRun = true;
    EXPECT_EQ(textLanguage(), "ar");
    EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(QLocale().language(), QLocale::Arabic);
    EXPECT_TRUE(QLocale().zeroDigit() == QLatin1String("0")) << "as all other numbers of the program";
    QCoreApplication::quit();
  });
  EXPECT_TRUE(hasRun);
  ::unsetenv("TAVRIN_LANGUAGE");
  useTexts(nullptr, "en");
  QGuiApplication::setLayoutDirection(Qt::LeftToRight);
  QLocale::setDefault(QLocale::c());
}

TEST_F(MacProgramTest, ACommandThatNeedsKeysHasNoTile) {
  const auto platform = makeCommandPlatform();
  EXPECT_EQ(called(), Calls{}) << "only a command that needs the loop makes it";
  platform->dockServices().globalShortcuts();
  const Calls made = called();
  EXPECT_EQ(count(made, "policy 2"), 1) << "prohibited";
  EXPECT_EQ(count(made, "policy 0"), 0);
  int turns = 0;
  inTheLoop = nullptr;
  platform->dockServices().runUntilStopped([&] {
    ++turns;
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
  });
  EXPECT_EQ(turns, 1);
}

} // namespace
} // namespace tavrin::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
