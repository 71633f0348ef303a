#include "TavrinWidgetsUI/Runs/PomodoroModel.h"

namespace tavrin {

PomodoroModel::PomodoroModel(Clock& clock, DockWidget widget, const PomodoroRun& run)
    : clock_(clock), widget_(std::move(widget)), run_(run), now_(clock.now()) {}

void PomodoroModel::toggle() {
  tick();
  if (run_.isRunning())
    run_.pause(now_);
  else
    run_.start(now_, Calendar());
  changed();
}

void PomodoroModel::skip() {
  tick();
  run_.advance(now_, settings(), false, Calendar());
  changed();
}

void PomodoroModel::reset() {
  tick();
  run_.reset();
  changed();
}

void PomodoroModel::resetEverything() {
  tick();
  run_.resetEverything(now_);
  changed();
}

void PomodoroModel::finish(Date now) {
  now_ = now;
  run_.advance(now, settings(), true, Calendar());
  changed();
}

void PomodoroModel::rollDay() {
  tick();
  const PomodoroRun before = run_;
  run_.rollDay(now_, Calendar());
  if (run_ != before)
    changed();
}

void PomodoroModel::changed() const {
  if (onChange)
    onChange();
}

} // namespace tavrin
