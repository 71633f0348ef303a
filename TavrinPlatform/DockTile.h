#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <functional>
#include <string>
#include <vector>

namespace tavrin {

/// What a tile shows.
struct TilePicture {
  /// As its process said by `DockTile::setSubject`.
  std::string subject;
  /// ARGB32 premultiplied.
  QImage image;
};

/// This process's tile in the Dock: a picture, and what the user does to it.
class DockTile {
public:
  /// The picture's size in points and the pixels per point. A square when `span` is 1, else the
  /// body of a wide tile, `span` pitches long.
  struct Format {
    double tileSize = 48;
    int span = 1;
    double scale = 1;
    bool operator==(const Format&) const = default;
  };

  /// Where the tile stands among its neighbours, counted in cells of one pitch.
  struct Place {
    int cellsBefore = 0;
    int span = 1;
    int cellsInAll = 1;
    bool operator==(const Place&) const = default;
  };

  virtual ~DockTile() = default;

  virtual Format format() const = 0;
  /// A surface that has square tiles only keeps `format().span` at 1.
  virtual void setPlace(const Place& place) = 0;
  /// Whose picture is displayed next, for those in other processes who watch the tile.
  virtual void setSubject(const std::string&) {}
  /// What the user calls the tile, for lists of windows; nothing where tiles are no windows.
  virtual void setTitle(const std::string&) {}
  /// The tile's name for tooltips and assistive technology.
  virtual void setLabel(const std::string& name, const std::string& value) = 0;
  /// A part of the picture that does something of its own when it is clicked.
  struct Button {
    std::string name;
    /// Points from the picture's top left.
    QRectF place;
    bool operator==(const Button&) const = default;
  };
  /// The buttons in the picture that is displayed next, for assistive technology.
  virtual void setButtons(const std::vector<Button>&) {}
  /// Shows `image`, whose size is that of `format()` in pixels. Copies what it needs.
  virtual void display(const QImage& image) = 0;
  /// Whether anybody can see the tile now.
  virtual bool isVisible() const = 0;

  /// The tile has another format now and wants to be drawn again.
  std::function<void()> onFormatChange;
  /// The tile's frame on the screen is another one: what stands beside it follows.
  std::function<void()> onMove;
  std::function<void()> onVisibilityChange;
  /// A menu of what the tile can do is about to be made, with the toolkit's look of then.
  std::function<void()> onMenu;
  /// Somebody watches the tile from another process: what it shows, `pixelsHigh` pixels high; null
  /// before anything is shown.
  std::function<QImage(int pixelsHigh)> onPicture;
  /// A click at a place in the picture, in points from its top left. True when it was used up,
  /// by a button in the picture; otherwise it is a reopen request.
  std::function<bool(QPointF)> onClick;
  /// Asks what stands under the pointer, for the cursor: true over a button.
  std::function<bool(QPointF)> onHover;
};

} // namespace tavrin
