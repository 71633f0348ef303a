#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLock.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockOverlay.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockViews.h"

namespace tavrin {

class KeyboardLockWidgetController final : public BasicWidgetController {
public:
  KeyboardLockWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return keyboardLockTint; }
  void widgetChanged() override;

private:
  void lockChanged();

  KeyboardLock lock_;
  std::function<void()> toggle_ = [this] { lock_.isLocked() ? lock_.unlock() : lock_.lock(); };
  std::unique_ptr<KeyboardLockOverlay> overlay_;
  KeyboardLockStatus shown_;
  std::string shownTrouble_;
};

} // namespace tavrin
