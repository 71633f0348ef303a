#pragma once

#include <QAbstractNativeEventFilter>
#include <QBasicTimer>
#include <QObject>
#include <QRectF>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

class QScreen;

namespace tavrin {

/// The values are the edges' places in a strut.
enum class StripEdge : std::uint8_t { left = 0, right = 1, bottom = 3 };

/// The twelve numbers of _NET_WM_STRUT_PARTIAL, in pixels of the root window; empty for none.
using Strut = std::vector<std::uint32_t>;

/// A part of a screen, in the toolkit's points, in pixels of the root window.
QRect rootPixels(const QRect& points, const QScreen& screen);

/// How far into `screen` a strut reaches from that edge; 0 when it is meant for another screen.
int depthOfStrut(const Strut& strut, StripEdge edge, const QRect& screen, const QSize& root);

/// What keeps other windows off a tile. Empty where `edge` of its screen is not the desktop's: a
/// strut reaches through all screens on its way.
Strut strutOfTile(const QRect& tile, StripEdge edge, const QRect& screen, const QSize& root);

/// The part of a screen in which the strip may stand: what panels leave of it. The room that the
/// strip's own tiles keep free counts as theirs.
class StripRoom final : public QObject, private QAbstractNativeEventFilter {
public:
  /// With `doesReserve` other programs' windows are kept off the tile.
  StripRoom(bool doesReserve, std::function<void()> onChange);
  ~StripRoom() override;

  /// In the toolkit's points.
  QRectF available(const QScreen& screen, StripEdge edge);
  /// Keeps `tile`, in points, free for the window that shows it; nothing where it is empty.
  void reserve(xcb_window_t window, const QRect& tile, const QScreen& screen, StripEdge edge);

protected:
  void timerEvent(QTimerEvent* event) override;

private:
  /// One of the windows that the window manager lists.
  struct Listed {
    Strut strut;
    /// What a tile says of the panels that have no window; no value for other programs' windows.
    std::optional<int> hidden;
  };

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  /// Reads the struts, those of all windows or only of the new and of panels; whether a panel's
  /// has changed.
  bool look(bool atAll);
  int depth(const QScreen& screen, StripEdge edge);

  const bool doesReserve_;
  const std::function<void()> onChange_;
  std::map<xcb_window_t, Listed> listed_;
  /// Depth of panels that have no window: the window manager's own.
  int hidden_ = 0;
  std::optional<StripEdge> reserved_;
  Strut strut_;
  QBasicTimer soon_;
};

} // namespace tavrin
