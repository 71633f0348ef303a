#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/Linux/Base/LayerShell.h"
#include "TavrinPlatform/Linux/Base/SurfaceChoice.h"
#include "TavrinPlatform/Linux/Tile/DockPreferencesWatch.h"
#include "TavrinPlatform/Linux/Tile/LinuxDockGeometry.h"
#include "TavrinPlatform/Linux/Tile/LinuxDockTile.h"
#include "TavrinPlatform/Linux/Tile/QtPanelPopover.h"
#include "TavrinPlatform/Linux/Tile/TileAccessibility.h"
#include "TavrinPlatform/Linux/Tile/TileKeyboard.h"
#include "TavrinPlatform/Workspace.h"

namespace tavrin {

class StripSurface;

/// The tile, its place, and the panel that opens at it. A member is made when first asked for.
class TileServices {
public:
  /// All outlive the services.
  struct Environment {
    const FileManager& files;
    LogSink& log;
    /// May be null.
    Bus* bus;
    std::string identifier;
    /// As they were when the toolkit was started.
    DesktopFacts displays;
    std::function<Workspace&()> workspace;
    /// Where the picture surface writes.
    std::function<std::filesystem::path()> pictureFolder;
    std::function<void()> reopen;
    /// Whether `openFiles` may take any, asked while they hover.
    std::function<bool()> takesFiles;
    std::function<bool(const std::vector<std::filesystem::path>&)> openFiles;
    std::function<void()> resignedActive;
    /// Something less than a strip stands in for one; a sentence says why.
    std::function<void(const std::string& reason)> toldMakeshift;
    /// The compositor's layer shell; null where there is none.
    std::function<std::unique_ptr<LayerShell>()> makeLayers;
    /// Much was drawn, or a panel was closed: there is memory to give back.
    std::function<void()> hasDrawnMuch;
  };

  explicit TileServices(Environment environment) : environment_(std::move(environment)) {}

  LinuxDockTile& tile();
  DockGeometry& geometry();
  QtPanelPopover& popover();

  /// Has the keyboard come to the tile, for an object as tiles hand it on. False where it cannot.
  bool takeKeyboard(const std::string& object);

  bool isPanelShown() const { return popover_ && popover_->isShown(); }
  void setAttention(bool isWanted) {
    if (tile_)
      tile_->setAttention(isWanted);
  }

private:
  SurfaceChoice choice();
  /// Null where there is none.
  LayerShell* layers();
  std::unique_ptr<TileSurface> makeSurface(const std::string& name);
  std::unique_ptr<TileSurface> makeStrip();
  bool hasTray() const;

  Environment environment_;
  std::unique_ptr<LayerShell> layers_;
  bool hasAskedForLayers_ = false;
  /// The tile's, where it has one.
  StripSurface* strip_ = nullptr;
  std::unique_ptr<LinuxDockTile> tile_;
  std::unique_ptr<AccessibilitySwitch> accessibility_;
  std::unique_ptr<TileKeyboard> keyboard_;
  std::unique_ptr<DockPreferencesWatch> preferences_;
  std::unique_ptr<LinuxDockGeometry> geometry_;
  std::unique_ptr<QtPanelPopover> popover_;
};

} // namespace tavrin
