#pragma once

#include <QAbstractNativeEventFilter>
#include <QBasicTimer>
#include <QObject>
#include <functional>
#include <xcb/xcb.h>

class QWindow;

namespace tavrin {

/// Keeps a tile's window above ordinary windows and under those that fill its screen, where no
/// window manager does; and hears of a window manager that comes.
class StripStacking final : public QObject, private QAbstractNativeEventFilter {
public:
  /// `window` answers the window that stands for the tile, none while there is none.
  StripStacking(std::function<xcb_window_t()> window, std::function<void()> onManagerChange);
  ~StripStacking() override;

  /// After the window was made: whether the window manager leaves it alone.
  void begin(bool isUnmanaged);
  /// Other windows have come, or have moved.
  void again() { stackSettles_.start(stackSettling, this); }
  /// Something has just been laid over the tile that takes its presses.
  void atOnce() { restack(); }

protected:
  void timerEvent(QTimerEvent* event) override;

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void rootChanged(xcb_atom_t property);
  /// Without a manager, every window's moves are watched; else only whether it lives.
  void watchManager();
  void restack();
  /// Whether a window that fills the tile's place is in front.
  bool isFilled();
  bool fills(xcb_window_t other) const;
  bool isCovered() const;

  /// Windows change their places in the stack one after the other; milliseconds.
  static constexpr int stackSettling = 30;

  const std::function<xcb_window_t()> window_;
  const std::function<void()> onManagerChange_;
  bool isUnmanaged_ = false;
  /// The window by which the manager shows that it lives.
  xcb_window_t manager_ = XCB_NONE;
  /// The window that is active, and the one that filled the screen when it was.
  xcb_window_t active_ = XCB_NONE;
  xcb_window_t filling_ = XCB_NONE;
  QBasicTimer managerSettles_;
  QBasicTimer stackSettles_;
};

} // namespace tavrin
