#include "TavrinSlot/BasicWidgetController.h"

#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/DockPanelPresenter.h"
#include "TavrinSlot/DockTileRenderer.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Kit/PanelStyle.h"

namespace tavrin {

BasicWidgetController::BasicWidgetController(const SlotContext& context, DockWidget widget)
    : context_(context), widget_(std::move(widget)) {}

void BasicWidgetController::update(const DockWidget& widget) {
  widget_ = widget;
  widgetChanged();
  refresh();
}

void BasicWidgetController::togglePanel() {
  if (!context_.panel.isShown()) {
    panelWillOpen();
    showContent();
  }
  context_.panel.toggle();
}

void BasicWidgetController::renderTile() {
  context_.tile.render(tileView(context_.tile.size()));
}

void BasicWidgetController::refreshPanel() {
  if (context_.panel.isShown())
    showContent();
}

void BasicWidgetController::refresh() {
  renderTile();
  refreshPanel();
}

void BasicWidgetController::showContent() {
  if (panelView_ == nullptr) {
    PanelStyle::install();
    panelView_ = makePanelView(appearance());
    panelView_->onFittingSizeChange = [this] { context_.panel.fitContent(); };
    context_.panel.setRootView(panelView_);
    appearanceChanged_ = platform().workspace().observeAppearance(
        [this] { panelView_->setAppearance(appearance()); });
  }
  panelView_->setAppearance(appearance());
  panelView_->refresh();
  context_.panel.fitContent();
}

PanelAppearance BasicWidgetController::appearance() const {
  const auto& workspace = context_.platform.workspace();
  return {workspace.prefersDarkAppearance(), workspace.prefersReducedMotion(), tint()};
}

void BasicWidgetController::save(const DockWidget::Kind& kind) {
  widget_.kind = kind;
  widgetChanged();
  bool isSaved = false;
  try {
    if (!store_)
      store_ = std::make_unique<WidgetStore>(
          StoragePath(platform().fileManager(), platform().mainBundle()).widgetsFileURL());
    // Another process may have written since; only this widget is ours.
    store_->reload();
    store_->update(widget_);
    isSaved = true;
  } catch (const std::exception& error) {
    Log(platform().log(), "slot").error(error.what());
  }
  refresh();
  if (isSaved)
    platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
}

} // namespace tavrin
