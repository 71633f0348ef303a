#include "TavrinWidgetsUI/System/ClockPanelView.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/System/ClockViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

namespace tavrin {
namespace {

constexpr int faceSide = 176;
/// "88:88:88" fits the panel.
constexpr int figureSize = 52;

PanelText* centred(PanelTextStyle style) {
  auto* line = new PanelText({}, style);
  line->setAlignment(Qt::AlignHCenter);
  return line;
}

} // namespace

ClockPanelView::ClockPanelView(const PanelAppearance& appearance, const SystemWidgetModel& model,
                               std::function<void()> onEdit)
    : PanelView(appearance), model_(model), face_(new ViewWidget(QSizeF(faceSide, faceSide))),
      time_(new PanelFigure(figureSize)), weekday_(centred(PanelTextStyle::heading)),
      date_(centred(PanelTextStyle::secondary)), zone_(centred(PanelTextStyle::secondary)) {
  time_->setName(worded("Time"));
  add(face_, Qt::AlignHCenter);
  add(time_);
  add(weekday_);
  add(date_);
  add(zone_);
  setEditButton(worded("Edit Clock…"), std::move(onEdit));
  refresh();
}

void ClockPanelView::refresh() {
  const auto clock = model_.clock();
  setTitle(utf8(model_.widget().name));
  setState(clock.otherZone ? utf8(clock.otherZone->city) : QString());
  const QString time = utf8(clock.time);
  face_->setVisible(clock.isAnalog);
  time_->setVisible(!clock.isAnalog);
  if (clock.isAnalog) {
    face_->setView(analogClockFace(clock));
    face_->setName(worded("Clock, {time}", {{"time", time}}));
  } else {
    time_->setWidest(clock.showsSeconds ? "88:88:88" : "88:88");
    time_->setText(time);
  }
  weekday_->setWords(utf8(clock.weekday));
  date_->setWords(utf8(clock.date));
  zone_->setVisible(clock.otherZone.has_value());
  if (clock.otherZone)
    zone_->setWords(utf8(clock.otherZone->difference));
}

} // namespace tavrin
