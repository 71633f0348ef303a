#include "TavrinSlot/Controllers/KeyboardLockWidget.h"

#include "TavrinSlot/DockPanelPresenter.h"

namespace tavrin {
namespace {

KeyboardLockSettings settingsOf(const DockWidget& widget) {
  const auto* settings = widget.kind.get<KeyboardLockSettings>();
  return settings == nullptr ? KeyboardLockSettings{} : *settings;
}

} // namespace

KeyboardLockWidgetController::KeyboardLockWidgetController(const SlotContext& context,
                                                           const DockWidget& widget)
    : BasicWidgetController(context, widget),
      lock_({platform().clock(), platform().runLoop(), platform().inputBlocker(),
             platform().sounds()},
            settingsOf(widget)) {
  lock_.onChange = [this] { lockChanged(); };
  shown_ = KeyboardLockStatus::of(lock_);
  renderTile();
}

void KeyboardLockWidgetController::widgetChanged() {
  lock_.setSettings(settingsOf(widget()));
}

void KeyboardLockWidgetController::lockChanged() {
  const auto status = KeyboardLockStatus::of(lock_);
  if (status.isLocked && !overlay_) {
    context().panel.closeIfShown();
    overlay_ = std::make_unique<KeyboardLockOverlay>(
        [this] { return KeyboardLockStatus::of(lock_); }, [this] { lock_.unlock(); });
  } else if (!status.isLocked) {
    overlay_.reset();
  }
  if (status == shown_ && lock_.trouble() == shownTrouble_)
    return refreshPanel();
  if (overlay_)
    overlay_->refresh();
  shown_ = status;
  shownTrouble_ = lock_.trouble();
  refresh();
}

AnyView KeyboardLockWidgetController::tileView(const TileSize& size) const {
  const auto status = KeyboardLockStatus::of(lock_);
  if (!size.isWide())
    return keyboardLockTileIcon(status, size);
  return keyboardLockWideTile(QString::fromStdString(widget().name), status, size, toggle_);
}

PanelView* KeyboardLockWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new KeyboardLockPanelView(appearance, lock_,
                                   {[this] { return QString::fromStdString(widget().name); },
                                    [this] { lock_.lock(); }, [this] { lock_.unlock(); },
                                    context().onEdit});
}

} // namespace tavrin
