#include "TavrinWidgetsUI/System/TimeProgressViews.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

CalendarUnit unitOf(TimeProgressScope scope) {
  constexpr std::array units = {CalendarUnit::day, CalendarUnit::week, CalendarUnit::month,
                                CalendarUnit::year};
  return units[static_cast<std::size_t>(scope)];
}

std::string durationText(double seconds) {
  const auto minutes = static_cast<int>(std::ceil(seconds / 60));
  if (minutes < 60)
    return translated("{minutes} min", {{"minutes", minutes}});
  if (minutes < 24 * 60)
    return translated("{hours} h {minutes} min",
                      {{"hours", minutes / 60}, {"minutes", minutes % 60}});
  const int hours = static_cast<int>(std::ceil(seconds / 3600));
  const int days = hours / 24;
  if (days < 7)
    return plural("{count} day {hours} h", "{count} days {hours} h", days, {{"hours", hours % 24}});
  return plural("{count} day", "{count} days", days);
}

QString scopeTitle(const TimeProgressReading& reading) {
  const auto name = title(reading.scope);
  return utf8(name);
}

QString percentText(const TimeProgressReading& reading) {
  return QString::fromStdString(wholePercentText(reading.percentLeft));
}

QString spoken(const TimeProgressReading& reading) {
  return worded("{percent} left", {{"percent", wholePercentText(reading.percentLeft)}});
}

Text percent(const TimeProgressReading& reading, double points, const QColor& ink) {
  return text(percentText(reading))
      .size(points)
      .weight(FontWeight::semibold)
      .colour(ink)
      .widest("88%")
      .align(TextAlignment::centre)
      .figure(minimumTypeSize);
}

Text word(const QString& string, double points, const QColor& colour) {
  return text(string)
      .size(points)
      .weight(FontWeight::medium)
      .colour(colour)
      .align(TextAlignment::centre);
}

} // namespace

TimeProgressReading TimeProgressReading::at(Date now, TimeProgressScope scope,
                                            const Calendar& calendar) {
  const auto interval = calendar.dateInterval(unitOf(scope), now);
  return {scope, TimeProgress::fraction(scope, now, calendar),
          TimeProgress::percentLeft(scope, now, calendar),
          interval ? durationText(interval->end.since(now)) : std::string()};
}

QColor timeProgressTint(TimeProgressScope scope) {
  constexpr std::array tints = {palette::orange, palette::teal, palette::blue, palette::pink};
  return tints[static_cast<std::size_t>(scope)];
}

AnyView timeProgressTileIcon(const TimeProgressReading& reading, const TileSize& size) {
  const double body = size.body();
  const double captionSize = size.words(0.115);
  const QColor tint = timeProgressTint(reading.scope);
  const AnyView name = word(scopeTitle(reading), captionSize, withContrast(tint, palette::ground));
  const AnyView figure =
      percent(reading, body * (size.hasCaption() ? 0.255 : 0.27), palette::figure());
  const AnyView left = word(worded("left"), captionSize, size.quietInk());
  const double diameter = body * 0.93;
  const double thickness = body * 0.07;
  const AnyView gauge = ring(reading.fraction)
                            .tint(tint)
                            .track(palette::caption())
                            .thickness(thickness)
                            .frame(diameter, diameter);
  // The longer word stands above; a little lower, all of it keeps clear of the ring.
  const AnyView centre =
      size.hasCaption() ? AnyView(vstack({name, figure, left})).offset(0, body * 0.012) : figure;
  return tile(palette::ground,
              zstack({gauge, centre.frame({.maxWidth = diameter - 2.5 * thickness})}), size)
      .accessibility(scopeTitle(reading), spoken(reading));
}

AnyView timeProgressWideTile(const TimeProgressReading& reading, const TileSize& size) {
  const double side = size.body() - 2 * size.padding();
  WideTileContent content;
  content.tint = timeProgressTint(reading.scope);
  content.mark =
      ring(reading.fraction).tint(content.tint).track(palette::caption()).thickness(side * 0.17);
  content.caption = size.span > 2
                        ? scopeTitle(reading) + " · " + QString::fromStdString(reading.left)
                        : scopeTitle(reading);
  content.figure = spoken(reading);
  content.widestFigure = worded("{percent} left", {{"percent", wholePercentText(88)}});
  return wideTile(content, size).accessibility(scopeTitle(reading), spoken(reading));
}

AnyView timeProgressRing(const TimeProgressReading& reading, double side, const QColor& ground,
                         const QColor& ink, const QColor& quiet) {
  const QColor tint = withContrast(timeProgressTint(reading.scope), ground, 3);
  return zstack({ring(reading.fraction).tint(tint).track(quiet).thickness(side * 0.085),
                 vstack({percent(reading, side * 0.25, ink),
                         word(worded("left"), side * 0.1, quiet)})})
      .frame(side, side)
      .accessibility(scopeTitle(reading), spoken(reading));
}

} // namespace tavrin
