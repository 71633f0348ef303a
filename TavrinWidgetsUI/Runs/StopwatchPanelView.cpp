#include "TavrinWidgetsUI/Runs/StopwatchPanelView.h"

#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Runs/RunViews.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"

#include <QHBoxLayout>

namespace tavrin {
namespace {

constexpr double dialSide = 132;
constexpr int visibleLaps = 5;

QString tenths(double seconds) {
  return QString::fromStdString(StopwatchRun::text(seconds, true))
      .replace(QLatin1Char('.'), QString::fromStdString(decimalSeparator()));
}

/// The latest lap first: its number, how long it took, and the time it ended at.
PanelRow lapRow(const std::vector<double>& laps, int row) {
  const std::size_t index = laps.size() - 1 - static_cast<std::size_t>(row);
  const double before = index > 0 ? laps[index - 1] : 0;
  PanelRow shown;
  shown.id = QString::number(index);
  shown.title = QString::number(index + 1);
  shown.trailing = tenths(laps[index] - before);
  shown.unit = QChar(0x2003) + tenths(laps[index]);
  return shown;
}

} // namespace

StopwatchPanelView::StopwatchPanelView(const PanelAppearance& appearance, StopwatchPanelHost host)
    : PanelView(appearance), host_(std::move(host)) {
  dial_ = new ViewWidget({dialSide, dialSide});
  add(dial_, Qt::AlignHCenter);
  addSpace(4);
  time_ = new PanelFigure(40, "88:88.8");
  time_->setName(worded("Time"));
  add(time_, Qt::AlignHCenter);
  primary_ = new PanelButton(PanelButton::Kind::prominent, {}, [this] { host_.toggle(); });
  lap_ = new PanelButton(PanelButton::Kind::quiet, worded("Lap"), [this] { host_.lap(); });
  reset_ = new PanelButton(PanelButton::Kind::quiet, worded("Reset"), [this] { host_.reset(); });
  addSpace(4);
  add(primary_);
  addRow({lap_, reset_});
  laps_ = new PanelList(worded("Laps"));
  laps_->setMaximumVisibleRows(visibleLaps);
  laps_->hide();
  add(laps_);
  setEditButton(worded("Edit Stopwatch…"), [this] { host_.edit(); });
  refresh();
}

void StopwatchPanelView::refresh() {
  const StopwatchRun& run = host_.run();
  const double elapsed = run.elapsed(host_.now());
  setTitle(host_.name());
  setState(run.isRunning()    ? worded("Running")
           : run.hasStarted() ? worded("Paused")
                              : QString(),
           run.isRunning() ? State::active : State::plain);
  StopwatchDial dial;
  dial.progress = run.progress(host_.now());
  dial.isRunning = run.isRunning();
  dial.ticks.ink = colours().text;
  dial.tint = withContrast(stopwatchTint, colours().ground, 3);
  dial.ground = colours().ground;
  dial_->setView(dial.view(dialSide));
  dial_->setName(worded("Dial"));
  const QString text = tenths(elapsed);
  time_->setWidest(widestDigits(text));
  time_->setText(text);
  primary_->setTitle(stopwatchToggleTitle(run));
  primary_->setSymbol(run.isRunning() ? "pause.fill" : "play.fill");
  lap_->setEnabled(run.isRunning());
  reset_->setEnabled(run.hasStarted() || !run.laps.empty());
  refreshLaps();
}

void StopwatchPanelView::refreshLaps() {
  const auto& laps = host_.run().laps;
  if (laps == shownLaps_)
    return;
  shownLaps_ = laps;
  laps_->setRows(static_cast<int>(laps.size()),
                 [this](int row) { return lapRow(shownLaps_, row); });
  laps_->setVisible(!laps.empty());
}

} // namespace tavrin
