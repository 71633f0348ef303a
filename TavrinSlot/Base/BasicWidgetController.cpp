#include "TavrinSlot/Base/BasicWidgetController.h"

#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinCore/Widgets/SettingChanges.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFocus.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

namespace tavrin {

BasicWidgetController::BasicWidgetController(const SlotContext& context, DockWidget widget)
    : context_(context), widget_(std::move(widget)), filed_(widget_.kind) {}

void BasicWidgetController::begin() {
  if (isLive_)
    return;
  isLive_ = true;
  appearanceChanged_ = platform().workspace().observeAppearance([this] { appearanceChanged(); });
  context_.panel.onClose = [this] { panelDidClose(); };
  takeInterfaceText();
  start();
  renderTile();
  if (!context_.panel.isShown())
    return;
  panelWillOpen();
  showContent();
}

void BasicWidgetController::leave() {
  if (!isLive_)
    return;
  isLive_ = false;
  if (context_.panel.isShown())
    panelDidClose();
  context_.panel.onClose = nullptr;
  context_.panel.setRootView(nullptr);
  discardPanelView();
  appearanceChanged_.reset();
  stop();
  drawnFormat_.reset();
}

void BasicWidgetController::update(const DockWidget& widget) {
  if (!serves(widget.kind) || (isLive_ && widget.id != widget_.id))
    return;
  widget_ = widget;
  filed_ = widget.kind;
  if (!isLive_)
    return;
  widgetChanged();
  refresh();
}

void BasicWidgetController::redraw() {
  renderTile();
}

void BasicWidgetController::togglePanel() {
  if (!isLive_)
    return;
  if (!context_.panel.isShown()) {
    panelWillOpen();
    showContent();
  }
  context_.panel.toggle();
}

void BasicWidgetController::renderTile() {
  if (!isLive_)
    return;
  const auto format = platform().dockTile().format();
  if (std::exchange(drawnFormat_, format) != format)
    formatChanged();
  platform().dockTile().setTitle(widget_.name);
  tileWillBeDrawn();
  context_.tile.render(tileView(context_.tile.size()));
}

void BasicWidgetController::refreshPanel() {
  if (isLive_ && context_.panel.isShown())
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
  }
  panelView_->setWidgetName(QString::fromStdString(widget_.name));
  panelView_->setAppearance(appearance());
  panelView_->refresh();
  context_.panel.fitContent();
}

PanelAppearance BasicWidgetController::appearance() const {
  const auto& workspace = context_.platform.workspace();
  return {workspace.prefersDarkAppearance(), workspace.prefersReducedMotion(), tint(),
          workspace.prefersHighContrast()};
}

void BasicWidgetController::appearanceChanged() {
  if (takeInterfaceText()) {
    const auto work = panelView_ != nullptr && context_.panel.isShown()
                          ? std::optional<PanelWork>(*panelView_)
                          : std::nullopt;
    discardPanelView();
    refresh();
    if (work && panelView_ != nullptr)
      work->resume(*panelView_);
  } else if (panelView_ != nullptr) {
    panelView_->setAppearance(appearance());
  }
}

bool BasicWidgetController::takeInterfaceText() {
  const auto& workspace = platform().workspace();
  const auto family = workspace.interfaceFontFamily();
  const bool isOtherFont = setInterfaceFontFamily(QString::fromStdString(family.value_or("")));
  const bool isOtherSize = setPanelTextScale(workspace.interfaceTextScale());
  // The tint is the model's, which there is none of yet.
  PanelStyle::dressToolTips(
      {.dark = workspace.prefersDarkAppearance(), .highContrast = workspace.prefersHighContrast()});
  return isOtherFont || isOtherSize;
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
    bool isOurs = false;
    freshStore().change(widget_.id, [&](DockWidget& stored) {
      isOurs = stored.kind.index() == kind.index();
      if (isOurs)
        stored.kind = withChanges(stored.kind, filed_, kind);
      return isOurs;
    });
    if (isOurs)
      filed_ = kind;
    return isOurs;
  } catch (const std::exception& error) {
    Log(platform().log(), "slot").error(error.what());
    return false;
  }
}

void BasicWidgetController::announce() {
  platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
}

} // namespace tavrin
