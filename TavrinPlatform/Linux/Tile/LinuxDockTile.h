#pragma once

#include "TavrinPlatform/Qt/TileSurface.h"

#include <memory>

namespace tavrin {

/// The tile on one or several surfaces at once; the first one says what format it has.
class LinuxDockTile final : public DockTile {
public:
  /// What a click and a drop become that the picture itself has no use for.
  struct Requests {
    std::function<void()> reopen;
    std::function<bool()> takesFiles;
    std::function<bool(const std::vector<std::filesystem::path>&)> openFiles;
    /// Whether the press that began this click has just closed the panel.
    std::function<bool(Point)> hasJustClosedPanel;
    /// Every few hundred pictures.
    std::function<void()> hasDrawnMuch;
  };
  LinuxDockTile(std::vector<std::unique_ptr<TileSurface>> surfaces, Requests requests);

  Format format() const override;
  void setPlace(const Place& place) override;
  void setSubject(const std::string& subject) override;
  void setTitle(const std::string& title) override;
  void setLabel(const std::string& name, const std::string& value) override;
  void setButtons(const std::vector<Button>& buttons) override;
  void display(const QImage& image) override;
  bool isVisible() const override;

  void setAttention(bool isWanted);
  /// Where the click was that is being answered now; else the centre of the tile, where a
  /// surface knows it, else the place of the last click.
  std::optional<Point> anchor() const;

private:
  void clicked(std::optional<QPointF> inPicture, std::optional<Point> onScreen);

  std::vector<std::unique_ptr<TileSurface>> surfaces_;
  Requests requests_;
  unsigned pictures_ = 0;
  std::optional<Point> currentClick_;
  std::optional<Point> lastClick_;
};

} // namespace tavrin
