#include "TavrinWidgetsUI/WeatherViews.h"

#include <algorithm>

namespace tavrin {
namespace {

struct Sky {
  QColor top;
  QColor bottom;
};

/// Dark enough for white text in the middle.
Sky skyOf(const WeatherSnapshot& weather) {
  if (!weather.reading)
    return {{0x2B, 0x4A, 0x6B}, {0x22, 0x35, 0x4D}};
  if (!weather.reading->isDay)
    return {{0x0D, 0x15, 0x33}, {0x2B, 0x37, 0x66}};
  switch (weather.reading->condition) {
  case WeatherCondition::clear:
    return {{0x14, 0x5F, 0xB8}, {0x2F, 0x83, 0xCE}};
  case WeatherCondition::partlyCloudy:
    return {{0x24, 0x62, 0xA4}, {0x4A, 0x7F, 0xB0}};
  case WeatherCondition::snow:
    return {{0x4C, 0x68, 0x86}, {0x6B, 0x84, 0x9E}};
  case WeatherCondition::thunderstorm:
    return {{0x27, 0x26, 0x43}, {0x46, 0x43, 0x6B}};
  case WeatherCondition::drizzle:
  case WeatherCondition::rain:
    return {{0x2A, 0x3D, 0x57}, {0x45, 0x5F, 0x7F}};
  case WeatherCondition::cloudy:
  case WeatherCondition::fog:
    break;
  }
  return {{0x4A, 0x5A, 0x6C}, {0x62, 0x74, 0x86}};
}

QColor groundOf(const Sky& sky) {
  return mix(sky.top, sky.bottom, 0.5);
}

QString utf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

AnyView conditionSymbol(WeatherCondition condition, bool isDay, const QColor& ground) {
  return symbol(std::string(symbolName(condition, isDay)))
      .colour(weatherInk(condition, isDay, ground));
}

Text figureText(const QString& string, double points, const QColor& ink) {
  return text(string)
      .size(std::max(points, minimumTypeSize))
      .weight(FontWeight::semibold)
      .colour(ink)
      .align(TextAlignment::centre)
      .figure(minimumTypeSize);
}

Text wordText(const QString& string, double points, const QColor& ink) {
  return text(string)
      .size(std::max(points, minimumTypeSize))
      .weight(FontWeight::medium)
      .colour(ink)
      .align(TextAlignment::centre);
}

QString temperatureOf(const WeatherReading& reading) {
  return utf8(WeatherWords::shortDegrees(reading.temperature));
}

std::optional<QString> apparentOf(const WeatherSnapshot& weather) {
  if (!weather.settings.showsApparent || !weather.reading || !weather.reading->apparent)
    return std::nullopt;
  return utf8(WeatherWords::shortDegrees(*weather.reading->apparent));
}

Calendar placeCalendar(const WeatherReading& reading) {
  return Calendar(reading.timeZoneID.value_or(""));
}

/// From today on: what is over is no forecast any more.
std::vector<WeatherDay> comingDays(const WeatherSnapshot& weather, const Calendar& calendar) {
  std::vector<WeatherDay> days;
  const Date today = calendar.startOfDay(weather.now);
  for (const auto& day : weather.reading->days)
    if (day.date >= today)
      days.push_back(day);
  return days;
}

/// Weekday, symbol, high and low under each other; the weekday goes first.
AnyView dayColumn(const WeatherDay& day, const Calendar& calendar, const QColor& ground,
                  double points, double symbolSide, bool hasName) {
  const QColor quiet = palette::caption(ground);
  std::vector<AnyView> lines;
  if (hasName)
    lines.push_back(wordText(utf8(calendar.text(day.date, "cccccc")), points, quiet));
  lines.push_back(conditionSymbol(day.condition, true, ground).frame(symbolSide, symbolSide));
  lines.push_back(
      figureText(utf8(WeatherWords::shortDegrees(day.high)), points, palette::figure(ground)));
  lines.push_back(wordText(utf8(WeatherWords::shortDegrees(day.low)), points, quiet));
  return vstack(std::move(lines)).spacing(points * 0.08);
}

AnyView forecastColumns(const WeatherSnapshot& weather, const TileSize& size, double room,
                        std::size_t most) {
  const Calendar calendar = placeCalendar(*weather.reading);
  const QColor ground = groundOf(skyOf(weather));
  const double points = std::max(size.body() * 0.15, minimumTypeSize);
  const bool hasName = size.hasCaption();
  std::size_t widest = 2;
  for (const auto& day : weather.reading->days)
    for (const double value : {day.high, day.low})
      widest = std::max(widest, WeatherWords::shortDegrees(value).size() - 2);
  const double width = points * (0.75 + 0.62 * static_cast<double>(widest));
  const auto count = std::clamp<std::size_t>(static_cast<std::size_t>(room / width), 1, most);
  std::vector<AnyView> columns;
  for (const auto& day : comingDays(weather, calendar)) {
    if (columns.size() == count)
      break;
    columns.push_back(dayColumn(day, calendar, ground, points, points * 1.25, hasName)
                          .width(room / static_cast<double>(count)));
  }
  return hstack(std::move(columns));
}

QString spokenName(const WeatherSnapshot& weather) {
  if (!weather.hasPlace())
    return "Weather, no city chosen";
  if (!weather.reading)
    return weather.failed && !weather.isLoading ? "Weather, the forecast could not be reached"
                                                : "Weather, loading";
  return "Weather" +
         (weather.settings.cityName ? ", " + utf8(*weather.settings.cityName) : QString());
}

QString spokenValue(const WeatherSnapshot& weather) {
  if (!weather.reading)
    return {};
  const auto& reading = *weather.reading;
  QString value = utf8(WeatherWords::degrees(reading.temperature, weather.settings.unit)) + ", " +
                  utf8(WeatherWords::describe(reading.condition));
  if (const auto apparent = apparentOf(weather))
    value += ", feels like " + *apparent;
  if (weather.isStale)
    value += ", " + utf8(WeatherWords::age(reading.readAt, weather.now));
  return value;
}

/// A tile without a reading: no city, loading, or failed.
AnyView emptyTile(const WeatherSnapshot& weather, const TileSize& size) {
  const Sky sky = skyOf(weather);
  TileContent content;
  content.ground = sky.top;
  content.groundEnd = sky.bottom;
  content.mark = symbol(weather.hasPlace() ? "cloud.sun.fill" : "location")
                     .colour(palette::figure(groundOf(sky)));
  content.markRatio = 0.42;
  content.state = !weather.hasPlace()                    ? TileState::live
                  : weather.failed && !weather.isLoading ? TileState::cannot
                                                         : TileState::waiting;
  if (!weather.hasPlace())
    content.caption = "City?";
  return tile(content, size);
}

AnyView currentTile(const WeatherSnapshot& weather, const TileSize& size) {
  const auto& reading = *weather.reading;
  const Sky sky = skyOf(weather);
  const QColor ground = groundOf(sky);
  TileContent content;
  content.ground = sky.top;
  content.groundEnd = sky.bottom;
  content.figure = temperatureOf(reading);
  content.widestFigure = content.figure;
  if (const auto apparent = apparentOf(weather))
    content.caption = "Feels " + *apparent;
  content.mark = conditionSymbol(reading.condition, reading.isDay, ground);
  content.markRatio = content.caption.isEmpty() || !size.hasCaption() ? 0.42 : 0.34;
  content.state = weather.isStale ? TileState::waiting : TileState::live;
  return tile(content, size);
}

AnyView conditionsTile(const WeatherSnapshot& weather, const TileSize& size) {
  const auto& reading = *weather.reading;
  const Sky sky = skyOf(weather);
  const QColor ground = groundOf(sky);
  const double body = size.body();
  const double room = body * 0.84;
  const double side = body * (size.hasCaption() ? 0.3 : 0.38);
  const AnyView head =
      hstack({conditionSymbol(reading.condition, reading.isDay, ground).frame(side, side),
              figureText(temperatureOf(reading), body * 0.27, palette::figure(ground))})
          .spacing(body * 0.05);
  const double points = std::max(body * 0.135, minimumTypeSize);
  // Two words take two lines.
  const AnyView words =
      wordText(utf8(WeatherWords::describe(reading.condition)), points, palette::figure(ground))
          .lines(2)
          .frame({.maxWidth = room});
  std::vector<AnyView> candidates;
  if (const auto apparent = apparentOf(weather); apparent && size.side >= 84)
    candidates.push_back(
        vstack({head, words, wordText("Feels " + *apparent, points, palette::caption(ground))})
            .spacing(body * 0.03));
  candidates.push_back(vstack({head, words}).spacing(body * 0.03));
  candidates.push_back(head);
  const double margin = (size.height() - body) / 2;
  return zstack({tile(TileContent{.ground = sky.top, .groundEnd = sky.bottom}, size),
                 firstFitting(std::move(candidates))
                     .opacity(weather.isStale ? 0.5 : 1)
                     .fill()
                     .padding(margin + body * 0.08)})
      .frame(size.width(), size.height());
}

AnyView forecastTile(const WeatherSnapshot& weather, const TileSize& size) {
  const Sky sky = skyOf(weather);
  const double room = size.body() * 0.88;
  return zstack({tile(TileContent{.ground = sky.top, .groundEnd = sky.bottom}, size),
                 forecastColumns(weather, size, room, 3).opacity(weather.isStale ? 0.5 : 1)})
      .frame(size.width(), size.height());
}

AnyView readingTile(const WeatherSnapshot& weather, const TileSize& size) {
  switch (weather.settings.style) {
  case WeatherTileStyle::conditions:
    return conditionsTile(weather, size);
  case WeatherTileStyle::forecast:
    return forecastTile(weather, size);
  case WeatherTileStyle::current:
    break;
  }
  return currentTile(weather, size);
}

} // namespace

QColor weatherInk(WeatherCondition condition, bool isDay, const QColor& ground) {
  const bool isSunny =
      condition == WeatherCondition::clear || condition == WeatherCondition::partlyCloudy;
  const QColor ink = isSunny && isDay ? QColor(0xFF, 0xD6, 0x4A)
                     : isSunny        ? QColor(0xF4, 0xE9, 0xB8)
                                      : QColor(0xF2, 0xF7, 0xFF);
  return withContrast(ink, ground, 3);
}

AnyView weatherTileIcon(const WeatherSnapshot& weather, const TileSize& size) {
  return (weather.hasPlace() && weather.reading ? readingTile(weather, size)
                                                : emptyTile(weather, size))
      .accessibility(spokenName(weather), spokenValue(weather));
}

AnyView weatherWideTile(const WeatherSnapshot& weather, const TileSize& size) {
  const Sky sky = skyOf(weather);
  const QColor ground = groundOf(sky);
  const double body = size.body();
  WideTileContent content;
  content.ground = sky.top;
  content.groundEnd = sky.bottom;
  content.label = spokenName(weather);
  content.value = spokenValue(weather);
  if (!weather.hasPlace() || !weather.reading) {
    content.mark =
        symbol(weather.hasPlace() ? "cloud.sun.fill" : "location").colour(palette::figure(ground));
    content.caption = weather.hasPlace() ? utf8(weather.settings.cityName.value_or("Weather"))
                                         : QString("Weather");
    content.middle = vstack({text(content.caption)
                                 .size(std::max(body * 0.22, minimumTypeSize))
                                 .weight(FontWeight::semibold)
                                 .colour(palette::figure(ground)),
                             text(!weather.hasPlace()                    ? "Choose a city"
                                  : weather.failed && !weather.isLoading ? "No forecast now"
                                                                         : "Loading")
                                 .size(std::max(body * 0.18, minimumTypeSize))
                                 .colour(palette::caption(ground))})
                         .align(Alignment::leading);
    content.state = !weather.hasPlace()                    ? TileState::live
                    : weather.failed && !weather.isLoading ? TileState::cannot
                                                           : TileState::waiting;
    return wideTile(content, size);
  }
  const auto& reading = *weather.reading;
  content.mark = conditionSymbol(reading.condition, reading.isDay, ground);
  content.state = weather.isStale ? TileState::waiting : TileState::live;
  const QString city = utf8(weather.settings.cityName.value_or(""));
  const QString words = utf8(WeatherWords::describe(reading.condition));
  const auto apparent = apparentOf(weather);
  const AnyView degrees = figureText(temperatureOf(reading), body * 0.32, palette::figure(ground));
  AnyView figure = degrees;
  if (apparent && (size.span > 2 || size.hasCaption()))
    figure =
        hstack({degrees, wordText("Feels " + *apparent, body * 0.15, palette::caption(ground))
                             .frame({.minWidth = std::max(body * 0.15, minimumTypeSize) * 4.6})})
            .spacing(body * 0.06)
            .align(Alignment::bottom);
  const AnyView lines =
      vstack({text(city.isEmpty() || size.span == 2 ? words : city + " · " + words)
                  .size(std::max(body * 0.17, minimumTypeSize))
                  .weight(FontWeight::medium)
                  .colour(palette::figure(ground)),
              figure})
          .align(Alignment::leading)
          .spacing(body * 0.02);
  if (size.span > 2) {
    const double room = body * 0.4 * std::min(size.span + 0.0, 5.0);
    content.middle = hstack({lines, spacer(body * 0.1),
                             forecastColumns(weather, size, room, WeatherService::forecastDays)});
  } else {
    content.middle = lines;
  }
  return wideTile(content, size);
}

} // namespace tavrin
