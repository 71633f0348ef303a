#include "TavrinSlot/BasicWidgetController.h"

#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinSlot/DockPanelPresenter.h"
#include "TavrinSlot/DockTileRenderer.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

namespace tavrin {

BasicWidgetController::BasicWidgetController(const SlotContext& context, DockWidget widget)
    : context_(context), widget_(std::move(widget)) {
  appearanceChanged_ = platform().workspace().observeAppearance([this] { appearanceChanged(); });
  takeInterfaceFont();
}

BasicWidgetController::~BasicWidgetController() {
  context_.panel.onClose = nullptr;
}

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
    context_.panel.onClose = [this] { panelDidClose(); };
  }
  panelView_->setAppearance(appearance());
  panelView_->refresh();
  context_.panel.fitContent();
}

PanelAppearance BasicWidgetController::appearance() const {
  const auto& workspace = context_.platform.workspace();
  return {workspace.prefersDarkAppearance(), workspace.prefersReducedMotion(), tint()};
}

void BasicWidgetController::appearanceChanged() {
  if (takeInterfaceFont()) {
    discardPanelView();
    refresh();
  } else if (panelView_ != nullptr) {
    panelView_->setAppearance(appearance());
  }
}

bool BasicWidgetController::takeInterfaceFont() {
  const auto family = platform().workspace().interfaceFontFamily();
  return setInterfaceFontFamily(QString::fromStdString(family.value_or("")));
}

void BasicWidgetController::discardPanelView() {
  panelView_ = nullptr;
}

void BasicWidgetController::save(const DockWidget::Kind& kind) {
  widget_.kind = kind;
  widgetChanged();
  const bool isSaved = write(kind);
  refresh();
  if (isSaved)
    announce();
}

void BasicWidgetController::saveQuietly(const DockWidget::Kind& kind) {
  if (write(kind))
    announce();
}

std::optional<DockWidget> BasicWidgetController::storedWidget() {
  try {
    return freshStore().widget(widget_.id);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

/// Another process may have written since the file was read last.
WidgetStore& BasicWidgetController::freshStore() {
  if (store_)
    store_->reload();
  else
    store_ = std::make_unique<WidgetStore>(
        StoragePath(platform().fileManager(), platform().mainBundle()).widgetsFileURL());
  return *store_;
}

bool BasicWidgetController::write(const DockWidget::Kind& kind) {
  try {
    // The settings are ours; name, slot and span may have been changed elsewhere.
    DockWidget stored = freshStore().widget(widget_.id).value_or(widget_);
    if (stored.kind.index() != kind.index())
      return false;
    stored.kind = kind;
    store_->update(stored);
    return true;
  } catch (const std::exception& error) {
    Log(platform().log(), "slot").error(error.what());
    return false;
  }
}

void BasicWidgetController::announce() {
  platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
}

} // namespace tavrin
