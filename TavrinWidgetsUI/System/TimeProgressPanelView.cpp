#include "TavrinWidgetsUI/System/TimeProgressPanelView.h"

#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"
#include "TavrinWidgetsUI/System/TimeProgressViews.h"

namespace tavrin {
namespace {

constexpr double progressRingSide = 128;
constexpr double barsWidth = 248;
constexpr double rowHeight = 28;

QString nameOf(TimeProgressScope scope) {
  const auto name = title(scope);
  return utf8(name);
}

/// Name, bar and what is left of one period.
AnyView barRow(const TimeProgressReading& reading, bool isChosen, const PanelPalette& colours) {
  const auto weight = isChosen ? FontWeight::semibold : FontWeight::regular;
  const QColor ink = isChosen ? colours.text : colours.secondary;
  const QColor tint = withContrast(timeProgressTint(reading.scope), colours.ground, 3);
  return hstack(
             {text(nameOf(reading.scope)).weight(weight).colour(ink).width(48, Alignment::leading),
              bar(reading.fraction).tint(tint).track(colours.secondary).height(6),
              text(QString::fromStdString(wholePercentText(reading.percentLeft)))
                  .weight(weight)
                  .colour(ink)
                  .align(TextAlignment::trailing)
                  .width(40, Alignment::trailing)})
      .spacing(8)
      .height(rowHeight)
      .accessibility(
          nameOf(reading.scope),
          worded("{percent} left", {{"percent", wholePercentText(reading.percentLeft)}}));
}

} // namespace

TimeProgressPanelView::TimeProgressPanelView(const PanelAppearance& appearance,
                                             const SystemWidgetModel& model,
                                             std::function<void()> onEdit)
    : PanelView(appearance), model_(model),
      ring_(new ViewWidget(QSizeF(progressRingSide, progressRingSide))),
      scope_(new PanelText({}, PanelTextStyle::heading)),
      left_(new PanelText({}, PanelTextStyle::secondary)),
      bars_(new ViewWidget(
          QSizeF(barsWidth, rowHeight * static_cast<double>(allTimeProgressScopes.size())))) {
  scope_->setAlignment(Qt::AlignHCenter);
  left_->setAlignment(Qt::AlignHCenter);
  add(ring_, Qt::AlignHCenter);
  add(scope_);
  add(left_);
  addSpace(4);
  add(bars_, Qt::AlignHCenter);
  setEditButton(worded("Edit Time Progress…"), std::move(onEdit));
  refresh();
}

void TimeProgressPanelView::refresh() {
  const auto* settings = model_.widget().kind.get<TimeProgressSettings>();
  if (settings == nullptr)
    return;
  setTitle(QString::fromStdString(model_.widget().name));
  std::vector<AnyView> rows;
  QString spoken;
  for (const auto scope : allTimeProgressScopes) {
    const auto reading = TimeProgressReading::at(model_.now(), scope, model_.calendar());
    rows.push_back(barRow(reading, scope == settings->scope, colours()));
    spoken +=
        worded("{period} {percent} left.",
               {{"period", nameOf(scope)}, {"percent", wholePercentText(reading.percentLeft)}}) +
        " ";
    if (scope != settings->scope)
      continue;
    ring_->setView(timeProgressRing(reading, progressRingSide, colours().ground, colours().text,
                                    colours().secondary));
    ring_->setName(
        worded("{period}, {percent} left",
               {{"period", nameOf(scope)}, {"percent", wholePercentText(reading.percentLeft)}}));
    scope_->setWords(nameOf(scope));
    left_->setWords(worded("{time} left", {{"time", reading.left}}));
  }
  bars_->setView(vstack(std::move(rows)));
  bars_->setName(spoken.trimmed());
}

} // namespace tavrin
