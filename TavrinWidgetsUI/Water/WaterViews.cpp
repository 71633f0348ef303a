#include "TavrinWidgetsUI/Water/WaterViews.h"

#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QLinearGradient>
#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor groundTop{0x0B, 0x18, 0x26};
constexpr QColor groundBottom{0x03, 0x10, 0x22};
/// Water that white text is read on, and the lighter water behind it.
constexpr QColor waterTop{0x15, 0x69, 0xC2};
constexpr QColor waterBottom{0x0A, 0x46, 0x9C};
constexpr QColor waterBack{0x3B, 0x9E, 0xFF};
constexpr QColor surface{0x8F, 0xCB, 0xFF};
/// The surface that words stand on.
constexpr QColor quietSurface{0x2A, 0x78, 0xC8};
/// The goal is reached: bright water that dark text is read on.
constexpr QColor doneTop{0x6F, 0xF0, 0xCF};
constexpr QColor doneBottom{0x18, 0xA9, 0xC9};
constexpr QColor doneInk{0x03, 0x10, 0x22};

/// The water's surface across `rect` at height `y`: a wave, and everything below it.
QPainterPath waterBody(const QRectF& rect, double y, double amplitude, double phase) {
  constexpr int pieces = 24;
  QPainterPath path(QPointF(rect.left(), rect.bottom()));
  for (int i = 0; i <= pieces; ++i) {
    const double x = static_cast<double>(i) / pieces;
    path.lineTo(rect.left() + x * rect.width(),
                y + amplitude * std::sin(x * 2 * M_PI * 1.15 + phase));
  }
  path.lineTo(rect.bottomRight());
  path.closeSubpath();
  return path;
}

QLinearGradient downwards(const QRectF& rect, double top, const QColor& first, const QColor& last) {
  QLinearGradient gradient(0, top, 0, rect.bottom());
  gradient.setColorAt(0, first);
  gradient.setColorAt(1, last);
  return gradient;
}

void drawWater(QPainter& painter, const QRectF& rect, const WaterTank& tank) {
  if (tank.level <= 0)
    return;
  const double still = rect.height() * 0.014;
  const double amplitude = still + rect.height() * 0.045 * tank.swell;
  const double phase = tank.swell * 2 * M_PI;
  // A full tank shows its surface, an almost empty one a puddle.
  const double depth = rect.height() * std::clamp(tank.level, 0.03, tank.isDone ? 1.2 : 0.94);
  const double y = rect.bottom() - depth;
  const auto fill = [&](const QPainterPath& path, const QBrush& brush) {
    painter.fillPath(path, brush);
  };
  fill(waterBody(rect, y - still, amplitude * 1.5, phase + M_PI * 0.9),
       withOpacity(tank.isDone ? doneTop : waterBack, tank.isUnderWords ? 0.25 : 0.45));
  const QPainterPath front = waterBody(rect, y, amplitude, phase);
  fill(front, tank.isDone ? downwards(rect, y, doneTop, doneBottom)
                          : downwards(rect, y, waterTop, waterBottom));
  QPainterPath crest = front;
  crest -= front.translated(0, std::max(rect.height() * 0.018, 0.75));
  const bool isQuiet = tank.isUnderWords && !tank.isDone;
  fill(crest, isQuiet ? quietSurface : withOpacity(tank.isDone ? palette::white : surface, 0.75));
}

/// A glass that narrows to its foot, in the middle of `rect`.
struct Glass {
  QRectF rect;
  double wall;

  static Glass in(const QRectF& room) {
    const double height = std::min(room.height(), room.width() * 1.22);
    const QSizeF size(height * 0.82, height);
    return {aligned(size, room, Alignment::centre), std::max(height * 0.045, 1.0)};
  }
  /// The outline `inset` points further in; open at the top where `isOpen`.
  QPainterPath path(double inset, bool isOpen) const {
    const double taper = rect.width() * 0.14;
    const double radius = rect.width() * 0.13;
    const QPointF topLeft(rect.left() + inset, rect.top() + (isOpen ? inset : 0));
    const QPointF topRight(rect.right() - inset, topLeft.y());
    const QPointF bottomLeft(rect.left() + taper + inset, rect.bottom() - inset);
    const QPointF bottomRight(rect.right() - taper - inset, rect.bottom() - inset);
    const QPointF slope = (bottomLeft - topLeft) * (radius / rect.height());
    QPainterPath path(topLeft);
    path.lineTo(bottomLeft - slope);
    path.quadTo(bottomLeft, bottomLeft + QPointF(radius, 0));
    path.lineTo(bottomRight - QPointF(radius, 0));
    path.quadTo(bottomRight, bottomRight - QPointF(-slope.x(), slope.y()));
    path.lineTo(topRight);
    if (!isOpen)
      path.closeSubpath();
    return path;
  }
};

