#include "TavrinWidgetsUI/Runs/PomodoroPanelView.h"

#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/View.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Runs/PomodoroViews.h"
#include "TavrinWidgetsUI/Runs/RunViews.h"

namespace tavrin {

PomodoroPanelView::PomodoroPanelView(const PanelAppearance& appearance, PomodoroModel& model,
                                     std::function<void()> onEdit)
    : PanelView(appearance), model_(model) {
  const double side = PanelGauge{}.side;
  gauge_ = new ViewWidget({side, side});
  add(gauge_, Qt::AlignHCenter);
  sessions_ = new PanelText({}, PanelTextStyle::secondary);
  sessions_->setAlignment(Qt::AlignHCenter);
  add(sessions_);
  addSpace(4);
  primary_ = new PanelButton(PanelButton::Kind::prominent, {}, [this] { model_.toggle(); });
  add(primary_);
  auto* skip = new PanelButton(PanelButton::Kind::quiet, worded("Skip"), [this] { model_.skip(); });
  setPlainToolTip(skip, worded("Goes on to the next phase. A skipped focus phase does not count."));
  reset_ = new PanelButton(PanelButton::Kind::quiet, worded("Reset"), [this] { model_.reset(); });
  setPlainToolTip(reset_, worded("Starts this phase over"));
  addRow({skip, reset_});
  setEditButton(worded("Edit Pomodoro…"), std::move(onEdit));
  resetAll_ = new PanelButton(PanelButton::Kind::faint, worded("Reset All"),
                              [this] { model_.resetEverything(); });
  setPlainToolTip(resetAll_, worded("Back to the first focus phase, with no sessions today"));
  addFooterButton(resetAll_);
  refresh();
}

void PomodoroPanelView::refresh() {
  const PomodoroRun& run = model_.run();
  const PomodoroSettings settings = model_.settings();
  const QString phase = utf8(tavrin::title(run.phase));
  const QString time =
      QString::fromStdString(PomodoroRun::format(run.displayedSeconds(model_.now(), settings)));
  const QColor tint = withContrast(PomodoroPalette::tint(run.phase), colours().ground, 3);

  setTitle(QString::fromStdString(model_.widget().name));
  setState(run.isRunning()    ? worded("Running")
           : run.hasStarted() ? worded("Paused")
                              : QString(),
           run.isRunning() ? State::active : State::plain);
  PanelGauge gauge;
  gauge.progress = run.progress(model_.now(), settings);
  gauge.tint = runTint(tint, run.isRunning(), colours().ground);
  gauge.track = colours().control;
  gauge.ink = colours().text;
  gauge.time = time;
  gauge.above = text(phase)
                    .size(14)
                    .weight(FontWeight::semibold)
                    .colour(withContrast(tint, colours().ground));
  gauge.below = PomodoroDots::of(run, settings).view(tint, 8, 96, colours().track);
  gauge_->setView(gauge.view());
  gauge_->setName(worded("{phase}, {time} left", {{"phase", phase}, {"time", time}}));
  sessions_->setWords(pomodoroSessionsText(run.sessionsToday));
  primary_->setTitle(pomodoroToggleTitle(run));
  primary_->setSymbol(run.isRunning() ? "pause.fill" : "play.fill");
  reset_->setEnabled(run.hasStarted());
  resetAll_->setEnabled(run.hasStarted() || run.cycle > 0 || run.sessionsToday > 0 ||
                        run.phase != PomodoroPhase::focus);
}

} // namespace tavrin
