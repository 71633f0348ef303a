#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/Tile/MacDockGeometry.h"
#include "TavrinPlatform/macOS/Tile/MacDockTile.h"
#include "TavrinPlatform/macOS/Tile/MacPanelPopover.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace tavrin::test {
namespace {

using MacDockTileTest = MacTest;

TEST_F(MacDockTileTest, OneViewShowsEveryPictureAndNoneIsKept) {
  MacDockTile tile;
  EXPECT_EQ(tile.format(), (DockTile::Format{128, 1, 2})) << "the finest screen's";
  const QImage picture(256, 256, QImage::Format_ARGB32_Premultiplied);
  tile.display(picture);
  EXPECT_EQ(called(), (Calls{"image 128", "picture released", "display"}));
  NSView* first = NSApplication.sharedApplication.dockTile.contentView;
  tile.display(picture);
  EXPECT_TRUE(NSApplication.sharedApplication.dockTile.contentView == first);
  called();
  tile.display({});
  EXPECT_EQ(called(), Calls{});
}

TEST_F(MacDockTileTest, ScreensThatSleepOrChangeAreTold) {
  MacDockTile tile;
  tile.onVisibilityChange = [&] { note(tile.isVisible() ? "seen" : "unseen"); };
  tile.onFormatChange = [] { note("format"); };
  NSNotificationCenter* workspace = NSWorkspace.sharedWorkspace.notificationCenter;
  postNotice(workspace, NSWorkspaceScreensDidSleepNotification);
  postNotice(workspace, NSWorkspaceScreensDidWakeNotification);
  postNotice(NSNotificationCenter.defaultCenter,
             NSApplicationDidChangeScreenParametersNotification);
  EXPECT_EQ(called(), (Calls{"unseen", "seen", "format"}));
}

CGRect dockFrame;
using MacDockGeometryTest = MacTest;

TEST_F(MacDockGeometryTest, TheDocksFrameIsTurnedAndTestedAndAskedForEachTime) {
  int lookups = 0;
  DockFrameFunction function = [](CGRect* frame) { *frame = dockFrame; };
  const auto geometry = makeMacDockGeometry([&] { return ++lookups, function; });
  dockFrame = {{100, 840}, {600, 60}};
  EXPECT_EQ(geometry->dockFrame(), (Rect{100, 0, 600, 60}));
  dockFrame.size.width = 0;
  EXPECT_EQ(geometry->dockFrame(), std::nullopt);
  function = nullptr;
  EXPECT_EQ(geometry->dockFrame(), std::nullopt);
  EXPECT_EQ(lookups, 3);
  EXPECT_EQ(findDockFrameFunction(), nullptr) << "on this machine";
  EXPECT_EQ(geometry->pointer(), (Point{205, 3}));
  EXPECT_EQ(geometry->screens().size(), 2U);
  EXPECT_EQ(geometry->mainScreen()->visibleFrame, (Rect{0, 70, 1440, 805}));
}

TEST_F(MacDockGeometryTest, PreferencesOfWrongTypesAreLeftOut) {
  const auto geometry = makeMacDockGeometry();
  EXPECT_EQ(geometry->preferences().orientation, "bottom");
  EXPECT_EQ(geometry->preferences().tileSize, 48);
  auto& dock = foundation.defaults["com.apple.dock"];
  dock["orientation"] = @"left";
  dock["tilesize"] = @64;
  dock["magnification"] = @YES;
  EXPECT_EQ(geometry->preferences().orientation, "left");
  EXPECT_EQ(geometry->preferences().tileSize, 64);
  EXPECT_TRUE(geometry->preferences().magnification);
  dock["tilesize"] = @(1e9);
  EXPECT_EQ(geometry->preferences().tileSize, DockPreferences::largestTileSize);
  dock["tilesize"] = @"large";
  EXPECT_EQ(geometry->preferences().tileSize, 48);
}

class MacPanelPopoverTest : public MacTest {
protected:
  MacPanelPopoverTest() {
    popover_.onClose = [] { note("closed"); };
    popover_.setContent(new QWidget);
    popover_.setContentSize({200, 100});
    called();
  }
  void show() { popover_.show({5, 62}, RectEdge::maxY); }

  double uptime_ = 100;
  MacPanelPopover popover_{[this] { return uptime_; }};
};

TEST_F(MacPanelPopoverTest, OpensOverTheTileAndGivesTheFocusBack) {
  frontmost = 33;
  show();
  EXPECT_EQ(called(), (Calls{"origin 5,62", "anchor front at level 21", "activate self",
                             "popover 1 edge 3", "key"}));
  EXPECT_TRUE(popover_.isShown());
  show();
  EXPECT_EQ(called(), Calls{"origin 5,62"}) << "an open panel only follows the tile";
  popover_.close();
  EXPECT_EQ(called(), (Calls{"perform close", "anchor out", "activate 33 with 0", "closed"}));
  popover_.close();
  EXPECT_EQ(called(), Calls{});
}

TEST_F(MacPanelPopoverTest, NobodyIsActivatedWhoWasNotInFront) {
  // This process in front from the beginning: there is nobody to remember.
  frontmost = self_;
  show();
  called();
  popover_.close();
  EXPECT_EQ(called(), (Calls{"perform close", "anchor out", "closed"}));
  // No application in front at all.
  frontmost = 0;
  show();
  called();
  popover_.close();
  EXPECT_EQ(called(), (Calls{"perform close", "anchor out", "closed"}));
  // The user went elsewhere by himself.
  frontmost = 33;
  show();
  called();
  frontmost = 44;
  popover_.close();
  EXPECT_EQ(called(), (Calls{"perform close", "anchor out", "closed"}));
  // Whom one opening remembered the next forgets.
  frontmost = self_;
  show();
  called();
  popover_.close();
  EXPECT_EQ(called(), (Calls{"perform close", "anchor out", "closed"}));
}

TEST_F(MacPanelPopoverTest, EscapeClosesAndAClosingByItselfIsKnownForAMoment) {
  show();
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QCoreApplication::sendEvent(popover_.content(), &escape);
  EXPECT_FALSE(popover_.isShown());
  EXPECT_FALSE(popover_.hasJustClosedByItself()) << "it was asked to";
  show();
  [lastPopover performClose:nil]; // as the system does it
  EXPECT_TRUE(popover_.hasJustClosedByItself());
  uptime_ += 0.31;
  EXPECT_FALSE(popover_.hasJustClosedByItself());
}

using MacPanelPopoverLifeTest = MacTest;

TEST_F(MacPanelPopoverLifeTest, AnEndInTheMidstOfTheClosingIsSilent) {
  NSPopover* kept = nil;
  id<NSPopoverDelegate> delegate = nil;
  QPointer<QWidget> content = new QWidget;
  {
    MacPanelPopover popover([] { return 0.0; });
    popover.onClose = [] { FAIL() << "called after its end"; };
    popover.setContent(content);
    popover.show({0, 0}, RectEdge::maxX);
    kept = lastPopover;
    delegate = kept.delegate;
  }
  EXPECT_FALSE(content);
  EXPECT_FALSE(kept.isShown);
  EXPECT_TRUE(kept.delegate == nil);
  [delegate popoverDidClose:nil];
  lastPopover = nil;
}

} // namespace
} // namespace tavrin::test
