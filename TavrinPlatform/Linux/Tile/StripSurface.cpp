#include "TavrinPlatform/Linux/Tile/StripSurface.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace tavrin {

namespace {

/// Tiles are designed down to this size, in points; a smaller one is a smaller picture of it.
constexpr double leastTileSize = 44;
/// Of the edge that fetches a hidden strip, in points.
constexpr double sensorDepth = 2;

QRect wholePoints(const QRectF& rect) {
  const QPoint topLeft(static_cast<int>(std::lround(rect.left())),
                       static_cast<int>(std::lround(rect.top())));
  const QPoint end(static_cast<int>(std::lround(rect.right())),
                   static_cast<int>(std::lround(rect.bottom())));
  return {topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y())};
}

/// The one that TAVRIN_STRIP_SCREEN names, as the display calls its outputs; else the first.
const QScreen* chosenScreen() {
  const QString wanted = qEnvironmentVariable("TAVRIN_STRIP_SCREEN");
  for (const QScreen* screen : QGuiApplication::screens())
    if (!wanted.isEmpty() && screen->name() == wanted)
      return screen;
  return QGuiApplication::primaryScreen();
}

Qt::Edge toolkitEdge(StripEdge edge) {
  if (edge == StripEdge::left)
    return Qt::LeftEdge;
  return edge == StripEdge::right ? Qt::RightEdge : Qt::BottomEdge;
}

StripEdge edgeOf(const DockPreferences& preferences) {
  if (preferences.orientation == "left")
    return StripEdge::left;
  return preferences.orientation == "right" ? StripEdge::right : StripEdge::bottom;
}

} // namespace

StripSurface::StripSurface(Environment environment)
    : environment_(std::move(environment)),
      doesReserve_(qEnvironmentVariable("TAVRIN_STRIP_RESERVES") != QLatin1String("0")),
      arrangement_(environment_.arrangement().value_or(StripArrangement::docks)),
      room_(doesReserve_, [this] { arrange(); }), bar_(
                                                      [this] {
                                                        arrange();
                                                        stacking_.again();
                                                      },
                                                      [this] { stacking_.atOnce(); }),
      stacking_([this] { return standing(); }, [this] { managerChanged(); }),
      sensor_([this] { autohide_.touch(); }), autohide_(environment_.bus, [this] { comeOrGo(); }) {
  window_.onMake = [this](bool isUnmanaged) { stacking_.begin(isUnmanaged); };
  window_.onClick = [this](QPointF place) {
    if (isAway_) {
      autohide_.touch();
      return;
    }
    // On Wayland no window knows where it stands.
    const bool isLayer = environment_.layers != nullptr;
    const QRectF tile = isLayer ? layout_.tile : QRectF(window_.geometry());
    const bool isInside = place.x() >= 0 || place.y() >= 0;
    const QPointF pointer = isLayer ? tile.topLeft() + place : QCursor::pos();
    const bool isAtPointer = isInside && tile.contains(pointer);
    events.clicked(isInside ? std::optional(place / shrinking_) : std::nullopt,
                   screenPoint(isAtPointer ? pointer : tile.center()));
  };
  window_.onHover = [this](QPointF place) { return events.hovered(place / shrinking_); };
  window_.takesFiles = [this] { return events.takesFiles(); };
  window_.onDrop = [this](const auto& files) { return events.dropped(files); };
  window_.onExpose = [this] { tellVisibility(); };
  window_.onPointer = [this](bool isInside) {
    isPointerIn_ = isInside;
    pointerMoved();
  };
  window_.onDragOver = [this](bool isOver) { autohide_.hold(StripAutohide::drag, isOver); };
  autohide_.setWanted(environment_.preferences().autohide);
  watchScreens();
}

void StripSurface::preferencesChanged() {
  autohide_.setWanted(environment_.preferences().autohide);
  arrange();
}

void StripSurface::tellVisibility() {
  if (std::exchange(wasVisible_, isVisible()) != wasVisible_ && events.visibilityChanged)
    events.visibilityChanged();
}

xcb_window_t StripSurface::standing() const {
  if (isAway_)
    return sensor_.window();
  return window_.handle() != nullptr && window_.isVisible()
             ? static_cast<xcb_window_t>(window_.winId())
             : xcb_window_t{XCB_NONE};
}

/// The strip is to be hidden, or to be there.
void StripSurface::comeOrGo() {
  const bool isIn = !autohide_.isHidden();
  // Without a compositor what is beyond the edge of its window would still be seen.
  const bool isAnimated = hasPicture_ && !environment_.prefersReducedMotion() &&
                          (environment_.layers != nullptr || x11::hasCompositor());
  if (isIn && std::exchange(isAway_, false)) {
    arrange();
    pointerMoved();
  }
  window_.slide(isIn, layout_.inwards(), isAnimated, [this] {
    isAway_ = true;
    arrange();
    tellVisibility();
  });
  tellVisibility();
}

/// While the strip is away on a layer shell, what is left of its window is the sensor.
void StripSurface::pointerMoved() {
  if (isAway_)
    sensor_.pointerMoved(isPointerIn_);
  else
    autohide_.hold(StripAutohide::pointer, isPointerIn_);
}

void StripSurface::setPlace(const DockTile::Place& place) {
  place_ = place;
  hasPlace_ = true;
  arrange();
}

void StripSurface::setLabel(const std::string& name, const std::string& value) {
  window_.setLabel(QString::fromStdString(name), QString::fromStdString(value));
}

