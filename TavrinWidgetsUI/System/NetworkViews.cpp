#include "TavrinWidgetsUI/System/NetworkViews.h"

#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Views/Gauges.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tavrin {
namespace {

constexpr std::size_t chartLength = 31;
/// A chart of less than this is a flat line.
constexpr double leastPeak = 10'000;
/// Below a figure's feet, by its size.
constexpr double figureFoot = 0.1113;

std::vector<double> valuesOf(const NetworkTrace& trace, double NetworkReading::*rate) {
  std::vector<double> values;
  values.reserve(trace.history.size() + 1);
  for (const auto& reading : trace.history)
    values.push_back(reading.*rate);
  values.push_back(trace.now.*rate);
  return values;
}

double peakOf(const std::vector<double>& values) {
  double peak = leastPeak;
  for (const double value : values)
    if (std::isfinite(value))
      peak = std::max(peak, value);
  return peak;
}

/// The unit is smaller than its number, as far as words may be, and stands on the same line.
AnyView rateRow(double rate, const char* arrow, const QColor& tint, double points,
                const TileSize& size) {
  const RateText shown = rateText(rate);
  const double unit = std::min(std::max(points * 0.6, size.words(0)), points * 0.85);
  const AnyView number = text(shown.number)
                             .size(points)
                             .weight(FontWeight::semibold)
                             .colour(palette::figure())
                             .widest("888")
                             .align(TextAlignment::trailing)
                             .figure(minimumTypeSize);
  const AnyView unitWords = text(shown.unit)
                                .size(unit)
                                .weight(FontWeight::medium)
                                .colour(palette::caption())
                                .widest("MB/s")
                                .figure(unit);
  const double sink = (points - unit) * figureFoot;
  return hstack({symbol(arrow).colour(withContrast(tint, palette::ground, 3)).size(points * 0.82),
                 hstack({number, unitWords.offset(0, -sink)})
                     .spacing(points * 0.25)
                     .align(Alignment::bottom)})
      .spacing(points * 0.22);
}

/// "1.2" and "M" in one word, for tiles without room for a unit of its own.
AnyView shortRow(double rate, const char* arrow, const QColor& tint, double points) {
  const RateText shown = rateText(rate);
  return hstack({symbol(arrow).colour(withContrast(tint, palette::ground, 3)).size(points * 0.72),
                 text(shown.number + shown.unit.left(1))
                     .size(points)
                     .weight(FontWeight::semibold)
                     .colour(palette::figure())
                     .widest("888M")
                     .figure(minimumTypeSize)})
      .spacing(points * 0.14);
}

QString spoken(const NetworkTrace& trace) {
  return worded("Down {down}, up {up}", {{"down", rateText(trace.now.down).whole()},
                                         {"up", rateText(trace.now.up).whole()}});
}

AnyView networkNumbersTile(const NetworkTrace& trace, const TileSize& size) {
  const double points = size.words(0.21);
  const auto row = [&](double rate, const char* arrow, const QColor& tint) {
    return size.side >= 84 ? rateRow(rate, arrow, tint, points * 0.86, size)
                           : shortRow(rate, arrow, tint, points);
  };
  return tile(
      palette::ground,
      vstack({row(trace.now.down, "arrow.down", downTint), row(trace.now.up, "arrow.up", upTint)})
          .align(Alignment::leading)
          .spacing(size.body() * 0.08),
      size);
}

AnyView chartTile(const NetworkTrace& trace, const TileSize& size) {
  const double points = size.words(0.17);
  const AnyView chart = networkChart(trace, palette::ground, std::max(1.5, size.body() * 0.025))
                            .frame({.maxWidth = unbounded, .maxHeight = unbounded});
  const AnyView rate = shortRow(trace.now.down, "arrow.down", downTint, points);
  return tile(palette::ground,
              vstack({rate.padding({0, size.padding(), 0, size.body() * 0.06}),
                      chart.padding({size.padding(), 0, size.padding(), size.padding()})}),
              size);
}

} // namespace

RateText rateText(double bytesPerSecond) {
  constexpr std::array units = {"B/s", "kB/s", "MB/s", "GB/s", "TB/s"};
  double rate = std::isfinite(bytesPerSecond) ? std::max(bytesPerSecond, 0.0) : 0;
  std::size_t unit = 0;
  while (rate >= 999.5 && unit + 1 < units.size()) {
    rate /= 1000;
    ++unit;
  }
  const bool isFine = unit > 0 && rate < 9.95;
  return {isFine ? QString::fromStdString(decimalText(rate, 1))
                 : QString::number(std::lround(std::min(rate, 999.0))),
          units[unit]};
}

AnyView networkChart(const NetworkTrace& trace, const QColor& ground, double lineWidth) {
  const auto down = valuesOf(trace, &NetworkReading::down);
  const auto up = valuesOf(trace, &NetworkReading::up);
  const double peak = std::max(peakOf(down), peakOf(up));
  return zstack(
      {Sparkline{up, chartLength, peak, withContrast(upTint, ground, 3), lineWidth}.view(),
       Sparkline{down, chartLength, peak, withContrast(downTint, ground, 3), lineWidth}.view()});
}

AnyView networkTileIcon(const NetworkTrace& trace, const NetworkSettings& settings,
                        const TileSize& size) {
  return (settings.style == NetworkTileStyle::chart ? chartTile : networkNumbersTile)(trace, size)
      .accessibility(worded("Network"), spoken(trace));
}

AnyView networkWideTile(const NetworkTrace& trace, const NetworkSettings& settings,
                        const TileSize& size) {
  const double points = size.words(0.22);
  const AnyView rows = vstack({rateRow(trace.now.down, "arrow.down", downTint, points, size),
                               rateRow(trace.now.up, "arrow.up", upTint, points, size)})
                           .align(Alignment::leading)
                           .spacing(size.body() * 0.08);
  WideTileContent content;
  content.label = worded("Network");
  content.value = spoken(trace);
  content.middle = rows;
  if (settings.style == NetworkTileStyle::chart || size.span > 2) {
    const double height = size.body() * 0.56;
    const AnyView chart = networkChart(trace, palette::ground, std::max(1.5, size.body() * 0.025))
                              .frame({.minWidth = height,
                                      .maxWidth = unbounded,
                                      .minHeight = height,
                                      .maxHeight = height});
    content.middle =
        firstFitting({hstack({rows, chart}).spacing(size.padding()), rows}).fillWidth();
  } else {
    content.mark = {};
  }
  return wideTile(content, size);
}

} // namespace tavrin
