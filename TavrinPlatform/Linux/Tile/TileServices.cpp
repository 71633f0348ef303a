#include "TavrinPlatform/Linux/Tile/TileServices.h"

#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Tile/StripSurface.h"
#include "TavrinPlatform/Linux/Tile/TraySurface.h"
#include "TavrinPlatform/Linux/Tile/WatchedSurface.h"
#include "TavrinPlatform/Qt/PictureSurface.h"

#include <QGuiApplication>

namespace tavrin {

namespace {

/// For how long a bus is asked whether somebody shows tray icons.
constexpr double watcherLimit = 0.2;

} // namespace

LinuxDockTile& TileServices::tile() {
  if (tile_)
    return *tile_;
  std::vector<std::unique_ptr<TileSurface>> surfaces;
  const SurfaceChoice choice = this->choice();
  for (const auto& name : choice.surfaces)
    if (auto surface = makeSurface(name))
      surfaces.push_back(std::move(surface));
  if (surfaces.empty())
    surfaces.push_back(makeSurface("picture"));
  if (environment_.bus != nullptr)
    surfaces.push_back(
        std::make_unique<WatchedSurface>(*environment_.bus, environment_.identifier));
  // Without a display nobody sees a notice either.
  if (choice.isMakeshift && (environment_.displays.hasX11 || environment_.displays.hasWayland))
    environment_.toldMakeshift(choice.reason);
  LinuxDockTile::Requests requests;
  requests.reopen = environment_.reopen;
  requests.takesFiles = environment_.takesFiles;
  requests.openFiles = environment_.openFiles;
  requests.hasJustClosedPanel = [this](Point place) {
    return popover_ && popover_->hasJustBeenClosedAt(place);
  };
  requests.hasDrawnMuch = environment_.hasDrawnMuch;
  tile_ = std::make_unique<LinuxDockTile>(std::move(surfaces), std::move(requests));
  return *tile_;
}

DockGeometry& TileServices::geometry() {
  if (geometry_)
    return *geometry_;
  LinuxDockGeometry::Sources sources;
  sources.stripFrame = [this] { return strip_ ? strip_->stripFrame() : std::nullopt; };
  sources.stripTileSize = [this] {
    return strip_ ? std::optional(strip_->tileSize()) : std::nullopt;
  };
  sources.tileFrame = [this] { return strip_ ? strip_->frame() : std::nullopt; };
  sources.tileAnchor = [this] { return tile_ ? tile_->anchor() : std::nullopt; };
  geometry_ =
      std::make_unique<LinuxDockGeometry>(environment_.files.homeFolder(), std::move(sources));
  return *geometry_;
}

QtPanelPopover& TileServices::popover() {
  if (popover_)
    return *popover_;
  QtPanelPopover::Environment environment;
  environment.prefersReducedMotion = [this] {
    return environment_.workspace().prefersReducedMotion();
  };
  environment.prefersDarkAppearance = [this] {
    return environment_.workspace().prefersDarkAppearance();
  };
  environment.resignedActive = environment_.resignedActive;
  environment.hasClosed = environment_.hasDrawnMuch;
  environment.layers = [this] { return strip_ ? layers() : nullptr; };
  environment.strip = [this]() -> QRect {
    const auto frame = strip_ ? strip_->stripFrame() : std::nullopt;
    if (!frame)
      return {};
    const QPointF corner = toolkitPoint({frame->x, frame->y + frame->height});
    return QRectF(corner, QSizeF(frame->width, frame->height)).toAlignedRect();
  };
  environment.shownChanged = [this](bool isShown) {
    if (!strip_)
      return;
    strip_->autohide().hold(StripAutohide::panel, isShown);
    // The first of two to have it to itself would keep it.
    if (isShown)
      strip_->window().holdKeys(false);
  };
  environment.isOnCompositor = environment_.displays.hasWayland;
  environment.hasTileKeys = [this] { return keyboard_ && keyboard_->hasIt(); };
  environment.resumeTileKeys = [this] { keyboard_->resume(); };
  popover_ = std::make_unique<QtPanelPopover>(std::move(environment));
  return *popover_;
}

bool TileServices::takeKeyboard(const std::string& object) {
  if (!keyboard_)
    return false;
  // A hidden tile has to come first, and has none to keep it before it has the keyboard.
  strip_->autohide().touch();
  return keyboard_->take(object);
}

LayerShell* TileServices::layers() {
  if (!hasAskedForLayers_ && environment_.makeLayers) {
    hasAskedForLayers_ = true;
    layers_ = environment_.makeLayers();
  }
  return layers_.get();
}

SurfaceChoice TileServices::choice() {
  const auto wish = environment_.files.environment("TAVRIN_SURFACE").value_or("");
  DesktopFacts facts = environment_.displays;
  // What the compositor has is of use where the toolkit's windows can be brought to it.
  if (layers() == nullptr)
    std::erase(facts.waylandGlobals, layerShellGlobal);
  facts.hasBus = environment_.bus != nullptr && environment_.bus->isOpen();
  SurfaceChoice choice = chooseSurface(facts, wish);
  if (!choice.isMakeshift)
    return choice;
  // Only now: the bus takes a while to answer.
  facts.hasTrayHost = hasTray();
  return chooseSurface(facts, wish);
}

bool TileServices::hasTray() const {
  Bus* bus = environment_.bus;
  if (bus == nullptr || !bus->isOpen())
    return false;
  BusMessage question = bus->method(busDaemon, "NameHasOwner");
  const auto answer = bus->ask(question.append("s", "org.kde.StatusNotifierWatcher"), watcherLimit);
  int isThere = 0;
  if (answer)
    sd_bus_message_read(answer.get(), "b", &isThere);
  return isThere != 0;
}

std::unique_ptr<TileSurface> TileServices::makeStrip() {
  StripSurface::Environment environment;
  environment.preferences = [this] { return readDockPreferences(environment_.files.homeFolder()); };
  environment.prefersReducedMotion = [this] {
    return environment_.workspace().prefersReducedMotion();
  };
  environment.arrangement = [this]() -> std::optional<StripArrangement> {
    DesktopFacts facts = environment_.displays;
    facts.windowManager = readWindowManager(x11::connection());
    if (!facts.windowManager)
      return std::nullopt;
    // The surface is made: only what becomes of a strip is asked.
    return chooseSurface(facts, "strip").arrangement;
  };
  environment.layers = layers();
  environment.bus = environment_.bus;
  environment.managerChanged = [this] {
    if (popover_)
      popover_->managerChanged();
  };
  auto strip = std::make_unique<StripSurface>(std::move(environment));
  strip_ = strip.get();
  if (environment_.bus != nullptr) {
    accessibility_ = std::make_unique<AccessibilitySwitch>(*environment_.bus, strip->window());
    keyboard_ =
        std::make_unique<TileKeyboard>(*environment_.bus, strip->window(), environment_.identifier);
  }
  if (keyboard_) {
    keyboard_->onHold = [this](bool isWanted) {
      strip_->autohide().hold(StripAutohide::keyboard, isWanted);
    };
    keyboard_->onMenu = [this] {
      if (tile_ && tile_->onMenu)
        tile_->onMenu();
    };
  }
  preferences_ = std::make_unique<DockPreferencesWatch>(environment_.files.homeFolder(),
                                                        [this] { strip_->preferencesChanged(); });
  return strip;
}

std::unique_ptr<TileSurface> TileServices::makeSurface(const std::string& name) {
  if (name == "strip" && QGuiApplication::platformName() != QLatin1String("offscreen"))
    return makeStrip();
  if (name == "tray" && environment_.bus != nullptr)
    return std::make_unique<TraySurface>(*environment_.bus, environment_.identifier);
  if (name != "picture")
    return nullptr;
  return std::make_unique<PictureSurface>(
      environment_.pictureFolder() / (environment_.identifier + ".png"),
      readDockPreferences(environment_.files.homeFolder()).tileSize, environment_.log);
}

} // namespace tavrin
