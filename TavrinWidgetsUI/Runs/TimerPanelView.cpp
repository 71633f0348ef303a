#include "TavrinWidgetsUI/Runs/TimerPanelView.h"

#include "TavrinCore/Text/ClockText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/View.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Runs/RunViews.h"
#include "TavrinWidgetsUI/Runs/TimerViews.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

constexpr int presetColumns = 5;
constexpr int presetGap = 6;
/// Further rows are scrolled to.
constexpr int presetRows = 3;
constexpr std::size_t mostPresets = 100;
constexpr int longestCustom = 24 * 60;

/// Where Tab leaves `widget`; widgets made later come after everything else unless told.
QWidget* lastFocusable(const QWidget& widget) {
  QWidget* last = nullptr;
  for (auto* child : widget.findChildren<QWidget*>())
    if (child->focusPolicy() & Qt::TabFocus)
      last = child;
  return last;
}

} // namespace

QString timerPresetTitle(double seconds) {
  const auto whole = wholeSeconds(seconds);
  return whole > 0 && whole < 60 ? worded("{seconds}s", {{"seconds", whole}})
                                 : worded("{minutes}m", {{"minutes", whole / 60}});
}

TimerPanelView::TimerPanelView(const PanelAppearance& appearance, TimerModel& model,
                               std::function<void()> onEdit)
    : PanelView(appearance), model_(model),
      customMinutes_(std::clamp(static_cast<int>(std::clamp(model.run().duration, 0.0, 1e6) / 60),
                                1, longestCustom)) {
  mode_ = new PanelSegments(worded("Mode"), {timerModeTitle(TimerRun::Mode::countdown),
                                             timerModeTitle(TimerRun::Mode::stopwatch)});
  mode_->onChange = [this](int index) {
    model_.setMode(index == 0 ? TimerRun::Mode::countdown : TimerRun::Mode::stopwatch);
  };
  add(mode_);
  addSpace(4);
  const double side = PanelGauge{}.side;
  gauge_ = new ViewWidget({side, side});
  add(gauge_, Qt::AlignHCenter);
  addSpace(4);
  makeLengths();
  primary_ = new PanelButton(PanelButton::Kind::prominent, {}, [this] { model_.toggle(); });
  reset_ = new PanelButton(PanelButton::Kind::quiet, worded("Reset"), [this] { model_.reset(); });
  addRow({primary_, reset_});
  setEditButton(worded("Edit Timer…"), std::move(onEdit));
  refresh();
}

void TimerPanelView::makeLengths() {
  lengths_ = new QWidget;
  auto* column = new QVBoxLayout(lengths_);
  column->setContentsMargins(0, 0, 0, panel::grid / 2);
  column->setSpacing(panel::grid);
  auto* stepper = new PanelStepper(worded("Custom length"), worded("%lld min"), 1, longestCustom);
  stepper->setNumber(customMinutes_);
  stepper->onChange = [this](int minutes) { customMinutes_ = minutes; };
  startCustom_ = PanelButton::icon("play.fill", worded("Start the custom length"),
                                   [this] { model_.startCountdown(customMinutes_ * 60.0); });
  auto* custom = new QWidget;
  auto* row = new QHBoxLayout(custom);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(panel::grid / 2);
  row->addWidget(new PanelField(worded("Custom"), stepper), 1);
  row->addWidget(startCustom_);
  column->addWidget(custom);
  add(lengths_);
}

void TimerPanelView::fillPresets() {
  const auto presets = model_.presets();
  if (presets_ != nullptr && presets == shownPresets_)
    return;
  shownPresets_ = presets;
  delete presets_;
  presets_ = new QWidget(lengths_);
  auto* grid = new QGridLayout(presets_);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(presetGap);
  const auto count = static_cast<int>(std::min(presets.size(), mostPresets));
  const int columns = std::min(count, presetColumns);
  for (int i = 0; i < count; ++i) {
    const double seconds = presets[static_cast<std::size_t>(i)];
    auto* button = new PanelButton(PanelButton::Kind::quiet, timerPresetTitle(seconds),
                                   [this, seconds] { model_.startCountdown(seconds); });
    setPlainToolTip(button, worded("Starts {time}", {{"time", clockText(wholeSeconds(seconds))}}));
    // All as wide as the row allows, however long their titles.
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    button->setMinimumWidth(1);
    grid->addWidget(button, i / columns, i % columns);
    grid->setColumnStretch(i % columns, 1);
  }
  if (count > presetColumns * presetRows) {
    auto* area = new QScrollArea(lengths_);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFixedHeight(presetRows * (panel::controlHeight + presetGap));
    area->setWidget(presets_);
    presets_ = area;
  }
  static_cast<QVBoxLayout*>(lengths_->layout())->insertWidget(0, presets_);
  presets_->setVisible(count > 0);
  QWidget* previous = lastFocusable(*mode_);
  for (auto* button : presets_->findChildren<PanelButton*>())
    setTabOrder(std::exchange(previous, button), button);
}

void TimerPanelView::refreshGauge() {
  const TimerRun& run = model_.run();
  const Date now = model_.now();
  const QColor tint = withContrast(model_.tint(), colours().ground, 3);
  PanelGauge gauge;
  gauge.progress = run.progress(now);
  gauge.tint = runTint(tint, run.isRunning() || run.isFinished(now), colours().ground);
  gauge.track = colours().control;
  gauge.ink = colours().text;
  gauge.time = timerTimeText(run, now);
  if (run.isFinished(now))
    gauge.above = symbol("checkmark.circle.fill").colour(tint).size(22);
  gauge_->setView(gauge.view());
  gauge_->setName(run.mode == TimerRun::Mode::countdown
                      ? worded("{time} left", {{"time", gauge.time}})
                      : worded("{time} on the stopwatch", {{"time", gauge.time}}));
}

void TimerPanelView::refresh() {
  const TimerRun& run = model_.run();
  const bool isCountdown = run.mode == TimerRun::Mode::countdown;
  setTitle(QString::fromStdString(model_.widget().name));
  setState(timerStateWord(run, model_.now()), run.isRunning() ? State::active : State::plain);
  mode_->setCurrent(isCountdown ? 0 : 1);
  refreshGauge();
  fillPresets();
  lengths_->setVisible(isCountdown);
  primary_->setTitle(timerToggleTitle(run, model_.now()));
  primary_->setSymbol(run.isRunning() ? "pause.fill" : "play.fill");
  reset_->setEnabled(run.hasStarted());
}

} // namespace tavrin
