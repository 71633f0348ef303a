#pragma once

#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLock.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockOverlay.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockViews.h"

namespace tavrin {

class KeyboardLockWidgetController final : public KindController<KeyboardLockSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return keyboardLockTint; }
  void widgetChanged() override;

private:
  void lockChanged();

  std::optional<KeyboardLock> lock_;
  std::function<void()> toggle_ = [this] { lock_->isLocked() ? lock_->unlock() : lock_->lock(); };
  std::unique_ptr<KeyboardLockOverlay> overlay_;
  KeyboardLockStatus shown_;
  std::string shownTrouble_;
};

} // namespace tavrin
