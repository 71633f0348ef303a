#pragma once

#include <QAbstractNativeEventFilter>
#include <QBasicTimer>
#include <QObject>
#include <QRect>
#include <functional>
#include <optional>
#include <xcb/xcb.h>

namespace tavrin {

/// The room of a strip that no window manager manages, where the manager makes a bar of every dock
/// window: one empty window, which one of the slots has and another takes over when that slot ends.
/// The tiles stand where the manager has put it. The owner of the selection "_TAVRIN_ROOM" has it.
class StripBar final : public QObject, private QAbstractNativeEventFilter {
public:
  /// `onMove` is told a little after the bar has come or moved, `onCover` as soon as it may lie
  /// over the tiles.
  StripBar(std::function<void()> onMove, std::function<void()> onCover);
  ~StripBar() override;

  /// Has a bar kept along the bottom of a screen, in pixels; none with an empty rectangle.
  void keep(const QRect& bar);
  /// Where the bar is, in pixels; no value where none is shown.
  std::optional<QRect> frame() const;

protected:
  void timerEvent(QTimerEvent* event) override;

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  /// Takes the bar if nobody has it, else follows the one that is there.
  void contend();
  void shape();
  void followFrame();

  const std::function<void()> onMove_;
  const std::function<void()> onCover_;
  QRect wanted_;
  xcb_window_t own_ = XCB_NONE;
  xcb_window_t owner_ = XCB_NONE;
  /// The manager's, round the bar: where it goes in the stack, the bar goes.
  xcb_window_t frame_ = XCB_NONE;
  bool isWatching_ = false;
  QBasicTimer soon_;
};

} // namespace tavrin
