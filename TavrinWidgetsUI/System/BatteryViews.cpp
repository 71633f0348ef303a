#include "TavrinWidgetsUI/System/BatteryViews.h"

#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/Gauges.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QPainter>
#include <algorithm>

namespace tavrin {
namespace {

constexpr double lowLevel = 0.2;
constexpr double criticalLevel = 0.1;
/// Sides from which a tile has room for three things.
constexpr double roomyTile = 84;

struct Glyph {
  double level = 0;
  bool hasBolt = false;
  bool isStanding = false;
  QColor tint;
  QColor outline;
  QColor ground;
  bool operator==(const Glyph&) const = default;
};

/// In a room twice as long as wide: a rounded case, its cap, and the level inside.
void paintGlyph(QPainter& painter, const QRectF& rect, const Glyph& glyph) {
  const double length = glyph.isStanding ? rect.height() : rect.width();
  const double breadth = std::min(glyph.isStanding ? rect.width() : rect.height(), length / 1.9);
  painter.translate(rect.center());
  if (glyph.isStanding)
    painter.rotate(-90);
  const double stroke = breadth * 0.09;
  const double cap = breadth * 0.13;
  const QRectF outer(-length / 2, -breadth / 2, length - cap * 1.5, breadth);
  const QRectF outline = outer.adjusted(stroke / 2, stroke / 2, -stroke / 2, -stroke / 2);
  painter.setPen(QPen(glyph.outline, stroke));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(outline, breadth * 0.26, breadth * 0.26);
  painter.setPen(Qt::NoPen);
  painter.setBrush(glyph.outline);
  const QRectF end(outer.right() + cap * 0.5, -breadth * 0.17, cap, breadth * 0.34);
  painter.drawRoundedRect(end, cap * 0.5, cap * 0.5);
  const double gap = stroke * 2.1;
  const QRectF inner = outer.adjusted(gap, gap, -gap, -gap);
  const double corner = breadth * 0.15;
  if (glyph.level > 0) {
    QRectF level = inner;
    level.setWidth(std::max(inner.width() * std::min(glyph.level, 1.0), corner));
    QPainterPath room;
    room.addRoundedRect(inner, corner, corner);
    painter.setClipPath(room);
    painter.fillRect(level, glyph.tint);
    painter.setClipping(false);
  }
  if (!glyph.hasBolt)
    return;
  if (glyph.isStanding)
    painter.rotate(90);
  const QPointF middle = glyph.isStanding ? QPointF(0, -outer.center().x()) : outer.center();
  const auto bolt = [&](double side, const QColor& colour) {
    drawSymbol(painter, "bolt.fill", {middle.x() - side / 2, middle.y() - side / 2, side, side},
               colour);
  };
  bolt(breadth * 0.98, glyph.ground);
  bolt(breadth * 0.74, glyph.outline);
}

AnyView glyphView(const BatteryReading& reading, bool isStanding, const QColor& outline,
                  const QColor& ground) {
  return canvas(Glyph{reading.level.value_or(0), reading.level && reading.isPluggedIn, isStanding,
                      withContrast(batteryTint(reading), ground, 3), outline, ground},
                paintGlyph);
}

QString timeText(int minutes, bool isShort) {
  if (isShort)
    return QStringLiteral("%1:%2").arg(minutes / 60).arg(minutes % 60, 2, 10, QChar(u'0'));
  if (minutes < 60)
    return worded("{minutes} min", {{"minutes", minutes}});
  return worded("{hours} h {minutes} min", {{"hours", minutes / 60}, {"minutes", minutes % 60}});
}

/// Room for a word on a square tile.
QString shortStateText(const BatteryReading& reading) {
  if (reading.minutesRemaining)
    return timeText(*reading.minutesRemaining, true);
  return reading.isCharging    ? worded("Charging")
         : reading.isPluggedIn ? worded("On power")
                               : worded("Battery");
}

AnyView noBatteryTile(const TileSize& size) {
  TileContent content;
  content.mark = symbol("battery").colour(palette::caption());
  content.markRatio = 0.46;
  content.sentence = worded("No battery");
  content.label = worded("Battery");
  content.value = worded("No battery");
  return tile(content, size);
}

AnyView statusTile(const BatteryReading& reading, const BatterySettings& settings,
                   const TileSize& size) {
  const double width = size.body() * (settings.showsPercentage ? 0.46 : 0.66);
  TileContent content;
  content.mark =
      glyphView(reading, false, palette::caption(), palette::ground).frame(width, width / 1.9);
  content.markRatio = width / 1.9 / size.body();
  if (settings.showsPercentage) {
    content.figure = percentText(*reading.level);
    content.widestFigure = "100%";
  }
  // The glyph tells the battery from other figures; the time left is also in the panel. A small
  // tile has room for a time but not for a word, and the glyph has a bolt for that.
  if (size.side >= roomyTile || (!settings.showsPercentage && reading.minutesRemaining))
    content.caption = shortStateText(reading);
  return tile(content, size);
}

AnyView ringTile(const BatteryReading& reading, const BatterySettings& settings,
                 const TileSize& size) {
  const double diameter = size.body() * 0.84;
  const double thickness = size.body() * 0.09;
  const AnyView bolt = symbol("bolt.fill")
                           .colour(batteryTint(reading))
                           .size(size.body() * (settings.showsPercentage ? 0.15 : 0.34));
  std::vector<AnyView> lines;
  if (settings.showsPercentage) {
    if (reading.isPluggedIn)
      lines.push_back(bolt);
    lines.push_back(text(gaugeText(*reading.level, size))
                        .size(size.body() * 0.235)
                        .weight(FontWeight::semibold)
                        .colour(palette::figure())
                        .widest("88%")
                        .align(TextAlignment::centre)
                        .figure(minimumTypeSize));
  } else {
    lines.push_back(reading.isPluggedIn
                        ? bolt
                        : symbol("battery.100").colour(palette::figure()).size(size.body() * 0.4));
  }
  const AnyView label = vstack(std::move(lines)).frame({.maxWidth = diameter - 3 * thickness});
  return tile(palette::ground,
              GaugeRing{*reading.level, batteryTint(reading), palette::track, thickness, label}
                  .view()
                  .frame(diameter, diameter),
              size);
}

AnyView iconTile(const BatteryReading& reading, const BatterySettings& settings,
                 const TileSize& size) {
  const bool hasText = settings.showsPercentage && size.hasCaption();
  const double height = size.body() * (hasText ? 0.62 : 0.76);
  const AnyView glyph =
      glyphView(reading, true, palette::figure(), palette::ground).frame(height / 1.9, height);
  if (!hasText)
    return tile(palette::ground, glyph, size);
  const AnyView percent = text(percentText(*reading.level))
                              .size(size.words(0.17))
                              .weight(FontWeight::semibold)
                              .colour(palette::figure())
                              .align(TextAlignment::centre);
  return tile(palette::ground, vstack({glyph, percent}).spacing(size.body() * 0.03), size);
}

} // namespace

QColor batteryTint(const BatteryReading& reading) {
  const double level = reading.level.value_or(1);
  if (reading.isCharging || level > lowLevel)
    return palette::green;
  return level > criticalLevel ? palette::orange : palette::red;
}

QString batteryStateText(const BatteryReading& reading) {
  if (!reading.level)
    return worded("No battery");
  if (reading.minutesRemaining) {
    const auto time = timeText(*reading.minutesRemaining, false);
    return reading.isPluggedIn ? worded("{time} until full", {{"time", time}})
                               : worded("{time} left", {{"time", time}});
  }
  return reading.isCharging    ? worded("Charging")
         : reading.isPluggedIn ? worded("On power")
                               : worded("On battery");
}

AnyView batteryGlyph(const BatteryReading& reading, const QColor& outline, const QColor& ground) {
  return glyphView(reading, false, outline, ground);
}

AnyView batteryTileIcon(const BatteryReading& reading, const BatterySettings& settings,
                        const TileSize& size) {
  if (!reading.level)
    return noBatteryTile(size);
  const auto make = settings.style == BatteryTileStyle::ring   ? ringTile
                    : settings.style == BatteryTileStyle::icon ? iconTile
                                                               : statusTile;
  return make(reading, settings, size)
      .accessibility(worded("Battery"),
                     joinedFacts({percentText(*reading.level), batteryStateText(reading)}));
}

AnyView batteryWideTile(const BatteryReading& reading, const BatterySettings& settings,
                        const TileSize& size) {
  WideTileContent content;
  content.tint = batteryTint(reading);
  content.label = worded("Battery");
  if (!reading.level) {
    content.mark = symbol("battery").colour(palette::caption());
    content.caption = worded("Battery");
    content.middle = text(worded("No battery"))
                         .size(size.words(0.24))
                         .weight(FontWeight::semibold)
                         .colour(palette::caption())
                         .lines(2);
    content.value = worded("No battery");
    return wideTile(content, size);
  }
  const double room = size.body() * 0.6;
  content.mark =
      settings.style == BatteryTileStyle::ring
          ? GaugeRing{*reading.level, content.tint, palette::track, room * 0.15,
                      reading.isPluggedIn
                          ? AnyView(symbol("bolt.fill").colour(content.tint).size(room * 0.42))
                          : AnyView()}
                .view()
          : glyphView(reading, settings.style == BatteryTileStyle::icon, palette::figure(),
                      palette::ground);
  const QString state = batteryStateText(reading);
  content.caption = size.span > 2 ? state : shortStateText(reading);
  if (settings.showsPercentage) {
    content.figure = percentText(*reading.level);
    content.widestFigure = "100%";
  } else {
    content.caption = worded("Battery");
    content.figure = size.span > 2 ? state : shortStateText(reading);
  }
  content.value = joinedFacts({percentText(*reading.level), state});
  return wideTile(content, size);
}

} // namespace tavrin
