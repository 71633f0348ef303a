#pragma once

#include "TavrinPlatform/DockGeometry.h"

#include <filesystem>
#include <functional>

namespace tavrin {

/// "com.apple.dock.plist" in the Library/Preferences folder under `home`.
std::filesystem::path dockPreferencesFile(const std::filesystem::path& home);
DockPreferences readDockPreferences(const std::filesystem::path& home);

/// The strip stands for the Dock. Panels open where `pointer` says, so it answers the place of
/// the click that is being answered, and the tile's own centre when the panel is asked for in
/// another way, wherever the pointer may be then.
class LinuxDockGeometry final : public DockGeometry {
public:
  /// Each may have no answer.
  struct Sources {
    std::function<std::optional<Rect>()> stripFrame;
    /// The strip's tile size once it has been fitted to the screen.
    std::function<std::optional<double>()> stripTileSize;
    std::function<std::optional<Point>()> tileAnchor;
    /// The tile's own place in the strip.
    std::function<std::optional<Rect>()> tileFrame;
  };
  LinuxDockGeometry(std::filesystem::path home, Sources sources)
      : home_(std::move(home)), sources_(std::move(sources)) {}

  std::optional<Rect> dockFrame() const override { return sources_.stripFrame(); }
  std::optional<Point> ownTileCenter() const override;
  DockPreferences preferences() const override;
  Point pointer() const override;
  std::vector<ScreenFrames> screens() const override;
  std::optional<ScreenFrames> mainScreen() const override;

private:
  std::filesystem::path home_;
  Sources sources_;
};

} // namespace tavrin
