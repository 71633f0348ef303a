#pragma once

#include "TavrinPlatform/Linux/Base/LayerShell.h"
#include "TavrinPlatform/Linux/Wayland/PixelSurface.h"
#include "TavrinPlatform/Linux/Wayland/PressSurface.h"
#include "TavrinPlatform/Linux/Wayland/RoomKeeper.h"
#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <map>
#include <memory>

namespace tavrin {

/// The layer shell on the toolkit's own connection.
class QtLayerShell final : public LayerShell, private QObject {
public:
  explicit QtLayerShell(wl_display* display);

  /// Whether the compositor has a layer shell. Without it nothing else may be called.
  bool isThere() const { return shell_ != nullptr; }

  void put(QWindow& window, const Place& place) override;
  double scale(const QScreen& screen) override;
  bool draw(QWindow& window, const std::function<void(QImage&)>& paint) override;
  void withdraw(QWindow& window) override;
  void keepRoom(const QScreen& screen, Qt::Edge edge, int depth) override;
  void watchPresses(const std::vector<QRect>& spared, std::function<void()> pressed) override;

private:
  struct Layer {
    /// Where it stands, which the toolkit does not know.
    QRect frame;
    ProxyPtr<zwlr_layer_surface_v1> surface;
    QString output;
    /// The compositor has taken the surface away, most often with its output.
    std::function<void()> closed;
    bool isConfigured = false;
    bool isClosed = false;
    /// Where the toolkit's pixels are not the output's.
    std::unique_ptr<PixelSurface> pixels;
  };

  bool eventFilter(QObject* watched, QEvent* event) override;
  void give(QWindow& window, const Place& place);
  void closed(QWindow& window);
  QRect frameOfPopup(const QWindow& popup) const;

  wl_display* display_;
  std::unique_ptr<WaylandRegistry> registry_;
  ProxyPtr<zwlr_layer_shell_v1> shell_;
  std::map<QString, double> scales_;
  std::map<QWindow*, std::unique_ptr<Layer>> layers_;
  std::unique_ptr<RoomKeeper> room_;
  std::unique_ptr<PressSurface> presses_;
  std::unique_ptr<QFileSystemWatcher> panels_;
};

} // namespace tavrin
