#include "TavrinSlot/Controllers/Runs/PomodoroWidget.h"

#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Controllers/Runs/StoredRun.h"
#include "TavrinWidgetsUI/Runs/PomodoroPanelView.h"

#include <fmt/format.h>

namespace tavrin {
void PomodoroWidgetController::start() {
  RunWidgetController::start();
  const Date now = platform().clock().now();
  model_.emplace(platform().clock(), widget(),
                 storedRun(platform().userDefaults(), runKey, PomodoroRun::fresh(now))
                     .caughtUp(now, settings(), Calendar()));
  model_->onChange = [this] { runChanged(); };
  runChanged();
}

void PomodoroWidgetController::stop() {
  RunWidgetController::stop();
  model_.reset();
}

AnyView PomodoroWidgetController::tileView(const TileSize& size) {
  return size.isWide()
             ? pomodoroWideTile(model_->run(), model_->settings(), model_->now(), size, actions_)
             : pomodoroTileIcon(model_->run(), model_->settings(), model_->now(), size);
}

PanelView* PomodoroWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new PomodoroPanelView(appearance, *model_, context().onEdit);
}

QColor PomodoroWidgetController::tint() const {
  return PomodoroPalette::tint(model_->run().phase);
}

void PomodoroWidgetController::widgetChanged() {
  const bool isOther = model_->widget() != widget();
  model_->setWidget(widget());
  model_->tick();
  if (isOther)
    scheduleEndNotification();
}

void PomodoroWidgetController::panelWillOpen() {
  RunWidgetController::panelWillOpen();
  model_->rollDay();
}

void PomodoroWidgetController::timeJumped() {
  model_->rollDay();
  RunWidgetController::timeJumped();
}

RunWidgetController::Shown PomodoroWidgetController::shown() const {
  const auto& run = model_->run();
  return {
      run.displayedSeconds(model_->now(), model_->settings()),
      fmt::format("{}-{}-{}-{}", run.isRunning(), run.hasStarted(), nameOf(run.phase), run.cycle)};
}

RunWidgetController::End PomodoroWidgetController::end() const {
  return {model_->run().endDate(model_->settings()), isBreak(model_->run().phase)
                                                         ? translated("Break over")
                                                         : translated("Focus done, take a break")};
}

void PomodoroWidgetController::saveRun() {
  storeRun(platform().userDefaults(), runKey, model_->run());
}

bool PomodoroWidgetController::finishIfOver() {
  if (!model_->run().isRunning() || !model_->isFinished())
    return false;
  const PomodoroPhase ended = model_->run().phase;
  model_->finish(model_->now());
  ring(ended);
  return true;
}

void PomodoroWidgetController::ring(PomodoroPhase ended) {
  if (model_->settings().ringsAtTheEnd)
    RunWidgetController::ring(isBreak(ended) ? "Submarine" : "Glass");
}

} // namespace tavrin
