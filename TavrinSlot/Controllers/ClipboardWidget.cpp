#include "TavrinSlot/Controllers/ClipboardWidget.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinStorage/WidgetStore.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardPanelView.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardViews.h"

#include <algorithm>

namespace tavrin {
namespace {

std::filesystem::path storeURL(Platform& platform) {
  try {
    return StoragePath(platform.fileManager(), platform.mainBundle()).clipboardFileURL();
  } catch (const std::exception& error) {
    Log(platform.log(), "slot").error(error.what());
    // The first save tells the user.
    return "clipboard-without-a-folder/clipboard.json.enc";
  }
}

/// Also where that cannot be read: nothing is removed on a guess.
bool isKeptByAnother(Platform& platform, const UUID& id) {
  try {
    const WidgetStore store(
        StoragePath(platform.fileManager(), platform.mainBundle()).widgetsFileURL());
    return std::ranges::any_of(store.file().widgets, [&](const DockWidget& widget) {
      const auto* settings = widget.kind.get<ClipboardSettings>();
      return widget.id != id && settings != nullptr && settings->persistAcrossRestarts;
    });
  } catch (const std::exception& error) {
    Log(platform.log(), "slot").error(error.what());
    return true;
  }
}

} // namespace

void ClipboardWidgetController::start() {
  platform().application().keepMemoryPrivate();
  ogSource_.emplace(
      LinkPreviewSource::Services{platform().runLoop(), platform().clock(),
                                  [this]() -> HTTPClient& { return platform().http(); }});
  source_.emplace(
      ClipboardSource::Services{platform().clock(), platform().runLoop(), platform().pasteboard(),
                                platform().keychain(), platform().workspace(), *ogSource_,
                                [this] { return isKeptByAnother(platform(), widget().id); }},
      storeURL(platform()), settings());
  model_.emplace(widget(), *source_);
  model_->onChange = [this] { historyChanged(); };
  model_->start();
}

void ClipboardWidgetController::stop() {
  model_.reset();
  source_.reset();
  ogSource_.reset();
}

void ClipboardWidgetController::historyChanged() {
  if (context().panel.isShown() && model_->unseenCount() > 0)
    model_->markAllSeen();
  else
    refresh();
}

void ClipboardWidgetController::panelWillOpen() {
  model_->setSearchText({});
  model_->markAllSeen();
}

void ClipboardWidgetController::panelDidClose() {
  model_->setSearchText({});
}

void ClipboardWidgetController::copy(const ClipboardItem& item) {
  model_->copy(item);
  context().panel.closeIfShown();
}

QColor ClipboardWidgetController::tint() const {
  return clipboardTint;
}

AnyView ClipboardWidgetController::tileView(const TileSize& size) {
  ClipboardReading reading{model_->items().size(),
                           model_->unseenCount(),
                           model_->hasRead(),
                           model_->trouble().has_value(),
                           {}};
  if (model_->settings().showLastPreviewOnTile && !model_->items().empty()) {
    const auto& newest = model_->items().front()->item;
    // As many dots as the smallest tile has room for.
    reading.preview = newest.isSensitive ? "••••••" : clipboardLine(newest, false).toStdString();
  }
  return clipboardTileIcon(reading, size);
}

PanelView* ClipboardWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ClipboardPanelView(appearance, *model_,
                                {platform().runLoop(), platform().clock(),
                                 [this](const ClipboardItem& item) { copy(ClipboardItem(item)); },
                                 context().onEdit});
}

} // namespace tavrin
