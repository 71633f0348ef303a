#include "TavrinWidgetsUI/Weather/WeatherPanelView.h"

#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Weather/WeatherModel.h"

#include <QGuiApplication>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

namespace tavrin {
namespace {

constexpr QSizeF headSize{288, 72};
constexpr double contentWidth = 288;
constexpr double dayHeight = 34;
constexpr double barHeight = 6;
constexpr const char* provider = "https://open-meteo.com/";

/// A day's low and high within those of all days.
struct Span {
  double from = 0;
  double to = 1;
  QColor track;
  QColor cold;
  QColor warm;
  bool operator==(const Span&) const = default;
};

void paintSpan(QPainter& painter, const QRectF& rect, const Span& span) {
  const QRectF track(rect.left(), rect.center().y() - barHeight / 2, rect.width(), barHeight);
  painter.setPen(Qt::NoPen);
  painter.setBrush(span.track);
  painter.drawRoundedRect(track, barHeight / 2, barHeight / 2);
  // A day without a range is a dot.
  const double room = track.width() - barHeight;
  const QRectF part(track.left() + room * span.from, track.top(),
                    room * (span.to - span.from) + barHeight, barHeight);
  // The low stands at the line's beginning.
  const bool isMirrored = QGuiApplication::isRightToLeft();
  QLinearGradient colours(track.topLeft(), track.topRight());
  colours.setColorAt(isMirrored ? 1 : 0, span.cold);
  colours.setColorAt(isMirrored ? 0 : 1, span.warm);
  painter.setBrush(colours);
  painter.drawRoundedRect(
      isMirrored ? part.translated(track.left() + track.right() - part.left() - part.right(), 0)
                 : part,
      barHeight / 2, barHeight / 2);
}

} // namespace

WeatherPanelView::WeatherPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance, Width::lists), source_(std::move(source)),
      field_(new PanelSearchField(worded("Search for a city"))),
      results_(new PanelList(worded("Cities"))),
      noResult_(new PanelText(worded("No city by that name."), PanelTextStyle::secondary)),
      empty_(new PanelEmptyState({}, {})), current_(new QWidget),
      city_(new PanelText({}, PanelTextStyle::heading)),
      region_(new PanelText({}, PanelTextStyle::secondary)), head_(new ViewWidget(headSize)),
      trouble_(
          new PanelText(worded("Could not reach the forecast just now."), PanelTextStyle::trouble)),
      days_(new QWidget) {
  auto* column = new QVBoxLayout(current_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  city_->setSingleLine(true);
  region_->setSingleLine(true);
  for (QWidget* part : {static_cast<QWidget*>(city_), static_cast<QWidget*>(region_),
                        static_cast<QWidget*>(head_), static_cast<QWidget*>(trouble_)})
    column->addWidget(part);
  auto* dayColumn = new QVBoxLayout(days_);
  dayColumn->setContentsMargins(0, 0, 0, 0);
  dayColumn->setSpacing(0);
  days_->setAccessibleName(worded("Forecast"));
  results_->setMaximumVisibleRows(5);
  field_->setList(results_);
  field_->onChange = [this](const QString& text) { source_.search.type(text.toStdString()); };
  results_->onOpen = [this](int row) {
    const auto& places = source_.search.places();
    if (row < 0 || static_cast<std::size_t>(row) >= places.size())
      return;
    const WeatherPlace place = places[static_cast<std::size_t>(row)];
    // The list goes: its keys would pass to whatever comes next.
    field_->setFocus(Qt::OtherFocusReason);
    source_.choose(place);
  };
  add(field_);
  add(results_);
  add(noResult_);
  add(empty_);
  add(current_);
  add(days_);
  setEditButton(worded("Edit Weather…"), source_.edit);
  auto* credit = new PanelButton(PanelButton::Kind::faint, worded("Data: Open-Meteo.com"),
                                 [this] { source_.open(provider); });
  credit->setAccessibleName(worded("Weather data by Open-Meteo.com"));
  setPlainToolTip(credit, worded("Weather data by Open-Meteo.com"));
  addFooterButton(credit);
  refresh();
}

void WeatherPanelView::refresh() {
  const WeatherSnapshot weather = source_.weather();
  setTitle(utf8(source_.name()));
  setState(weather.reading     ? utf8(WeatherWords::age(weather.reading->readAt, weather.now))
           : weather.isLoading ? worded("Loading")
                               : QString());
  showSearch();
  const bool isSearching = !source_.search.text().empty();
  const bool hasReading = weather.hasPlace() && weather.reading;
  const bool isTroubled = weather.failed && !weather.isLoading;
  empty_->setVisible(!isSearching && !hasReading);
  current_->setVisible(!isSearching && hasReading);
  days_->setVisible(!isSearching && hasReading);
  if (!weather.hasPlace())
    empty_->setSentence("location", worded("Choose a city and Tavrin will show its weather here."));
  else if (isTroubled)
    empty_->setSentence("cloud.sun.fill", worded("Could not reach the forecast just now."));
  else
    empty_->setSentence("cloud.sun.fill", weather.settings.cityName
                                              ? worded("Asking for the weather in {city}…",
                                                       {{"city", *weather.settings.cityName}})
                                              : worded("Asking for the weather in this place…"));
  empty_->setTrouble(weather.hasPlace() && isTroubled);
  empty_->setStep(weather.hasPlace() && isTroubled ? worded("Try Again") : QString(),
                  source_.refresh);
  if (hasReading) {
    trouble_->setVisible(isTroubled);
    showReading(weather);
    showDays(weather);
  }
}

void WeatherPanelView::showReading(const WeatherSnapshot& weather) {
  const auto& reading = *weather.reading;
  const auto region = source_.region();
  city_->setWords(utf8(weather.settings.cityName.value_or("")));
  city_->setVisible(weather.settings.cityName.has_value());
  region_->setVisible(region.has_value());
  region_->setWords(utf8(region.value_or("")));
  const QString degrees = utf8(WeatherWords::degrees(reading.temperature, weather.settings.unit));
  const QString words = utf8(WeatherWords::describe(reading.condition));
  const QString feels =
      weather.settings.showsApparent && reading.apparent
          ? worded("Feels like {degrees}",
                   {{"degrees", WeatherWords::degrees(*reading.apparent, weather.settings.unit)}})
          : QString();
  const QColor ink = weatherInk(reading.condition, reading.isDay, colours().ground);
  const AnyView lines =
      vstack({text(words).size(15).weight(FontWeight::semibold).colour(colours().text),
              feels.isEmpty() ? AnyView() : AnyView(text(feels).colour(colours().secondary))})
          .align(Alignment::leading)
          .spacing(2);
  head_->setView(
      hstack(
          {symbol(std::string(symbolName(reading.condition, reading.isDay))).colour(ink).size(52),
           text(degrees).size(38).weight(FontWeight::semibold).colour(colours().text).figure(),
           lines})
          .spacing(12)
          .fill(Alignment::leading));
  head_->setName(joinedFacts({degrees, words, feels}));
}

void WeatherPanelView::showDays(const WeatherSnapshot& weather) {
  const Calendar calendar(weather.reading->timeZoneID.value_or(""));
  const auto& days = weather.reading->days;
  while (rows_.size() < days.size()) {
    rows_.push_back(new ViewWidget({contentWidth, dayHeight}));
    days_->layout()->addWidget(rows_.back());
  }
  double least = days.front().low;
  double most = days.front().high;
  bool hasChance = false;
  for (const auto& day : days) {
    least = std::min({least, day.low, day.high});
    most = std::max({most, day.low, day.high});
    hasChance = hasChance || day.rainChance;
  }
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i]->setVisible(i < days.size());
    if (i >= days.size())
      continue;
    const auto& day = days[i];
    const QString name =
        utf8(WeatherWords::dayName(day.date, calendar.isSameDay(day.date, weather.now), calendar));
    rows_[i]->setView(dayRow(day, name, least, most, hasChance));
    rows_[i]->setName(joinedFacts({name, utf8(WeatherWords::describe(day.condition))}));
    rows_[i]->setAccessibleDescription(utf8(WeatherWords::daySummary(day)));
  }
}

