#include "TavrinSlot/Controllers/GitHubWidget.h"

#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinWidgetsUI/GitHub/GitHubPanelView.h"

namespace tavrin {

void GitHubWidgetController::start() {
  model_.emplace(platform().clock(), platform().runLoop(), platform().workspace(),
                 GitHubSource(platform().runLoop(), platform().processes(),
                              platform().fileManager(), platform().userDefaults()),
                 widget());
  model_->onChange = [this] { refresh(); };
}

void GitHubWidgetController::stop() {
  model_.reset();
}

void GitHubWidgetController::widgetChanged() {
  const auto before = model_->settings().shows;
  model_->setWidget(widget());
  if (model_->settings().shows != before)
    discardPanelView(); // a list and a calendar are not equally wide
}

AnyView GitHubWidgetController::tileView(const TileSize& size) {
  const GitHubReading reading{model_->settings(), model_->items(),   model_->contributions(),
                              model_->trouble(),  model_->hasRead(), model_->isLoading()};
  if (!size.isWide())
    return gitHubTileIcon(reading, size);
  return gitHubWideTile(reading, model_->now(), size,
                        [this](const std::string& url) { open(url); });
}

PanelView* GitHubWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new GitHubPanelView(
      appearance, *model_,
      [this](const std::string& url) {
        open(url);
        context().panel.closeIfShown();
      },
      context().onEdit);
}

QColor GitHubWidgetController::tint() const {
  return gitHubTint;
}

void GitHubWidgetController::open(const std::string& url) const {
  if (url.starts_with("https://") || url.starts_with("http://"))
    platform().workspace().open(url);
}

} // namespace tavrin
