#include "TavrinSlot/Controllers/ClaudeUsageWidget.h"

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsagePanelView.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"

namespace tavrin {

void ClaudeUsageWidgetController::start() {
  model_.emplace(platform().clock(), platform().runLoop(), platform().fileManager(), widget());
  model_->onChange = [this] { refresh(); };
}

void ClaudeUsageWidgetController::stop() {
  model_.reset();
}

AnyView ClaudeUsageWidgetController::tileView(const TileSize& size) {
  const ClaudeUsageReading reading{model_->settings(),    model_->totals(),      model_->limits(),
                                   model_->isConnected(), model_->isAvailable(), model_->hasRead()};
  return size.isWide() ? claudeUsageWideTile(reading, model_->now(), size)
                       : claudeUsageTileIcon(reading, model_->now(), size);
}

PanelView* ClaudeUsageWidgetController::makePanelView(const PanelAppearance& appearance) {
  const auto choose = [this](ClaudeUsageScope scope) {
    auto settings = model_->settings();
    settings.scope = scope;
    save(settings);
  };
  return new ClaudeUsagePanelView(appearance, *model_, choose, context().onEdit);
}

QColor ClaudeUsageWidgetController::tint() const {
  return claudeUsageTint;
}

} // namespace tavrin