AnyView WeatherPanelView::dayRow(const WeatherDay& day, const QString& name, double least,
                                 double most, bool hasChance) const {
  const auto& look = colours();
  const auto degrees = [&](double value, const QColor& ink, FontWeight weight) {
    return text(utf8(WeatherWords::shortDegrees(value)))
        .size(13)
        .weight(weight)
        .colour(ink)
        .widest("−88°")
        .figure(13)
        .align(TextAlignment::trailing);
  };
  const double range = std::max(most - least, 1.0);
  const Span span{std::clamp((std::min(day.low, day.high) - least) / range, 0.0, 1.0),
                  std::clamp((std::max(day.low, day.high) - least) / range, 0.0, 1.0), look.track,
                  withContrast(QColor(0x4F, 0xA8, 0xE8), look.ground, 2),
                  withContrast(QColor(0xF0, 0x9A, 0x3E), look.ground, 2)};
  AnyView chance;
  if (hasChance)
    chance = text(day.rainChance ? wholePercentText(std::lround(*day.rainChance)) : "–")
                 .size(12)
                 .colour(withContrast(QColor(0x3E, 0x8E, 0xF0), look.ground))
                 .widest(QString::fromStdString(wholePercentText(100)))
                 .figure(12)
                 .align(TextAlignment::trailing);
  const QColor ink = weatherInk(day.condition, true, look.ground);
  std::vector<AnyView> parts{
      text(name).size(13).colour(look.text).width(62, Alignment::leading),
      symbol(std::string(symbolName(day.condition, true))).colour(ink).size(20).frame(24, 24)};
  if (hasChance)
    parts.push_back(chance);
  parts.push_back(degrees(day.low, look.secondary, FontWeight::regular));
  parts.push_back(canvas(span, paintSpan).height(dayHeight).fillWidth());
  parts.push_back(degrees(day.high, look.text, FontWeight::semibold));
  return hstack(std::move(parts)).spacing(10);
}

void WeatherPanelView::showSearch() {
  const auto& search = source_.search;
  if (field_->text() != utf8(search.text())) {
    // Not by blocking its signals: its clear button follows them.
    const auto onChange = std::exchange(field_->onChange, nullptr);
    field_->setText(utf8(search.text()));
    field_->onChange = onChange;
  }
  std::vector<PanelRow> rows;
  for (const auto& place : search.places()) {
    PanelRow row;
    row.id = utf8(place.id());
    row.title = utf8(place.name);
    row.subtitle = utf8(place.region.value_or(""));
    rows.push_back(std::move(row));
  }
  results_->setVisible(!rows.empty());
  results_->setRows(std::move(rows));
  noResult_->setVisible(search.hasFoundNothing());
}

} // namespace tavrin