struct GlassKey {
  WaterTank tank;
  QColor outline;
  bool operator==(const GlassKey&) const = default;
};

void drawGlass(QPainter& painter, const QRectF& rect, const GlassKey& key) {
  const Glass glass = Glass::in(rect);
  const QPainterPath inner = glass.path(glass.wall * 0.5, false);
  painter.fillPath(inner, withOpacity(key.outline, 0.12));
  painter.save();
  painter.setClipPath(inner);
  // The rim stays above the water, however much was drunk.
  const double freeboard = glass.rect.height() * 0.09;
  const QRectF room = glass.rect.adjusted(0, freeboard, 0, -glass.wall * 0.5);
  drawWater(painter, room, {key.tank.level, false, key.tank.swell, key.tank.isUnderWords});
  painter.restore();
  painter.setPen(QPen(key.outline, glass.wall, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(glass.path(glass.wall * 0.5, true));
}

/// "3/8" where it fits, else "3": what is to be reached is in the panel.
AnyView countView(const WaterReading& reading, const TileSize& size, double points,
                  const QColor& ink) {
  const QString count = utf8(reading.count());
  const auto slash = count.indexOf(u'/');
  const Text drunk = text(count.left(slash)).size(points).weight(FontWeight::semibold).colour(ink);
  const Text goal = text(count.mid(slash)).size(points).weight(FontWeight::medium).colour(ink);
  const auto both = [&](double least) -> AnyView {
    return hstack({drunk.size(least).figure(least), goal.size(least).figure(least)}).unmirrored();
  };
  return firstFitting({both(points), both(std::max(points * 0.72, size.words(0))),
                       both(size.words(0)), drunk.figure(minimumTypeSize)});
}

QString standing(const WaterReading& reading) {
  if (reading.isDone())
    return worded("Goal reached");
  const auto left = reading.timeLeft();
  return left ? worded("Next glass in {time}", {{"time", *left}}) : worded("Time for a glass");
}

QString spokenValue(const WaterReading& reading) {
  return worded("{drunk} of {goal}, {state}",
                {{"drunk", format(reading.settings.unit, reading.millilitres)},
                 {"goal", format(reading.settings.unit, reading.settings.goal)},
                 {"state", standing(reading)}});
}

/// Count and mark, as far as they are wanted.
AnyView tileWords(const WaterReading& reading, const TileSize& size, const QColor& ink,
                  double points, const std::optional<Symbol>& mark) {
  std::vector<AnyView> parts;
  if (mark)
    parts.push_back(
        mark->size(reading.settings.showsCountOnTile ? size.body() * 0.25 : size.body() * 0.42));
  if (reading.settings.showsCountOnTile)
    parts.push_back(countView(reading, size, points, ink));
  return vstack(std::move(parts)).spacing(size.body() * 0.02);
}

WaterTank underWords(const WaterReading& reading, WaterTank tank) {
  tank.isUnderWords = reading.settings.showsCountOnTile;
  return tank;
}

AnyView waterTankTile(const WaterReading& reading, const WaterTank& tank, const TileSize& size) {
  const QColor ink = reading.isDone() ? doneInk : palette::white;
  std::optional<Symbol> mark;
  if (reading.isDone())
    mark = symbol("checkmark").colour(ink);
  else if (tank.level <= 0)
    // A tank without water would be a black tile.
    mark = symbol("drop.fill").colour(waterBack);
  const AnyView inner = zstack(
      {rectangle().gradient(groundTop, groundBottom), waterTankView(underWords(reading, tank)),
       tileWords(reading, size, ink, size.figure(), mark).frame({.maxWidth = size.body() * 0.84})});
  return tile(groundBottom, inner, size);
}

AnyView waterGlassTile(const WaterReading& reading, const WaterTank& tank, const TileSize& size) {
  const QColor outline(0xD6, 0xEA, 0xFF);
  const double height = size.body() * 0.82;
  const QColor ink = palette::white;
  const std::optional<Symbol> mark =
      reading.isDone() ? std::optional(symbol("checkmark").colour(ink)) : std::nullopt;
  // As wide as the glass is where the count stands.
  const AnyView words =
      tileWords(reading, size, ink, size.words(0.22), mark).frame({.maxWidth = height * 0.7});
  const AnyView glass = waterGlassView(underWords(reading, tank), outline)
                            .frame(height * 0.82, height)
                            .overlay(words.offset(0, size.body() * 0.01));
  return tile(groundBottom,
              zstack({rectangle().gradient(QColor(0x10, 0x2A, 0x44), groundBottom), glass}), size);
}

} // namespace

WaterTank waterTankOf(const WaterReading& reading) {
  const bool isGlass = reading.settings.style == WaterTileStyle::glass;
  return {isGlass ? reading.fill() : reading.level, reading.isDone(), 0};
}

AnyView waterTankView(const WaterTank& tank) {
  return canvas(tank, drawWater);
}

AnyView waterGlassView(const WaterTank& tank, const QColor& outline) {
  return canvas(GlassKey{tank, outline}, drawGlass);
}

AnyView waterTileIcon(const WaterReading& reading, const WaterTank& tank, const TileSize& size) {
  const bool isGlass = reading.settings.style == WaterTileStyle::glass;
  return (isGlass ? waterGlassTile(reading, tank, size) : waterTankTile(reading, tank, size))
      .accessibility(worded("Water"), joinedFacts({utf8(reading.count()), spokenValue(reading)}));
}

AnyView waterWeekBars(const WaterReading& reading, const WaterBarColours& colours,
                      const Calendar* labels) {
  std::vector<AnyView> columns;
  for (std::size_t i = 0; i < reading.week.size(); ++i) {
    const bool isToday = i + 1 == reading.week.size();
    const int goal = std::max(reading.settings.goal, 1);
    const double share = std::min(1.0, reading.week[i].millilitres / static_cast<double>(goal));
    // A day on which little was drunk differs from one on which nothing was.
    const double level = share > 0 ? std::max(share, 0.08) : 0;
    const AnyView column =
        bar(level).tint(isToday ? colours.today : colours.bar).track(colours.track);
    if (labels == nullptr) {
      columns.push_back(column);
      continue;
    }
    const Date day = labels->addingDays(static_cast<int>(i) - 6, reading.now);
    const AnyView letter = text(labels->text(day, "ccccc"))
                               .size(11)
                               .weight(isToday ? FontWeight::semibold : FontWeight::regular)
                               .colour(colours.label)
                               .align(TextAlignment::centre)
                               .height(16);
    columns.push_back(vstack({column.width(12), letter}).spacing(4).fillWidth(Alignment::centre));
  }
  return hstack(std::move(columns))
      .spacing(labels == nullptr ? 3 : 0)
      .unmirrored()
      .accessibility({});
}

AnyView waterWideTile(const WaterReading& reading, const WaterTank& tank, const TileSize& size,
                      const std::function<void()>& drink) {
  const auto& settings = reading.settings;
  const double body = size.body();
  const QString amount = utf8(format(settings.unit, reading.millilitres));
  const AnyView figure =
      hstack({text(amount)
                  .size(size.words(0.26))
                  .weight(FontWeight::semibold)
                  .colour(palette::figure(groundTop))
                  .figure(minimumTypeSize),
              reading.isDone() ? symbol("checkmark.circle.fill").colour(doneTop).size(body * 0.22)
                               : AnyView()})
          .spacing(body * 0.06);
  // Small bars leave the words their room.
  const double barsWidth = body * (size.span < 3 ? 0.86 : size.side < 64 ? 0.78 : 1.1);
  AnyView below = waterWeekBars(reading, {}).frame(barsWidth, body * 0.3);
  const double points = size.words(0.125);
  if (size.span > 2 && size.hasCaption()) {
    const Text words = text(standing(reading))
                           .size(points)
                           .weight(FontWeight::medium)
                           .colour(size.quietInk(groundTop))
                           .lines(2);
    // The bars go before the words.
    below =
        firstFitting({hstack({below, words.figure(size.words(0))}).spacing(body * 0.12), words});
  }
  WideTileContent content;
  content.ground = groundTop;
  content.groundEnd = groundBottom;
  content.tint = QColor(0x1C, 0x7E, 0xD6);
  if (size.span > 2)
    content.mark = settings.style == WaterTileStyle::glass
                       ? waterGlassView(tank, QColor(0xD6, 0xEA, 0xFF))
                       : zstack({rectangle().fill(QColor(0x12, 0x2C, 0x48)), waterTankView(tank)})
                             .clip(superellipse(body * 0.16));
  content.middle = vstack({figure, below}).align(Alignment::leading).spacing(body * 0.08);
  content.actions = {{{"water.drink", drink},
                      "plus",
                      worded("Drink {amount}", {{"amount", format(settings.unit, settings.glass)}}),
                      true}};
  content.label = worded("Water");
  content.value = spokenValue(reading);
  return wideTile(content, size);
}

} // namespace tavrin
