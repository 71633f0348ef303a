#pragma once

#include "TavrinPlatform/Linux/Base/SurfaceChoice.h"
#include "TavrinPlatform/Linux/Edge/StripAutohide.h"
#include "TavrinPlatform/Linux/Edge/StripSensor.h"
#include "TavrinPlatform/Linux/Tile/StripBar.h"
#include "TavrinPlatform/Linux/Tile/StripLayout.h"
#include "TavrinPlatform/Linux/Tile/StripRoom.h"
#include "TavrinPlatform/Linux/Tile/StripStacking.h"
#include "TavrinPlatform/Linux/Tile/StripWindow.h"
#include "TavrinPlatform/Qt/TileSurface.h"

#include <QObject>

namespace tavrin {

/// The tile as a window in the row that all slots form along an edge of a screen:
/// the first one, or the one that TAVRIN_STRIP_SCREEN names. A wide
/// tile lies along the edge; at the left and right edge tiles are square.
class StripSurface final : public TileSurface {
public:
  struct Environment {
    std::function<DockPreferences()> preferences;
    std::function<bool()> prefersReducedMotion;
    /// What the window manager that is there wants; no value where there is none.
    std::function<std::optional<StripArrangement>()> arrangement;
    /// Null where the windows are an X server's.
    LayerShell* layers = nullptr;
    /// Null where slots cannot tell each other of the pointer.
    Bus* bus = nullptr;
    /// Told when a window manager has gone or come.
    std::function<void()> managerChanged;
  };
  explicit StripSurface(Environment environment);

  DockTile::Format format() const override { return format_; }
  void setPlace(const DockTile::Place& place) override;
  void setTitle(const std::string& title) override {
    // The toolkit tells the server each time, which tells it back.
    if (const auto words = QString::fromStdString(title); window_.title() != words)
      window_.setTitle(words);
  }
  void setLabel(const std::string& name, const std::string& value) override;
  void setButtons(const std::vector<DockTile::Button>& buttons) override;
  void display(const QImage& image) override;
  bool isVisible() const override { return window_.isExposed() && !isAway_; }
  void setAttention(bool isWanted) override;
  std::optional<Rect> frame() const override;

  /// The whole row; no value before the tile has a place in it.
  std::optional<Rect> stripFrame() const;
  double tileSize() const { return layout_.tileSize; }
  StripWindow& window() { return window_; }
  /// What has a strip there that would be hidden.
  StripAutohide& autohide() { return autohide_; }
  /// Looks into the preferences anew.
  void preferencesChanged();

private:
  void arrange();
  void tellVisibility();
  void comeOrGo();
  void pointerMoved();
  xcb_window_t standing() const;
  void place(const QScreen& screen, StripEdge edge);
  void managerChanged();
  /// Where the row may stand; has the room kept by a bar where that is the way.
  QRectF available(const QScreen& screen, StripEdge edge);
  void watchScreens();
  void followScreen();

  Environment environment_;
  const bool doesReserve_;
  StripArrangement arrangement_ = StripArrangement::docks;
  StripRoom room_;
  StripBar bar_;
  StripWindow window_;
  StripStacking stacking_;
  StripSensor sensor_;
  StripAutohide autohide_;
  StripLayout layout_;
  DockTile::Place place_;
  DockTile::Format format_;
  /// Where the tile was arranged last, and pixels for a point.
  std::pair<QRectF, double> shown_;
  /// Points of the screen for a point of the picture; less than 1 for a very small tile.
  double shrinking_ = 1;
  bool hasPicture_ = false;
  bool hasPlace_ = false;
  bool wasVisible_ = false;
  bool isAway_ = false;
  bool isPointerIn_ = false;
  QObject screenWatch_;
  std::unique_ptr<QObject> geometryWatch_;
};

} // namespace tavrin
