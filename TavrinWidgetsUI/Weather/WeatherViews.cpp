#include "TavrinWidgetsUI/Weather/WeatherViews.h"

#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/GradientGround.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {
namespace {

struct Sky {
  QColor top;
  QColor bottom;
};

Sky freshSky(const WeatherSnapshot& weather) {
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

/// Of a reading that is old it is dull; the words stay as they are.
Sky skyOf(const WeatherSnapshot& weather) {
  const Sky sky = freshSky(weather);
  if (!weather.reading || !weather.isStale)
    return sky;
  constexpr QColor dull{0x3C, 0x40, 0x46};
  return {mix(sky.top, dull, 0.7), mix(sky.bottom, dull, 0.7)};
}

QColor groundOf(const Sky& sky) {
  return GradientGround{sky.top, sky.bottom}.legible().harder();
}

AnyView conditionSymbol(WeatherCondition condition, bool isDay, const QColor& ground) {
  return symbol(std::string(symbolName(condition, isDay)))
      .colour(weatherInk(condition, isDay, ground));
}

Text figureText(const QString& string, double points, const QColor& ink) {
  return text(string)
      .size(points)
      .weight(FontWeight::semibold)
      .colour(ink)
      .align(TextAlignment::centre)
      .figure(minimumTypeSize);
}

Text wordText(const QString& string, double points, const QColor& ink) {
  return text(string)
      .size(points)
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

/// As a date's pattern: "Th"; for all days the letter alone in languages of which some short names
/// are long.
const char* dayLetters(const Calendar& calendar, Date today) {
  constexpr qsizetype longest = 3;
  constexpr int week = 7;
  for (int days = 0; days < week; ++days)
    if (utf8(calendar.text(calendar.addingDays(days, today), "cccccc")).size() > longest)
      return "ccccc";
  return "cccccc";
}

/// Weekday, symbol, high and low under each other; the weekday, by its pattern, goes first.
AnyView dayColumn(const WeatherDay& day, const Calendar& calendar, const QColor& ground,
                  const TileSize& size, double points, const char* letters) {
  const QColor quiet = size.quietInk(ground);
  const double symbolSide = points * 1.25;
  std::vector<AnyView> lines;
  if (letters != nullptr)
    lines.push_back(wordText(utf8(calendar.text(day.date, letters)), points, quiet));
  lines.push_back(conditionSymbol(day.condition, true, ground).frame(symbolSide, symbolSide));
  lines.push_back(
      figureText(utf8(WeatherWords::shortDegrees(day.high)), points, palette::figure(ground)));
  lines.push_back(wordText(utf8(WeatherWords::shortDegrees(day.low)), points, quiet));
  return vstack(std::move(lines)).spacing(points * 0.08);
}

/// What a column needs: three digits, a minus, a degree sign.
double columnWidth(const WeatherReading& reading, double points) {
  std::size_t widest = 2;
  for (const auto& day : reading.days)
    for (const double value : {day.high, day.low})
      widest = std::max(widest, WeatherWords::shortDegrees(value).size() - 2);
  return points * (0.6 + 0.62 * static_cast<double>(widest));
}

double columnPoints(const TileSize& size) {
  return size.words(0.15);
}

/// At most `count` days from today on, each `width` wide.
AnyView forecastColumns(const WeatherSnapshot& weather, const TileSize& size, std::size_t count,
                        double width, bool hasNames) {
  const Calendar calendar = placeCalendar(*weather.reading);
  const QColor ground = groundOf(skyOf(weather));
  const double points = columnPoints(size);
  const char* letters = hasNames ? dayLetters(calendar, weather.now) : nullptr;
  std::vector<AnyView> columns;
  for (const auto& day : comingDays(weather, calendar)) {
    if (columns.size() == count)
      break;
    columns.push_back(dayColumn(day, calendar, ground, size, points, letters).width(width));
  }
  return hstack(std::move(columns));
}

QString spokenName(const WeatherSnapshot& weather) {
  if (!weather.hasPlace())
    return worded("Weather, no city chosen");
  if (!weather.reading)
    return weather.failed && !weather.isLoading
               ? worded("Weather, the forecast could not be reached")
               : worded("Weather, loading");
  return joinedFacts({worded("Weather"), utf8(weather.settings.cityName.value_or(""))});
}

QString spokenValue(const WeatherSnapshot& weather) {
  if (!weather.reading)
    return {};
  const auto& reading = *weather.reading;
  QStringList value{utf8(WeatherWords::degrees(reading.temperature, weather.settings.unit)),
                    utf8(WeatherWords::describe(reading.condition))};
  if (const auto apparent = apparentOf(weather))
    value << worded("feels like {degrees}", {{"degrees", *apparent}});
  if (weather.isStale)
    value << utf8(WeatherWords::age(reading.readAt, weather.now));
  return joinedFacts(std::move(value));
}

/// Of a widget without a reading.
TileState standingOf(const WeatherSnapshot& weather) {
  if (!weather.hasPlace())
    return TileState::live;
  return weather.failed && !weather.isLoading ? TileState::cannot : TileState::waiting;
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
  content.state = standingOf(weather);
  if (!weather.hasPlace())
    content.caption = worded("City?");
  return tile(content, size);
}

/// Symbol and temperature beside each other.
AnyView headRow(const WeatherSnapshot& weather, const TileSize& size, double side, double points) {
  const auto& reading = *weather.reading;
  const QColor ground = groundOf(skyOf(weather));
  return hstack({conditionSymbol(reading.condition, reading.isDay, ground)
                     .opacity(weather.isStale ? 0.5 : 1)
                     .frame(side, side),
                 figureText(temperatureOf(reading), points, palette::figure(ground))})
      .spacing(size.body() * 0.04);
}

AnyView skyTile(const WeatherSnapshot& weather, const AnyView& inner, const TileSize& size) {
  const Sky sky = skyOf(weather);
  const double margin = (size.height() - size.body()) / 2;
  return zstack({tile(TileContent{.ground = sky.top, .groundEnd = sky.bottom}, size),
                 inner.fill().padding(margin + size.body() * 0.05)})
      .frame(size.width(), size.height());
}

AnyView feelsLine(const QString& apparent, const WeatherSnapshot& weather, const TileSize& size) {
  return wordText(worded("Feels {degrees}", {{"degrees", apparent}}), size.caption(),
                  size.quietInk(groundOf(skyOf(weather))))
      .figure(std::max(size.caption() * 0.85, minimumCaptionSize));
}

AnyView placeLine(const WeatherSnapshot& weather, const TileSize& size) {
  const QString city = utf8(weather.settings.cityName.value_or(""));
  return city.isEmpty() ? AnyView()
                        : wordText(city, size.caption(), palette::figure(groundOf(skyOf(weather))));
}

/// The symbol stays whatever else has to go.
AnyView currentTile(const WeatherSnapshot& weather, const TileSize& size) {
  const auto& reading = *weather.reading;
  const QColor ground = groundOf(skyOf(weather));
  const double body = size.body();
  const auto column = [&](double markRatio, std::vector<AnyView> last) -> AnyView {
    const double side = body * markRatio;
    last.insert(last.begin(),
                {conditionSymbol(reading.condition, reading.isDay, ground)
                     .opacity(weather.isStale ? 0.5 : 1)
                     .frame(side, side),
                 figureText(temperatureOf(reading), body * 0.32, palette::figure(ground))});
    return vstack(std::move(last)).spacing(body * 0.02);
  };
  const auto row = [&](double ratio, std::vector<AnyView> last) -> AnyView {
    last.insert(last.begin(), headRow(weather, size, body * ratio * 1.1, body * ratio));
    return vstack(std::move(last)).spacing(body * 0.02);
  };
  std::vector<AnyView> candidates;
  if (size.hasCaption()) {
    const AnyView place = placeLine(weather, size);
    const auto apparent = apparentOf(weather);
    const AnyView feels = apparent ? feelsLine(*apparent, weather, size) : AnyView();
    if (size.side >= 84)
      candidates.push_back(column(0.36, {feels, place}));
    for (const double ratio : {0.3, 0.25})
      if (!feels.isEmpty() || !place.isEmpty())
        candidates.push_back(row(ratio, {feels, place}));
  }
  candidates.push_back(column(0.42, {}));
  return skyTile(weather, firstFitting(std::move(candidates)), size);
}

AnyView conditionsTile(const WeatherSnapshot& weather, const TileSize& size) {
  const QColor ground = groundOf(skyOf(weather));
  const double body = size.body();
  const QString words = utf8(WeatherWords::describe(weather.reading->condition));
  const auto apparent = size.hasCaption() ? apparentOf(weather) : std::nullopt;
  const AnyView feels = apparent ? feelsLine(*apparent, weather, size) : AnyView();
  const auto line = [&](const QString& part) {
    return wordText(part, size.caption(), palette::figure(ground))
        .figure(std::max(size.caption() * 0.85, minimumCaptionSize));
  };
  std::vector<AnyView> candidates;
  const auto add = [&](double headRatio, std::vector<AnyView> lines, double gap = 0.02) {
    lines.insert(lines.begin(), headRow(weather, size, body * headRatio, body * headRatio * 0.9));
    candidates.push_back(vstack(std::move(lines)).spacing(body * gap));
  };
  // The figure gives way to the words; a word too long for the tile is broken.
  const auto space = words.indexOf(u' ');
  const auto half = words.size() / 2 + 1;
  const QString first = space > 0 ? words.left(space) : words.left(half) + u'-';
  const QString second = space > 0 ? words.mid(space + 1) : words.mid(half);
  for (const double ratio : {0.32, 0.27}) {
    // Apart where they can be: a script's marks reach above its letters and below them.
    for (const double gap : {0.07, 0.02})
      add(ratio, {line(words), feels}, gap);
    add(ratio, {line(first), line(second), feels});
  }
  for (const AnyView& last : {feels, AnyView()})
    add(0.27,
        {wordText(words, size.caption(), palette::figure(ground)).lines(3).figure(size.words(0)),
         last});
  candidates.push_back(headRow(weather, size, body * 0.32, body * 0.28));
  return skyTile(weather, firstFitting(std::move(candidates)), size);
}

AnyView forecastTile(const WeatherSnapshot& weather, const TileSize& size) {
  const double body = size.body();
  const double room = body * 0.9;
  const double width = columnWidth(*weather.reading, columnPoints(size));
  const auto count = std::clamp<std::size_t>(static_cast<std::size_t>(room / width), 1, 3);
  const auto apparent = size.hasCaption() ? apparentOf(weather) : std::nullopt;
  const AnyView feels = apparent ? feelsLine(*apparent, weather, size) : AnyView();
  // What was forecast is over: the last reading is all there is.
  if (comingDays(weather, placeCalendar(*weather.reading)).empty())
    return skyTile(
        weather,
        vstack({headRow(weather, size, body * 0.34, body * 0.3), feels}).spacing(body * 0.03),
        size);
  const auto column = [&](bool hasNames) -> AnyView {
    return vstack({feels, forecastColumns(weather, size, count, room / static_cast<double>(count),
                                          hasNames)})
        .spacing(body * 0.02);
  };
  return skyTile(weather, firstFitting({column(size.hasCaption()), column(false)}), size);
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

/// Where the widget stands without a reading, in words as long as the room allows.
AnyView wideStanding(const WeatherSnapshot& weather, const TileSize& size) {
  const QColor ground = groundOf(skyOf(weather));
  const double body = size.body();
  const QString name = weather.hasPlace()
                           ? utf8(weather.settings.cityName.value_or(translated("Weather")))
                           : worded("Weather");
  const Text title = text(name)
                         .size(size.words(0.22))
                         .weight(FontWeight::semibold)
                         .colour(palette::figure(ground))
                         .figure(size.words(0));
  const auto line = [&](const QString& words) {
    return text(words).size(size.words(0.18)).colour(size.quietInk(ground));
  };
  const auto below = [&](const Text& words) -> AnyView {
    return vstack({title, words}).align(Alignment::leading).spacing(body * 0.03);
  };
  if (!weather.hasPlace())
    return firstFitting(
        {below(line(worded("Choose a city")).figure()), line(worded("Choose a city")).lines(2)});
  if (!weather.failed || weather.isLoading)
    return below(line(worded("Loading")));
  return firstFitting({below(line(worded("No forecast now")).figure()),
                       below(line(worded("No forecast")).figure()),
                       line(worded("No forecast")).lines(2)});
}

/// City, words, temperature and the felt one, in as many lines as they need.
AnyView wideLines(const WeatherSnapshot& weather, const TileSize& size) {
  const auto& reading = *weather.reading;
  const QColor ground = groundOf(skyOf(weather));
  const double body = size.body();
  const auto line = [&](const QString& words) {
    return text(words)
        .size(size.words(0.17))
        .weight(FontWeight::medium)
        .colour(palette::figure(ground));
  };
  const QString city = utf8(weather.settings.cityName.value_or(""));
  const QString words = utf8(WeatherWords::describe(reading.condition));
  std::vector<AnyView> first;
  if (city.isEmpty())
    first.push_back(line(words));
  else
    first = {line(joinedPieces({city, words})).figure(size.words(0)),
             vstack({line(city), line(words).lines(2)}).align(Alignment::leading)};
  const auto apparent = size.hasCaption() ? apparentOf(weather) : std::nullopt;
  const auto degrees = [&](double ratio, double gap) -> AnyView {
    return hstack({figureText(temperatureOf(reading), body * ratio, palette::figure(ground)),
                   apparent ? feelsLine(*apparent, weather, size) : AnyView()})
        .spacing(body * gap)
        .align(Alignment::bottom);
  };
  return vstack({firstFitting(std::move(first)),
                 firstFitting({degrees(0.32, 0.06), degrees(0.27, 0.06), degrees(0.235, 0.06),
                               degrees(0.2, 0.04)})})
      .align(Alignment::leading)
      .spacing(body * 0.03);
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
  WideTileContent content;
  content.ground = sky.top;
  content.groundEnd = sky.bottom;
  content.label = spokenName(weather);
  content.value = spokenValue(weather);
  if (!weather.hasPlace() || !weather.reading) {
    content.mark =
        symbol(weather.hasPlace() ? "cloud.sun.fill" : "location").colour(palette::figure(ground));
    content.middle = wideStanding(weather, size);
    content.state = standingOf(weather);
    return wideTile(content, size);
  }
  const auto& reading = *weather.reading;
  const bool isNarrow = size.span == 2 && size.hasCaption();
  content.mark = conditionSymbol(reading.condition, reading.isDay, ground);
  content.markRatio = isNarrow ? 0.44 : content.markRatio;
  content.state = weather.isStale ? TileState::waiting : TileState::live;
  content.middle = wideLines(weather, size);
  if (isNarrow)
    // The words take the room beside the symbol, not its place.
    content.middle = content.middle.frame(
        {.maxWidth = size.bodyWidth() - size.body() * content.markRatio - 3.7 * size.padding()},
        Alignment::leading);
  if (size.span > 2) {
    // On three tiles the felt temperature takes the room of a day.
    const int days = size.span == 3 && apparentOf(weather) ? 2 : size.span;
    const auto count = static_cast<std::size_t>(std::min(days, WeatherService::forecastDays));
    // The gap belongs to the columns: a spacer's least is not kept for it.
    const AnyView columns = forecastColumns(
        weather, size, count, columnWidth(reading, columnPoints(size)) * 1.1, size.hasCaption());
    content.middle =
        hstack({content.middle, spacer(), columns.padding({size.body() * 0.1, 0, 0, 0})});
  }
  return wideTile(content, size);
}

} // namespace tavrin
