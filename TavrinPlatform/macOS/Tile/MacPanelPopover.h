#pragma once

#include "TavrinPlatform/PanelPopover.h"

#include <memory>

namespace tavrin {

/// NSPopover around the panel's widget, at an invisible window of one point over the tile.
class MacPanelPopover final : public PanelPopover {
public:
  /// `uptime` gives seconds on a clock that never jumps.
  explicit MacPanelPopover(std::function<double()> uptime);
  ~MacPanelPopover() override;

  void setContent(QWidget* content) override;
  QWidget* content() const override;
  void setContentSize(QSize size) override;
  bool isShown() const override;
  void show(Point anchor, RectEdge edge) override;
  void close() override;

  /// Whether the panel was closed within the last 0.3 seconds and nobody called `close`: a click on
  /// the tile may do so before it comes as a reopen request.
  bool hasJustClosedByItself() const;

  struct Parts;

private:
  std::unique_ptr<Parts> parts_;
};

} // namespace tavrin
