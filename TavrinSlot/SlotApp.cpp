#include "TavrinSlot/SlotApp.h"

#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinSlot/ControllerTable.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {

SlotApp::SlotApp(Platform& platform)
    : platform_(platform), log_(platform.log(), "slot"),
      slot_(static_cast<int>(std::clamp(platform.mainBundle().integer("TavrinSlot").value_or(0),
                                        -1L, DockSlot::count + 1L))),
      panel_(platform.popover(), platform.dockGeometry()),
      tile_(platform.dockTile()), context_{platform, tile_, panel_, [this] { editWidget(); }} {
  platform_.dockTile().onMove = [this] { panel_.followTile(); };
  platform_.dockTile().onMenu = [this] {
    const auto& workspace = platform_.workspace();
    PanelStyle::dressMenus({.dark = workspace.prefersDarkAppearance(),
                            .highContrast = workspace.prefersHighContrast()});
  };
  PanelStyle::setMixesWindows([this] { return platform_.workspace().mixesWindows(); });
  tile_.onFormatChange = [this] {
    // While the tile is being placed, drawing follows.
    if (controller_ && !isReloading_)
      controller_->redraw();
  };
}

SlotApp::~SlotApp() {
  widgetsChanged_.reset();
  isReloading_ = true;
  platform_.dockTile().onMove = nullptr;
  platform_.dockTile().onMenu = nullptr;
  PanelStyle::setMixesWindows(nullptr);
  if (controller_)
    controller_->leave();
}

void SlotApp::applicationDidFinishLaunching() {
  // Before the file is read: what is written after that is told.
  widgetsChanged_ = platform_.notifications().observe(
      std::string(DockSlot::widgetsChangedNotification), [this](const auto&) { reload(); });
  openStore();
  reload();
  const auto arguments = platform_.application().arguments();
  if (std::find(arguments.begin(), arguments.end(), "--background") == arguments.end() &&
      controller_)
    controller_->togglePanel();
}

bool SlotApp::applicationShouldHandleReopen(bool) {
  if (controller_)
    controller_->togglePanel();
  return false;
}

void SlotApp::applicationDidResignActive() {
  panel_.closeIfShown();
}

bool SlotApp::applicationTakesFiles() const {
  return controller_ != nullptr && widget_->kind.takesFiles();
}

bool SlotApp::applicationOpenFiles(const std::vector<std::filesystem::path>& paths) {
  return applicationTakesFiles() && controller_->openFiles(paths);
}

void SlotApp::openStore() {
  try {
    store_ = std::make_unique<WidgetStore>(
        StoragePath(platform_.fileManager(), platform_.mainBundle()).widgetsFileURL());
  } catch (const std::exception& error) {
    log_.error(fmt::format("slot {}: {}", slot_, error.what()));
  }
}

/// A controller that leaves or begins may save, and so announce, before its call returns.
void SlotApp::reload() {
  isReloadDue_ = true;
  if (isReloading_)
    return;
  isReloading_ = true;
  while (std::exchange(isReloadDue_, false))
    reloadOnce();
  isReloading_ = false;
}

void SlotApp::reloadOnce() {
  std::optional<DockWidget> found;
  if (store_) {
    try {
      store_->reload();
    } catch (const std::exception&) {
      // What was read last stays in use until the file can be read again.
    }
    found = store_->widget(slot_);
  }
  if (!found) {
    log_.info(fmt::format("slot {} has no widget; quitting", slot_));
    quit();
    return;
  }
  show(std::move(*found));
}

/// Somebody may put a widget here while this ends, and would find that the slot runs.
void SlotApp::quit() {
  if (!store_)
    return platform_.application().terminate();
  platform_.application().terminateUnless([file = store_->url(), slot = slot_] {
    try {
      return WidgetStore(file).widget(slot).has_value();
    } catch (const std::exception&) {
      return false;
    }
  });
}

void SlotApp::show(DockWidget widget) {
  const bool keepsController =
      controller_ != nullptr && widget_ && sameKind(widget_->kind, widget.kind);
  const bool isSameLife = keepsController && widget_->id == widget.id;
  if (controller_ && !isSameLife)
    controller_->leave();
  if (!keepsController)
    controller_.reset();
  widget_ = std::move(widget);
  placeTile();
  if (keepsController)
    controller_->update(*widget_);
  else
    controller_ = makeController(context_, *widget_);
  if (!isSameLife)
    controller_->begin();
}

void SlotApp::placeTile() {
  DockTile::Place place{0, widget_->span, 0};
  for (const auto& [slot, neighbour] : store_->file().placedWidgets()) {
    if (slot < slot_)
      place.cellsBefore += neighbour->span;
    place.cellsInAll += neighbour->span;
  }
  tile_.setSubject(widget_->id.text());
  platform_.dockTile().setPlace(place);
}

bool SlotApp::sameKind(const std::optional<DockWidget::Kind>& before,
                       const DockWidget::Kind& after) {
  return before && shareController(*before, after);
}

void SlotApp::editWidget() {
  if (!widget_)
    return;
  panel_.closeIfShown();
  platform_.notifications().post(std::string(DockSlot::editWidgetNotification), widget_->id.text());
  // Nobody may be there to hear it: the desktop then starts who is.
  platform_.application().request(std::string(DockSlot::hostIdentifier),
                                  std::string(DockSlot::editAction), widget_->id.text());
}

} // namespace tavrin