void StripSurface::setButtons(const std::vector<DockTile::Button>& buttons) {
  std::vector<DockTile::Button> shrunk = buttons;
  for (DockTile::Button& button : shrunk)
    button.place = QRectF(button.place.topLeft() * shrinking_, button.place.size() * shrinking_);
  window_.setButtons(std::move(shrunk));
}

void StripSurface::display(const QImage& image) {
  window_.setPicture(image, format_.scale / shrinking_);
  if (!std::exchange(hasPicture_, true))
    arrange();
}

void StripSurface::setAttention(bool isWanted) {
  if (isWanted)
    autohide_.attend();
  const bool mayMove = isWanted && !environment_.prefersReducedMotion();
  window_.setAttention(isWanted, mayMove ? layout_.inwards() * layout_.tileSize : QPointF());
}

std::optional<Rect> StripSurface::frame() const {
  return hasPlace_ ? std::optional(screenRect(layout_.tile)) : std::nullopt;
}

std::optional<Rect> StripSurface::stripFrame() const {
  return hasPlace_ ? std::optional(screenRect(layout_.strip)) : std::nullopt;
}

/// Without a manager the windows stay as they are: most often it is about to come back.
void StripSurface::managerChanged() {
  arrangement_ = environment_.arrangement().value_or(arrangement_);
  arrange();
  environment_.managerChanged();
}

QRectF StripSurface::available(const QScreen& screen, StripEdge edge) {
  QRectF room = room_.available(screen, edge);
  const bool hasBar = doesReserve_ && !autohide_.isWanted() &&
                      arrangement_ == StripArrangement::bar && edge == StripEdge::bottom;
  QRect bar;
  if (hasBar) {
    const double size = StripLayout::make(room, environment_.preferences(), place_).tileSize;
    const double scale = screen.devicePixelRatio();
    const QSize pixels = (QSizeF(screen.geometry().size()) * scale).toSize();
    const int height = static_cast<int>(std::lround(size * scale));
    bar = QRect(screen.geometry().topLeft() + QPoint(0, pixels.height() - height),
                QSize(pixels.width(), height));
  }
  bar_.keep(hasPicture_ ? bar : QRect());
  if (const auto frame = bar_.frame();
      frame && hasBar && frame->intersects(bar.adjusted(0, -bar.y(), 0, 0)))
    room.setBottom(screen.geometry().top() +
                   (frame->bottom() + 1 - screen.geometry().top()) / screen.devicePixelRatio());
  return room;
}

void StripSurface::arrange() {
  const QScreen* screen = chosenScreen();
  if (screen == nullptr)
    return;
  const DockPreferences preferences = environment_.preferences();
  const StripEdge edge = edgeOf(preferences);
  layout_ = StripLayout::make(available(*screen, edge), preferences, place_);
  DockTile::Format format;
  format.tileSize = std::max(layout_.tileSize, leastTileSize);
  shrinking_ = layout_.tileSize / format.tileSize;
  format.span = layout_.isVertical ? 1 : std::max(place_.span, 1);
  auto* layers = environment_.layers;
  const double scale = layers == nullptr ? screen->devicePixelRatio() : layers->scale(*screen);
  format.scale = scale * shrinking_;
  // Nothing is shown before there is something to see.
  if (hasPicture_)
    place(*screen, edge);
  if (std::exchange(format_, format) != format && events.formatChanged)
    events.formatChanged();
  // Also on another scale: the same points are other pixels.
  const auto shown = std::pair(layout_.tile, scale);
  if (std::exchange(shown_, shown) != shown && events.moved)
    events.moved();
}

void StripSurface::place(const QScreen& screen, StripEdge edge) {
  const QRect tile = wholePoints(layout_.tile);
  const QRect sensor = wholePoints(layout_.edge(sensorDepth));
  const bool isOver = autohide_.isWanted();
  if (environment_.layers != nullptr) {
    window_.moveTo(isAway_ ? sensor : tile, *environment_.layers);
    const int depth = layout_.isVertical ? tile.width() : tile.height();
    if (doesReserve_)
      environment_.layers->keepRoom(screen, toolkitEdge(edge), isOver ? 0 : depth);
    return;
  }
  sensor_.put(isAway_ ? rootPixels(sensor, screen) : QRect());
  if (isAway_) {
    window_.setVisible(false);
    isPointerIn_ = false;
    stacking_.begin(true);
  } else {
    window_.moveTo(tile, arrangement_ != StripArrangement::docks);
  }
  if (window_.handle() != nullptr)
    room_.reserve(static_cast<xcb_window_t>(window_.winId()), isOver ? QRect() : tile, screen,
                  edge);
}

void StripSurface::watchScreens() {
  QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &screenWatch_,
                   [this] { followScreen(); });
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &screenWatch_,
                   [this] { followScreen(); });
  // The screen is still in the list when it is said to go.
  QObject::connect(
      qGuiApp, &QGuiApplication::screenRemoved, &screenWatch_, [this] { followScreen(); },
      Qt::QueuedConnection);
  followScreen();
}

void StripSurface::followScreen() {
  geometryWatch_ = std::make_unique<QObject>();
  if (const QScreen* screen = chosenScreen()) {
    const auto again = [this] { arrange(); };
    QObject::connect(screen, &QScreen::availableGeometryChanged, geometryWatch_.get(), again);
    QObject::connect(screen, &QScreen::geometryChanged, geometryWatch_.get(), again);
    QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, geometryWatch_.get(), again);
  }
  arrange();
}

} // namespace tavrin
