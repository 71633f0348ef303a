#include "TavrinSlot/Controllers/Runs/PomodoroWidget.h"

#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Controllers/Runs/StoredRun.h"
#include "TavrinWidgetsUI/Runs/PomodoroPanelView.h"

#include <fmt/format.h>

namespace tavrin {
namespace {

PomodoroRun caughtUpRun(Platform& platform, const DockWidget& widget) {
  const Date now = platform.clock().now();
  const auto* settings = widget.kind.get<PomodoroSettings>();
  const auto stored =
      storedRun(platform.userDefaults(), PomodoroWidgetController::runKey, PomodoroRun::fresh(now));
  return stored.caughtUp(now, settings ? *settings : PomodoroSettings{}, Calendar());
}

} // namespace

PomodoroWidgetController::PomodoroWidgetController(const SlotContext& context,
                                                   const DockWidget& widget)
    : RunWidgetController(context, widget, "pomodoro", "phaseEnded"),
      model_(platform().clock(), widget, caughtUpRun(platform(), widget)),
      actions_{[this] { model_.toggle(); }, [this] { model_.skip(); }} {
  model_.onChange = [this] { runChanged(); };
  runChanged();
}

AnyView PomodoroWidgetController::tileView(const TileSize& size) const {
  return size.isWide()
             ? pomodoroWideTile(model_.run(), model_.settings(), model_.now(), size, actions_)
             : pomodoroTileIcon(model_.run(), model_.settings(), model_.now(), size);
}

PanelView* PomodoroWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new PomodoroPanelView(appearance, model_, context().onEdit);
}

QColor PomodoroWidgetController::tint() const {
  return PomodoroPalette::tint(model_.run().phase);
}

void PomodoroWidgetController::widgetChanged() {
  const bool isOther = model_.widget() != widget();
  model_.setWidget(widget());
  model_.tick();
  if (isOther)
    scheduleEndNotification();
}

void PomodoroWidgetController::panelWillOpen() {
  RunWidgetController::panelWillOpen();
  model_.rollDay();
}

void PomodoroWidgetController::timeJumped() {
  model_.rollDay();
  RunWidgetController::timeJumped();
}

RunWidgetController::Shown PomodoroWidgetController::shown() const {
  const auto& run = model_.run();
  return {
      run.displayedSeconds(model_.now(), model_.settings()),
      fmt::format("{}-{}-{}-{}", run.isRunning(), run.hasStarted(), nameOf(run.phase), run.cycle)};
}

RunWidgetController::End PomodoroWidgetController::end() const {
  return {model_.run().endDate(model_.settings()),
          isBreak(model_.run().phase) ? "Break over" : "Focus done, take a break"};
}

void PomodoroWidgetController::saveRun() {
  platform().userDefaults().set(runKey, encode(model_.run()));
}

bool PomodoroWidgetController::finishIfOver() {
  if (!model_.run().isRunning() || !model_.isFinished())
    return false;
  const PomodoroPhase ended = model_.run().phase;
  model_.finish(model_.now());
  ring(ended);
  return true;
}

void PomodoroWidgetController::ring(PomodoroPhase ended) {
  if (model_.settings().ringsAtTheEnd)
    RunWidgetController::ring(isBreak(ended) ? "Submarine" : "Glass");
}

} // namespace tavrin
