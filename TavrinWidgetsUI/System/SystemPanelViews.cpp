#include "TavrinWidgetsUI/System/SystemPanelViews.h"

#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/Gauges.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/System/ActivityViews.h"
#include "TavrinWidgetsUI/System/BatteryViews.h"
#include "TavrinWidgetsUI/System/NetworkViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr double ringSide = 112;
constexpr double batteryRingSide = 128;
constexpr double contentWidth = 248;
constexpr double chartHeight = 72;
constexpr int visibleLinks = 4;
constexpr int visibleDevices = 5;

AnyView panelFigure(const QString& figure, double points, const PanelPalette& colours) {
  return text(figure)
      .size(points)
      .weight(FontWeight::semibold)
      .colour(colours.text)
      .widest("100%")
      .align(TextAlignment::centre);
}

AnyView labelledRing(const QString& name, double value, const QColor& tint,
                     const PanelPalette& colours) {
  const QColor visible = withContrast(tint, colours.ground, 3);
  const AnyView label = vstack({panelFigure(percentText(value), 24, colours),
                                text(name).size(11).colour(colours.secondary)})
                            .spacing(1);
  return GaugeRing{value, visible, colours.track, 10, label}.view().frame(ringSide, ringSide);
}

AnyView rateView(const char* arrow, const QString& name, double rate, const QColor& tint,
                 const PanelPalette& colours) {
  const RateText shown = rateText(rate);
  return vstack(
             {hstack({symbol(arrow).colour(withContrast(tint, colours.ground, 3)).size(13),
                      text(name).size(11).colour(colours.secondary)})
                  .spacing(5),
              hstack({text(shown.number).size(26).weight(FontWeight::semibold).colour(colours.text),
                      text(shown.unit).size(13).colour(colours.secondary).widest("MB/s")})
                  .spacing(4)
                  .align(Alignment::bottom)})
      .align(Alignment::leading)
      .spacing(2)
      .width(contentWidth / 2 - 4, Alignment::leading);
}

AnyView onChartGround(const AnyView& chart, const PanelPalette& colours) {
  return chart.padding(0, 4).background(roundedRectangle(6).fill(colours.control));
}

/// What a chart's line shows, for those who hear it.
struct LineFigures {
  double average = 0;
  double most = 0;

  void take(double value) {
    sum_ += value;
    average = sum_ / ++count_;
    most = std::max(most, value);
  }

private:
  double sum_ = 0;
  int count_ = 0;
};

QString loadSentence(const char* english, const LineFigures& figures, double now) {
  return worded(english, {{"now", percentText(now)},
                          {"average", percentText(figures.average)},
                          {"most", percentText(figures.most)}});
}

QString rateSentence(const char* english, const LineFigures& figures, double now) {
  return worded(english, {{"now", rateText(now).whole()},
                          {"average", rateText(figures.average).whole()},
                          {"most", rateText(figures.most).whole()}});
}

} // namespace

BatteryPanelView::BatteryPanelView(const PanelAppearance& appearance,
                                   const SystemWidgetModel& model, std::function<void()> onEdit)
    : PanelView(appearance), model_(model),
      gauge_(new ViewWidget(QSizeF(batteryRingSide, batteryRingSide))),
      state_(new PanelText({}, PanelTextStyle::heading)),
      devices_(new PanelList(worded("Devices"))),
      noDevices_(new PanelText(worded("No connected device tells its battery."),
                               PanelTextStyle::secondary)) {
  state_->setAlignment(Qt::AlignHCenter);
  devices_->setReadOnly(true);
  devices_->setMaximumVisibleRows(visibleDevices);
  add(gauge_, Qt::AlignHCenter);
  add(state_);
  addSpace(4);
  add(new PanelText(worded("Devices"), PanelTextStyle::section));
  add(devices_);
  add(noDevices_);
  setEditButton(worded("Edit Battery…"), std::move(onEdit));
  refresh();
}

void BatteryPanelView::refresh() {
  const BatteryReading& reading = model_.battery();
  setTitle(utf8(model_.widget().name));
  setState(reading.isPluggedIn && reading.level ? worded("Plugged in") : QString());
  const QString state = batteryStateText(reading);
  state_->setWords(reading.level ? state : worded("This computer has no battery."));
  const QColor tint = withContrast(batteryTint(reading), colours().ground, 3);
  AnyView label = symbol("battery").colour(colours().secondary).size(48);
  if (reading.level)
    label = vstack({panelFigure(percentText(*reading.level), 30, colours()),
                    batteryGlyph(reading, colours().secondary, colours().ground).frame(32, 17)})
                .spacing(5);
  gauge_->setView(
      GaugeRing{reading.level.value_or(0), tint, colours().track, 11, label}.view().frame(
          batteryRingSide, batteryRingSide));
  gauge_->setName(reading.level
                      ? worded("Battery, {percent}", {{"percent", percentText(*reading.level)}})
                      : state);
  std::vector<PanelRow> rows;
  for (const auto& device : model_.devices()) {
    PanelRow row;
    row.id = utf8(device.id);
    row.title = utf8(device.name);
    row.symbol = utf8(std::string(symbolName(device.kind)));
    row.trailing = QString::fromStdString(wholePercentText(device.percent));
    rows.push_back(std::move(row));
  }
  devices_->setVisible(!rows.empty());
  noDevices_->setVisible(rows.empty());
  devices_->setRows(std::move(rows));
}

