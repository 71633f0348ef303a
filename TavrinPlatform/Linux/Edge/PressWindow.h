#pragma once

#include <QAbstractNativeEventFilter>
#include <QRect>
#include <functional>
#include <vector>
#include <xcb/xcb.h>

namespace tavrin {

/// A clear window over the whole of an X server that is a compositor's client, where presses on
/// other programs' windows and on the desktop are told to nobody: it hears the next press, which
/// goes no further.
class PressWindow final : private QAbstractNativeEventFilter {
public:
  /// `spared` are parts in pixels whose presses are left to others.
  PressWindow(const std::vector<QRect>& spared, std::function<void()> pressed);
  ~PressWindow() override;

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void make(const QRect& whole);

  const std::function<void()> pressed_;
  xcb_window_t window_ = XCB_NONE;
  xcb_colormap_t colours_ = XCB_NONE;
};

} // namespace tavrin
