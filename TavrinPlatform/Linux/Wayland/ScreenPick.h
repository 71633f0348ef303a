#pragma once

#include "TavrinPlatform/ColourSampler.h"
#include "TavrinPlatform/Linux/Wayland/ClearSurface.h"
#include "TavrinPlatform/Linux/Wayland/PixelSurface.h"
#include "TavrinPlatform/Linux/Wayland/ScreenCopy.h"

#include <QSocketNotifier>

namespace tavrin {

/// Picks a pixel of what the outputs show: a copy of each lies over it until a click or Return
/// takes the colour under the pointer, or Escape or another button gives up. A magnifier goes with
/// the pointer, as its picture.
class ScreenPick final : public Token {
public:
  /// `done` is called once, later; it may drop this object.
  explicit ScreenPick(std::function<void(const ColourSample&)> done);
  ~ScreenPick() override;

  /// Whether the compositor gives programs what this takes.
  static bool isPossible();

private:
  /// One output, and the copy that lies over it.
  struct View {
    QImage picture;
    std::unique_ptr<ClearSurface> surface;
    std::unique_ptr<PixelSurface> pixels;
    QSize shown;
  };

  void begin();
  void listenToPointer();
  void listenToKeys();
  void read();
  void moved(QPointF place);
  void pressed(std::uint32_t button);
  void typed(std::uint32_t key);
  void showCopies();
  void showLens();
  void take();
  void finish(const ColourSample& sample);
  QPoint pixel() const;

  std::function<void(const ColourSample&)> done_;
  /// What is called later is called for as long as it lives.
  QObject context_;
  WaylandConnection connection_;
  std::unique_ptr<Outputs> outputs_;
  std::vector<std::unique_ptr<View>> views_;
  ProxyPtr<wl_seat> seat_;
  ProxyPtr<wl_pointer> pointer_;
  ProxyPtr<wl_keyboard> keyboard_;
  ProxyPtr<wl_compositor> compositor_;
  ProxyPtr<wl_shm> memory_;
  ProxyPtr<wl_surface> lens_;
  std::array<ProxyPtr<wl_buffer>, 2> lensBuffers_;
  std::unique_ptr<QSocketNotifier> notifier_;
  /// Where the pointer is, in points; null without it.
  View* view_ = nullptr;
  QPointF place_;
  /// The number of its coming, by which its picture is set.
  std::uint32_t coming_ = 0;
  bool hasMoved_ = false;
};

} // namespace tavrin
