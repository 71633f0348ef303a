#pragma once

#include "TavrinCore/Base/Geometry.h"
#include "TavrinPlatform/DockTile.h"

#include <filesystem>
#include <optional>

namespace tavrin {

/// One way to show the tile.
class TileSurface {
public:
  virtual ~TileSurface() = default;
  virtual DockTile::Format format() const = 0;
  virtual void setPlace(const DockTile::Place&) {}
  virtual void setSubject(const std::string&) {}
  virtual void setTitle(const std::string&) {}
  virtual void setLabel(const std::string&, const std::string&) {}
  virtual void setButtons(const std::vector<DockTile::Button>&) {}
  virtual void display(const QImage& image) = 0;
  virtual bool isVisible() const = 0;
  virtual void setAttention(bool) {}
  /// The tile's own frame on the screen, where the surface knows it.
  virtual std::optional<Rect> frame() const { return std::nullopt; }

  /// What the surface tells. Set before anything is shown.
  struct Events {
    std::function<void()> formatChanged;
    /// What `frame()` says has changed.
    std::function<void()> moved;
    std::function<void()> visibilityChanged;
    /// As `DockTile::onPicture`.
    std::function<QImage(int pixelsHigh)> picture;
    /// A click, at a place in the picture where the surface knows one, and on the screen.
    std::function<void(std::optional<QPointF> inPicture, std::optional<Point> onScreen)> clicked;
    std::function<bool(QPointF inPicture)> hovered;
    /// Asked while files are dragged over the surface.
    std::function<bool()> takesFiles;
    std::function<bool(const std::vector<std::filesystem::path>&)> dropped;
  } events;
};

/// From the toolkit's points (origin at the first screen's top left) and back.
Point screenPoint(QPointF point);
QPointF toolkitPoint(Point point);
Rect screenRect(const QRectF& rect);

} // namespace tavrin