ActivityPanelView::ActivityPanelView(const PanelAppearance& appearance, SystemWidgetModel& model,
                                     std::function<void()> onEdit)
    : PanelView(appearance), model_(model), gauges_(new ViewWidget(QSizeF(contentWidth, ringSide))),
      chart_(new ViewWidget(QSizeF(contentWidth, chartHeight))),
      trouble_(new PanelText(worded("No system monitor is installed."), PanelTextStyle::trouble)) {
  add(gauges_, Qt::AlignHCenter);
  addSpace(2);
  add(chart_, Qt::AlignHCenter);
  addSpace(4);
  trouble_->hide();
  add(new PanelButton(PanelButton::Kind::quiet, worded("Open Activity Monitor"),
                      [this] { trouble_->setVisible(!model_.openActivityMonitor()); }));
  add(trouble_);
  setEditButton(worded("Edit Activity…"), std::move(onEdit));
  refresh();
}

void ActivityPanelView::refresh() {
  const ActivityReading& reading = model_.activity();
  setTitle(utf8(model_.widget().name));
  gauges_->setView(hstack({labelledRing(worded("Processor"), reading.cpu, cpuTint, colours()),
                           labelledRing(worded("Memory"), reading.memory, memoryTint, colours())})
                       .spacing(contentWidth - 2 * ringSide));
  const auto line = [&](double ActivityReading::*value, const QColor& tint, LineFigures& figures) {
    Sparkline line{
        {}, SystemWidgetModel::historyLength + 1, 1, withContrast(tint, colours().ground, 3), 1.5};
    for (const auto& past : model_.activityHistory())
      line.values.push_back(past.*value);
    line.values.push_back(reading.*value);
    for (const double each : line.values)
      figures.take(each);
    return line.view();
  };
  LineFigures processor;
  LineFigures memory;
  chart_->setView(onChartGround(zstack({line(&ActivityReading::memory, memoryTint, memory),
                                        line(&ActivityReading::cpu, cpuTint, processor)}),
                                colours()));
  chart_->setName(worded("The last minute"));
  chart_->setAccessibleDescription(
      loadSentence(marked("The processor is at {now}, on average {average}, at most {most}."),
                   processor, reading.cpu) +
      ' ' +
      loadSentence(marked("Memory is at {now}, on average {average}, at most {most}."), memory,
                   reading.memory));
  gauges_->setName(
      worded("Processor {processor}, memory {memory}",
             {{"processor", percentText(reading.cpu)}, {"memory", percentText(reading.memory)}}));
}

NetworkPanelView::NetworkPanelView(const PanelAppearance& appearance,
                                   const SystemWidgetModel& model, Choose choose,
                                   std::function<void()> onEdit)
    : PanelView(appearance), model_(model), choose_(std::move(choose)),
      rates_(new ViewWidget(QSizeF(contentWidth, 50))),
      chart_(new ViewWidget(QSizeF(contentWidth, chartHeight))),
      links_(new PanelList(worded("Links"))) {
  add(rates_, Qt::AlignHCenter);
  add(chart_, Qt::AlignHCenter);
  addSpace(4);
  add(new PanelText(wordedIn("connections to be counted", "Count"), PanelTextStyle::section));
  links_->setMaximumVisibleRows(visibleLinks);
  links_->onOpen = [this](int row) {
    if (row >= 0 && row < static_cast<int>(choices_.size()))
      choose_(choices_[static_cast<std::size_t>(row)]);
  };
  add(links_);
  setEditButton(worded("Edit Network…"), std::move(onEdit));
  refresh();
}

void NetworkPanelView::refresh() {
  const auto* settings = model_.widget().kind.get<NetworkSettings>();
  if (settings == nullptr)
    return;
  setTitle(worded("Network Activity"));
  const NetworkTrace trace{model_.network(), model_.networkHistory()};
  rates_->setView(
      hstack({rateView("arrow.down", worded("Download"), trace.now.down, downTint, colours()),
              rateView("arrow.up", worded("Upload"), trace.now.up, upTint, colours())})
          .spacing(8));
  rates_->setName(
      worded("Download {down}, upload {up}",
             {{"down", rateText(trace.now.down).whole()}, {"up", rateText(trace.now.up).whole()}}));
  chart_->setView(onChartGround(networkChart(trace, colours().ground, 1.5), colours()));
  chart_->setName(worded("The last minute"));
  LineFigures down;
  LineFigures up;
  const auto take = [&](const NetworkReading& rates) {
    down.take(rates.down);
    up.take(rates.up);
  };
  std::ranges::for_each(trace.history, take);
  take(trace.now);
  chart_->setAccessibleDescription(
      rateSentence(marked("Download is at {now}, on average {average}, at most {most}."), down,
                   trace.now.down) +
      ' ' +
      rateSentence(marked("Upload is at {now}, on average {average}, at most {most}."), up,
                   trace.now.up));
  choices_ = {std::nullopt};
  for (auto& name : model_.networkInterfaces())
    choices_.emplace_back(std::move(name));
  // A link that is away now stays chosen.
  if (settings->interface &&
      std::find(choices_.begin(), choices_.end(), settings->interface) == choices_.end())
    choices_.push_back(settings->interface);
  std::vector<PanelRow> rows;
  for (const auto& choice : choices_) {
    PanelRow row;
    row.id = choice ? utf8(*choice) : QString("*");
    row.title = choice ? utf8(*choice) : worded("All Links");
    row.isChecked = choice == settings->interface;
    rows.push_back(std::move(row));
  }
  links_->setRows(std::move(rows));
}

} // namespace tavrin
