#include "TavrinSlot/Controllers/Runs/TimerWidget.h"

#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Controllers/Runs/StoredRun.h"
#include "TavrinWidgetsUI/Runs/TimerPanelView.h"

#include <fmt/format.h>

namespace tavrin {

void TimerWidgetController::start() {
  RunWidgetController::start();
  model_.emplace(
      platform().clock(), widget(),
      storedRun(platform().userDefaults(), runKey, TimerRun{}).caughtUp(platform().clock().now()));
  model_->onChange = [this] { runChanged(); };
  runChanged();
}

void TimerWidgetController::stop() {
  RunWidgetController::stop();
  model_.reset();
}

AnyView TimerWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? timerWideTile(model_->run(), model_->now(), model_->tint(), size, actions_)
                       : timerTileIcon(model_->run(), model_->now(), model_->tint(), size);
}

PanelView* TimerWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new TimerPanelView(appearance, *model_, context().onEdit);
}

void TimerWidgetController::widgetChanged() {
  const bool isOther = model_->widget() != widget();
  model_->setWidget(widget());
  model_->tick();
  if (isOther)
    scheduleEndNotification();
}

RunWidgetController::Shown TimerWidgetController::shown() const {
  const auto& run = model_->run();
  return {run.displayedSeconds(model_->now()),
          fmt::format("{}-{}-{}", run.isRunning(), run.hasStarted(), nameOf(run.mode))};
}

void TimerWidgetController::saveRun() {
  storeRun(platform().userDefaults(), runKey, model_->run());
}

bool TimerWidgetController::finishIfOver() {
  if (!model_->run().isRunning() || !model_->isFinished())
    return false;
  model_->finish(model_->now());
  ring("Glass");
  return true;
}

} // namespace tavrin
