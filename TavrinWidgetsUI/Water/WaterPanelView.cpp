#include "TavrinWidgetsUI/Water/WaterPanelView.h"

#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tavrin {
namespace {

constexpr QSizeF vesselSize{72, 88};
constexpr QSizeF weekSize{248, 84};

/// Side by side, the widget that can be wide taking what the others leave.
QWidget* rowOf(std::initializer_list<QWidget*> widgets) {
  auto* holder = new QWidget;
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  for (QWidget* widget : widgets)
    row->addWidget(widget, widget->sizePolicy().expandingDirections() & Qt::Horizontal ? 1 : 0);
  return holder;
}

} // namespace

WaterPanelView::WaterPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance), source_(std::move(source)), vessel_(new ViewWidget(vesselSize)),
      amount_(new PanelFigure(34)), goal_(new PanelText({}, PanelTextStyle::secondary)),
      next_(new PanelText), week_(new ViewWidget(weekSize)) {
  amount_->setAlignment(Qt::AlignLeft);
  amount_->setName(worded("Drunk today"));
  auto* words = new QWidget;
  words->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  auto* column = new QVBoxLayout(words);
  column->setContentsMargins(8, 0, 0, 0);
  column->setSpacing(2);
  column->addStretch();
  column->addWidget(amount_);
  column->addWidget(goal_);
  column->addWidget(next_);
  column->addStretch();
  words->setMinimumHeight(static_cast<int>(vesselSize.height()));
  add(rowOf({vessel_, words}));
  addSpace(4);
  add(new PanelText(worded("This week"), PanelTextStyle::section));
  add(week_);
  addSpace(4);
  drink_ = new PanelButton(PanelButton::Kind::prominent, {}, [this] { source_.drink(); });
  drink_->setSymbol("drop.fill");
  drink_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  undo_ = PanelButton::icon("arrow.uturn.backward", worded("Take a glass back"),
                            [this] { source_.undo(); });
  add(rowOf({drink_, undo_}));
  setEditButton(worded("Edit Water…"), source_.edit);
  refresh();
}

void WaterPanelView::refresh() {
  const WaterReading reading = source_.reading();
  const WaterTank tank = source_.tank();
  setTitle(utf8(source_.name()));
  showWords(reading);

  const QColor outline = mix(colours().text, waterTint, 0.35);
  const AnyView vessel =
      reading.settings.style == WaterTileStyle::glass
          ? waterGlassView(tank, outline).padding(2)
          : zstack({rectangle().gradient(QColor(0x12, 0x2C, 0x48), QColor(0x07, 0x0D, 0x16)),
                    waterTankView(tank)})
                .clip(superellipse(20));
  vessel_->setView(vessel);
  vessel_->setName(worded("Filled to {percent} percent", {{"percent", qRound(tank.level * 100)}}));

  WaterBarColours bars;
  bars.bar = withContrast(QColor(0x3B, 0x9E, 0xFF), colours().ground, 3);
  bars.today = withContrast(QColor(0x12, 0xA5, 0x94), colours().ground, 3);
  bars.track = colours().track;
  bars.label = colours().secondary;
  const Calendar calendar;
  week_->setView(waterWeekBars(reading, bars, &calendar));
  QStringList amounts;
  for (const auto& day : reading.week)
    amounts << utf8(format(reading.settings.unit, day.millilitres));
  week_->setName(worded("This week: {amounts}", {{"amounts", joinedFacts(amounts)}}));

  drink_->setTitle(worded("Drink {amount}",
                          {{"amount", format(reading.settings.unit, reading.settings.glass)}}));
  drink_->setEnabled(reading.settings.glass > 0);
  undo_->setEnabled(reading.millilitres > 0);
}

void WaterPanelView::showWords(const WaterReading& reading) {
  const QString amount = utf8(format(reading.settings.unit, reading.millilitres));
  const auto space = amount.lastIndexOf(u' ');
  amount_->setText(amount.left(space));
  amount_->setUnit(amount.mid(space + 1));
  goal_->setWords(reading.isDone()
                      ? worded("Goal reached")
                      : worded("{amount} is the goal",
                               {{"amount", format(reading.settings.unit, reading.settings.goal)}}));
  const auto left = reading.timeLeft();
  next_->setVisible(!reading.isDone());
  next_->setWords(left ? worded("Next glass in {time}", {{"time", *left}})
                       : worded("Time for a glass"));
}

} // namespace tavrin
