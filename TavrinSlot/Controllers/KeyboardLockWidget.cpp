#include "TavrinSlot/Controllers/KeyboardLockWidget.h"

#include "TavrinSlot/Base/DockPanelPresenter.h"

namespace tavrin {
void KeyboardLockWidgetController::start() {
  lock_.emplace(KeyboardLock::Services{platform().clock(), platform().runLoop(),
                                       platform().inputBlocker(), platform().sounds()},
                settings());
  lock_->onChange = [this] { lockChanged(); };
  shown_ = KeyboardLockStatus::of(*lock_);
  shownTrouble_.clear();
}

void KeyboardLockWidgetController::stop() {
  overlay_.reset();
  lock_.reset();
}

void KeyboardLockWidgetController::widgetChanged() {
  lock_->setSettings(settings());
}

void KeyboardLockWidgetController::lockChanged() {
  const auto status = KeyboardLockStatus::of(*lock_);
  if (status.isLocked && !overlay_) {
    context().panel.closeIfShown();
    overlay_ = std::make_unique<KeyboardLockOverlay>(
        [this] { return KeyboardLockStatus::of(*lock_); }, [this] { lock_->unlock(); });
  } else if (!status.isLocked) {
    overlay_.reset();
  }
  if (status == shown_ && lock_->trouble() == shownTrouble_)
    return refreshPanel();
  if (overlay_)
    overlay_->refresh();
  shown_ = status;
  shownTrouble_ = lock_->trouble();
  refresh();
}

AnyView KeyboardLockWidgetController::tileView(const TileSize& size) {
  const auto status = KeyboardLockStatus::of(*lock_);
  if (!size.isWide())
    return keyboardLockTileIcon(status, size);
  return keyboardLockWideTile(QString::fromStdString(widget().name), status, size, toggle_);
}

PanelView* KeyboardLockWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new KeyboardLockPanelView(appearance, *lock_,
                                   {[this] { return QString::fromStdString(widget().name); },
                                    [this] { lock_->lock(); }, [this] { lock_->unlock(); },
                                    context().onEdit});
}

} // namespace tavrin
