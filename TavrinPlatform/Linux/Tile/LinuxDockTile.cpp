#include "TavrinPlatform/Linux/Tile/LinuxDockTile.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace tavrin {

namespace {

double firstScreenHeight() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 0 : screen->geometry().y() + screen->geometry().height();
}

double firstScreenLeft() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 0 : screen->geometry().x();
}

} // namespace

Point screenPoint(QPointF point) {
  return {point.x() - firstScreenLeft(), firstScreenHeight() - point.y()};
}

QPointF toolkitPoint(Point point) {
  return {point.x + firstScreenLeft(), firstScreenHeight() - point.y};
}

Rect screenRect(const QRectF& rect) {
  const Point corner = screenPoint(rect.bottomLeft());
  return {corner.x, corner.y, rect.width(), rect.height()};
}

LinuxDockTile::LinuxDockTile(std::vector<std::unique_ptr<TileSurface>> surfaces, Requests requests)
    : surfaces_(std::move(surfaces)), requests_(std::move(requests)) {
  for (const auto& surface : surfaces_) {
    const bool isFirst = surface == surfaces_.front();
    surface->events.formatChanged = [this, isFirst] {
      if (isFirst && onFormatChange)
        onFormatChange();
    };
    surface->events.moved = [this, isFirst] {
      if (isFirst && onMove)
        onMove();
    };
    surface->events.visibilityChanged = [this] {
      if (onVisibilityChange)
        onVisibilityChange();
    };
    surface->events.picture = [this](int pixelsHigh) {
      return onPicture ? onPicture(pixelsHigh) : QImage();
    };
    surface->events.clicked = [this](auto inPicture, auto onScreen) {
      clicked(inPicture, onScreen);
    };
    surface->events.hovered = [this](QPointF place) { return onHover && onHover(place); };
    surface->events.takesFiles = [this] { return requests_.takesFiles(); };
    surface->events.dropped = [this](const auto& files) { return requests_.openFiles(files); };
  }
}

DockTile::Format LinuxDockTile::format() const {
  return surfaces_.front()->format();
}

void LinuxDockTile::setPlace(const Place& place) {
  for (const auto& surface : surfaces_)
    surface->setPlace(place);
}

void LinuxDockTile::setSubject(const std::string& subject) {
  for (const auto& surface : surfaces_)
    surface->setSubject(subject);
}

void LinuxDockTile::setTitle(const std::string& title) {
  for (const auto& surface : surfaces_)
    surface->setTitle(title);
}

void LinuxDockTile::setLabel(const std::string& name, const std::string& value) {
  for (const auto& surface : surfaces_)
    surface->setLabel(name, value);
}

void LinuxDockTile::setButtons(const std::vector<Button>& buttons) {
  for (const auto& surface : surfaces_)
    surface->setButtons(buttons);
}

void LinuxDockTile::display(const QImage& image) {
  constexpr unsigned many = 512;
  if (++pictures_ % many == 0 && requests_.hasDrawnMuch)
    requests_.hasDrawnMuch();
  for (const auto& surface : surfaces_)
    surface->display(image);
}

bool LinuxDockTile::isVisible() const {
  return std::any_of(surfaces_.begin(), surfaces_.end(),
                     [](const auto& surface) { return surface->isVisible(); });
}

void LinuxDockTile::setAttention(bool isWanted) {
  for (const auto& surface : surfaces_)
    surface->setAttention(isWanted);
}

std::optional<Point> LinuxDockTile::anchor() const {
  if (currentClick_)
    return currentClick_;
  for (const auto& surface : surfaces_)
    if (const auto frame = surface->frame())
      return Point{frame->x + frame->width / 2, frame->y + frame->height / 2};
  return lastClick_;
}

void LinuxDockTile::clicked(std::optional<QPointF> inPicture, std::optional<Point> onScreen) {
  if (inPicture && onClick && onClick(*inPicture))
    return;
  // A surface with a window of its own is pressed itself; the panel leaves such a press to it.
  if (!inPicture && onScreen && requests_.hasJustClosedPanel(*onScreen))
    return;
  currentClick_ = onScreen;
  lastClick_ = onScreen;
  requests_.reopen();
  currentClick_.reset();
}

} // namespace tavrin
