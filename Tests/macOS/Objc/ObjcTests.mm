#include "Tests/macOS/Fakes/AppKitFakes.h"

#include "TavrinPlatform/macOS/Slot/MacApplication.h"
#include "TavrinPlatform/macOS/Tile/MacDockTile.h"
#include "TavrinPlatform/macOS/Tile/MacPanelPopover.h"
#include "TavrinPlatform/macOS/Tile/MacPicture.h"

#include <QApplication>
#include <QImage>
#include <QWidget>
#include <cstdio>

extern "C" int tavrin_print_live();
extern "C" int tavrin_live(const char* name);
@interface NSNotificationCenter (Fake)
- (void)post:(NSString*)name;
@end

namespace tavrin {
CGImageRef makePicture(const QImage& image) { return image.isNull() ? nullptr : reinterpret_cast<CGImageRef>(8); }
} // namespace tavrin

namespace {
int failures = 0;
using Calls = std::vector<std::string>;
void expect(bool holds, const char* what) {
  if (holds) return;
  ++failures;
  std::printf("FAILED: %s; calls:", what);
  for (const auto& call : calls) std::printf(" [%s]", call.c_str());
  std::printf("\n");
}
bool told(const Calls& wanted) { const bool same = calls == wanted; if (same) calls.clear(); return same; }

void tiles() {
  tavrin::MacDockTile tile;
  expect(tile.format() == tavrin::DockTile::Format{128, 1, 2}, "format of the finest screen");
  tile.display(QImage(256, 256, QImage::Format_ARGB32_Premultiplied));
  expect(told({"image 128", "picture released", "display"}), "a picture is shown and let go of");
  NSView* first = NSApplication.sharedApplication.dockTile.contentView;
  tile.display(QImage(256, 256, QImage::Format_ARGB32_Premultiplied));
  expect(NSApplication.sharedApplication.dockTile.contentView == first, "one view for all pictures");
  calls.clear();
  int changes = 0;
  tile.onVisibilityChange = [&] { ++changes; };
  [NSWorkspace.sharedWorkspace.notificationCenter post:NSWorkspaceScreensDidSleepNotification];
  expect(!tile.isVisible() && changes == 1, "screens asleep");
  [NSWorkspace.sharedWorkspace.notificationCenter post:NSWorkspaceScreensDidWakeNotification];
  expect(tile.isVisible() && changes == 2, "screens awake");
}

void panels() {
  tavrin::MacPanelPopover popover;
  calls.clear();
  int closed = 0;
  popover.onClose = [&] { ++closed; };
  popover.setContent(new QWidget);
  popover.setContentSize({200, 100});
  frontmost = 33;
  popover.show({5, 62}, tavrin::RectEdge::maxY);
  expect(told({"origin 5,62", "anchor front at level 21", "activate self", "popover 1 edge 3"}) ||
         told({"origin 5,62", "anchor front at level 21", "activate self", "popover 1 edge 3", "key"}), "opening");
  popover.close();
  expect(told({"perform close", "anchor out", "activate 33 with 0"}) && closed == 1, "the focus goes back");
  frontmost = self_;
  popover.show({5, 62}, tavrin::RectEdge::minX);
  calls.clear();
  popover.close();
  expect(told({"perform close", "anchor out"}), "nobody to go back to");
  frontmost = 33;
  popover.show({5, 62}, tavrin::RectEdge::maxY);
  calls.clear();
  frontmost = 44; // the user went elsewhere
  popover.close();
  expect(told({"perform close", "anchor out"}) && closed == 3, "another application took the focus itself");
}

void applications() {
  calls.clear();
  @autoreleasepool {
    tavrin::MacApplication application({"slot", "--background"});
    expect(told({"policy 0"}), "a regular application");
    id<NSApplicationDelegate> delegate = NSApplication.sharedApplication.delegate;
    expect(delegate != nil, "the delegate is kept");
    std::vector<std::filesystem::path> opened;
    int reopened = 0, resigned = 0;
    application.onReopen = [&] { ++reopened; };
    application.onResignActive = [&] { ++resigned; };
    application.onOpenFiles = [&](const auto& files) { opened = files; return files.size() < 2; };
    NSArray* two = [[FakeArray alloc] initWith:{@"/a", @"/b"}];
    NSArray* one = [[FakeArray alloc] initWith:{@"/c"}];
    [delegate application:NSApplication.sharedApplication openFiles:one];
    expect(told({"reply 0"}) && opened.empty(), "files before the launch are kept");
    [delegate applicationDidFinishLaunching:(NSNotification*)nil];
    expect(opened == std::vector<std::filesystem::path>{"/c"}, "and given then");
    [delegate application:NSApplication.sharedApplication openFiles:two];
    expect(told({"reply 2"}) && opened.size() == 2, "refused files");
    expect(![delegate applicationShouldHandleReopen:NSApplication.sharedApplication hasVisibleWindows:NO] && reopened == 1, "reopen");
    [delegate applicationDidResignActive:(NSNotification*)nil];
    expect(resigned == 1, "resign");
    application.requestUserAttention();
    application.cancelUserAttention();
    application.cancelUserAttention();
    expect(told({"attention 0", "cancel 5"}), "attention");
  }
  expect(NSApplication.sharedApplication.delegate == nil, "the delegate goes with the application");
}
} // namespace

int main(int argc, char** argv) {
  QApplication toolkit(argc, argv);
  @autoreleasepool { tiles(); }
  @autoreleasepool { panels(); }
  @autoreleasepool { applications(); }
  NSApplication.sharedApplication.dockTile.contentView = nil;
  for (const char* name : {"NSPopover", "NSPanel", "NSView", "NSImageView", "NSImage", "NSViewController",
                           "TavrinPopoverDelegate", "TavrinApplicationDelegate", "FakeObservation", "block"})
    if (tavrin_live(name) != 0) { std::printf("FAILED: %d %s left\n", tavrin_live(name), name); ++failures; }
  std::printf("%s\n", failures == 0 ? "PASSED" : "NOT PASSED");
  return failures != 0;
}
