#include "TavrinWidgetsUI/Runs/TimerModel.h"

#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"

namespace tavrin {

TimerModel::TimerModel(Clock& clock, DockWidget widget, const TimerRun& run)
    : clock_(clock), widget_(std::move(widget)), run_(run), now_(clock.now()) {}

QColor TimerModel::tint() const {
  return colourFromHex(settings().tintHex, *colourFromHex(TimerSettings::defaultTintHex));
}

void TimerModel::toggle() {
  tick();
  if (run_.isRunning())
    run_.pause(now_);
  else
    run_.start(now_);
  changed();
}

void TimerModel::reset() {
  tick();
  run_.reset();
  changed();
}

void TimerModel::startCountdown(double seconds) {
  tick();
  run_.startCountdown(seconds, now_);
  changed();
}

void TimerModel::setMode(TimerRun::Mode mode) {
  if (mode == run_.mode)
    return;
  tick();
  run_.mode = mode;
  changed();
}

void TimerModel::finish(Date now) {
  now_ = now;
  run_.pause(now);
  changed();
}

void TimerModel::changed() const {
  if (onChange)
    onChange();
}

} // namespace tavrin
