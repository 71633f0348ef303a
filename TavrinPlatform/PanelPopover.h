#pragma once

#include "TavrinCore/Base/Geometry.h"

#include <QSize>
#include <functional>

class QWidget;

namespace tavrin {

/// The window that carries a panel and points at a tile. Transient: it closes on a click
/// elsewhere, on Escape and when its application is left. At most one is open per process.
class PanelPopover {
public:
  virtual ~PanelPopover() = default;

  /// Shows `content` (owned by the popover from now on) in place of what it held.
  virtual void setContent(QWidget* content) = 0;
  virtual QWidget* content() const = 0;
  /// The content's size in points; the window adds its arrow and shadow.
  virtual void setContentSize(QSize size) = 0;
  virtual bool isShown() const = 0;
  /// Opens towards `edge` with the arrow's tip at `anchor`, kept whole on the anchor's screen,
  /// and takes the keyboard focus. The window that had the focus is remembered.
  virtual void show(Point anchor, RectEdge edge) = 0;
  /// Closes if shown, gives the focus back if this process still has it, calls `onClose`.
  virtual void close() = 0;

  std::function<void()> onClose;
};

} // namespace tavrin
