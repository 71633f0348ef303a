#include "TavrinPlatform/macOS/Tile/MacDockTile.h"

#include "TavrinPlatform/macOS/Base/MacObservation.h"
#include "TavrinPlatform/macOS/Tile/MacPicture.h"

#import <AppKit/AppKit.h>

#include <algorithm>

namespace tavrin {

namespace {

constexpr CGFloat usualTile = 128;

CGFloat finestScale() {
  CGFloat scale = 1;
  for (NSScreen* screen in NSScreen.screens)
    scale = std::max(scale, screen.backingScaleFactor);
  return scale;
}

} // namespace

struct MacDockTile::Parts {
  explicit Parts(MacDockTile& tile)
      : sleep(workspace(), NSWorkspaceScreensDidSleepNotification, [&tile] { tile.wake(false); }),
        wake(workspace(), NSWorkspaceScreensDidWakeNotification, [&tile] { tile.wake(true); }),
        screens(NSNotificationCenter.defaultCenter,
                NSApplicationDidChangeScreenParametersNotification, [&tile] {
                  if (tile.onFormatChange)
                    tile.onFormatChange();
                }) {}

  static NSNotificationCenter* workspace() {
    return NSWorkspace.sharedWorkspace.notificationCenter;
  }

  NSImageView* view = nil;
  bool areScreensAwake = true;
  MacObservation sleep;
  MacObservation wake;
  MacObservation screens;
};

MacDockTile::MacDockTile() : parts_(std::make_unique<Parts>(*this)) {}

MacDockTile::~MacDockTile() = default;

void MacDockTile::wake(bool areScreensAwake) {
  parts_->areScreensAwake = areScreensAwake;
  if (onVisibilityChange)
    onVisibilityChange();
}

DockTile::Format MacDockTile::format() const {
  const NSSize size = NSApplication.sharedApplication.dockTile.size;
  return {.tileSize = size.width >= 1 ? size.width : usualTile, .span = 1, .scale = finestScale()};
}

void MacDockTile::setPlace(const Place&) {}

void MacDockTile::setLabel(const std::string& name, const std::string& value) {
  // The Dock shows and speaks the bundle's name; only the picture can be told about.
  (void)name;
  (void)value;
}

void MacDockTile::display(const QImage& image) {
  NSDockTile* tile = NSApplication.sharedApplication.dockTile;
  const NSSize size = tile.size;
  if (parts_->view == nil) {
    parts_->view = [[NSImageView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
    parts_->view.imageScaling = NSImageScaleAxesIndependently;
    tile.contentView = parts_->view;
  }
  CGImageRef picture = makePicture(image);
  if (picture == nullptr)
    return;
  parts_->view.image = [[NSImage alloc] initWithCGImage:picture size:size];
  CGImageRelease(picture);
  [tile display];
}

bool MacDockTile::isVisible() const {
  return parts_->areScreensAwake;
}

} // namespace tavrin
