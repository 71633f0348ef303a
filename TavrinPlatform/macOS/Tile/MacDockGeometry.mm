#include "TavrinPlatform/macOS/Tile/MacDockGeometry.h"

#include "TavrinPlatform/Files/SharedLibrary.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

namespace tavrin {
namespace {

constexpr const char* library =
    "/System/Library/Frameworks/ApplicationServices.framework/Frameworks/HIServices.framework/"
    "HIServices";

Rect toRect(NSRect rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

ScreenFrames framesOf(NSScreen* screen) {
  return {toRect(screen.frame), toRect(screen.visibleFrame)};
}

class MacDockGeometry final : public DockGeometry {
public:
  explicit MacDockGeometry(std::function<DockFrameFunction()> find) : find_(std::move(find)) {}

  std::optional<Rect> dockFrame() const override {
    const DockFrameFunction ask = find_();
    if (ask == nullptr)
      return std::nullopt;
    CGRect frame{};
    ask(&frame);
    NSScreen* first = NSScreen.screens.firstObject;
    if (!(frame.size.width > 0) || first == nil)
      return std::nullopt;
    const double bottom = frame.origin.y + frame.size.height;
    return Rect{frame.origin.x, first.frame.size.height - bottom, frame.size.width,
                frame.size.height};
  }

  DockPreferences preferences() const override {
    DockPreferences found;
    NSUserDefaults* dock = [[NSUserDefaults alloc] initWithSuiteName:@"com.apple.dock"];
    id orientation = [dock objectForKey:@"orientation"];
    if ([orientation isKindOfClass:NSString.class])
      found.orientation = toText((NSString*)orientation);
    id tileSize = [dock objectForKey:@"tilesize"];
    if ([tileSize isKindOfClass:NSNumber.class])
      found.setTileSize(((NSNumber*)tileSize).doubleValue);
    found.magnification = [dock boolForKey:@"magnification"];
    return found;
  }

  Point pointer() const override {
    const NSPoint place = NSEvent.mouseLocation;
    return {place.x, place.y};
  }

  std::vector<ScreenFrames> screens() const override {
    std::vector<ScreenFrames> all;
    for (NSScreen* screen in NSScreen.screens)
      all.push_back(framesOf(screen));
    return all;
  }

  std::optional<ScreenFrames> mainScreen() const override {
    NSScreen* screen = NSScreen.mainScreen;
    return screen != nil ? std::optional(framesOf(screen)) : std::nullopt;
  }

private:
  std::function<DockFrameFunction()> find_;
};

} // namespace

DockFrameFunction findDockFrameFunction() {
  DockFrameFunction function = nullptr;
  SharedLibrary({library}).find(function, "CoreDockGetRect");
  return function;
}

std::unique_ptr<DockGeometry> makeMacDockGeometry(std::function<DockFrameFunction()> find) {
  return std::make_unique<MacDockGeometry>(std::move(find));
}

} // namespace tavrin
