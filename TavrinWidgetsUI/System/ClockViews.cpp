#include "TavrinWidgetsUI/System/ClockViews.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QRadialGradient>
#include <algorithm>
#include <array>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor nightTop{0x2B, 0x3A, 0x5E};
constexpr QColor nightBottom{0x0E, 0x14, 0x26};
constexpr QColor analogGround{0x1C, 0x1C, 0x21};

/// What an analog face needs; texts do not count, so that they cause no painting.
struct Face {
  double hour = 0;
  double minute = 0;
  double second = 0;
  bool showsSeconds = false;
  bool isDaytime = true;
  bool operator==(const Face&) const = default;
};

struct FaceColours {
  QColor dial;
  QColor dialEdge;
  QColor ink;
  QColor quiet;
};

FaceColours coloursOf(const Face& face) {
  if (face.isDaytime)
    return {{0xFF, 0xFF, 0xFF}, {0xE9, 0xE9, 0xEE}, {0x1C, 0x1C, 0x1E}, {0x8E, 0x8E, 0x93}};
  return {{0x2C, 0x2C, 0x33}, {0x17, 0x17, 0x1B}, {0xF5, 0xF5, 0xF7}, {0x8E, 0x8E, 0x96}};
}

/// A line along the hand's direction from `from` to `to` radii out of the centre.
void drawHand(QPainter& painter, double turns, double radius, double from, double to, double width,
              const QColor& colour) {
  const double angle = turns * 2 * M_PI;
  const QPointF direction(std::sin(angle) * radius, -std::cos(angle) * radius);
  painter.setPen(QPen(colour, width * radius, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(direction * from, direction * to);
}

void drawTicks(QPainter& painter, double radius, const FaceColours& colours) {
  // Below 30 points across, the quarters alone; minutes only where they have room.
  const bool hasHours = radius >= 15;
  const bool hasMinutes = radius >= 44;
  for (int tick = 0; tick < 60; ++tick) {
    const double turns = tick / 60.0;
    if (tick % 15 == 0)
      drawHand(painter, turns, radius, 0.76, 0.88, 0.055, colours.ink);
    else if (tick % 5 == 0 && hasHours)
      drawHand(painter, turns, radius, 0.80, 0.88, 0.04, colours.quiet);
    else if (tick % 5 != 0 && hasMinutes)
      drawHand(painter, turns, radius, 0.865, 0.88, 0.016, withOpacity(colours.quiet, 0.7));
  }
}

void drawDial(QPainter& painter, double radius, const FaceColours& colours) {
  QRadialGradient gradient(QPointF(0, -radius * 0.4), radius * 1.5);
  gradient.setColorAt(0, colours.dial);
  gradient.setColorAt(1, colours.dialEdge);
  // A night dial would melt into a dark panel.
  painter.setPen(QPen(withOpacity(colours.ink, 0.12), std::max(radius * 0.012, 0.5)));
  painter.setBrush(gradient);
  painter.drawEllipse(QPointF(0, 0), radius, radius);
}

void drawFace(QPainter& painter, const QRectF& rect, const Face& face) {
  const double radius = std::min(rect.width(), rect.height()) / 2;
  const auto colours = coloursOf(face);
  painter.translate(rect.center());
  drawDial(painter, radius, colours);
  drawTicks(painter, radius, colours);

  const auto hand = [&](double turns, double length, double width) {
    // A thin stem out of the centre, then the broad hand.
    drawHand(painter, turns, radius, 0, 0.2, width * 0.5, colours.ink);
    drawHand(painter, turns, radius, 0.2, length, width, colours.ink);
  };
  hand(face.hour, 0.46, 0.12);
  hand(face.minute, 0.72, 0.085);
  if (face.showsSeconds)
    drawHand(painter, face.second, radius, -0.18, 0.82, 0.035, clockTint);
  painter.setPen(Qt::NoPen);
  painter.setBrush(face.showsSeconds ? clockTint : colours.ink);
  painter.drawEllipse(QPointF(0, 0), radius * 0.085, radius * 0.085);
  painter.setBrush(colours.dial);
  painter.drawEllipse(QPointF(0, 0), radius * 0.03, radius * 0.03);
}

QString spokenTime(const ClockReading& clock) {
  return joinedFacts({QString::fromStdString(clock.time), QString::fromStdString(clock.weekday),
                      clock.otherZone ? QString::fromStdString(clock.otherZone->city) : QString()});
}

/// The weekday; where it is too long for the line, its short form.
AnyView weekdayLine(const ClockReading& clock, double points, const QColor& colour) {
  const auto line = [&](const std::string& words) {
    return AnyView(text(words)
                       .size(points)
                       .weight(FontWeight::medium)
                       .colour(colour)
                       .figure(std::max(points * 0.8, minimumCaptionSize)));
  };
  return firstFitting({line(clock.weekday), line(clock.shortWeekday)});
}

AnyView digits(const std::string& string, double points, const QColor& colour) {
  const auto form = QString::fromStdString(string);
  return text(form)
      .size(points)
      .weight(FontWeight::semibold)
      .colour(colour)
      .widest(widestDigits(form))
      .align(TextAlignment::centre)
      .figure(minimumTypeSize);
}

/// Hours and minutes large; the seconds beside them where there is room for legible ones, else
/// below them. The weekday stands last.
AnyView digitalContent(const ClockReading& clock, const TileSize& size) {
  const double body = size.body();
  const QColor ink = palette::figure(nightBottom);
  std::vector<AnyView> lines;
  if (!clock.showsSeconds) {
    lines.push_back(digits(clock.hoursAndMinutes, body * 0.34, ink));
  } else if (size.side >= 88) {
    lines.push_back(digits(clock.time, body * 0.205, ink));
  } else {
    lines.push_back(digits(clock.hoursAndMinutes, body * 0.32, ink));
    lines.push_back(digits(clock.seconds, std::max(body * 0.2, minimumTypeSize), clockTint));
  }
  for (AnyView& line : lines)
    line = line.padding(body * 0.03, 0);
  if (size.hasCaption())
    lines.push_back(weekdayLine(clock, size.caption(), size.quietInk(nightTop)));
  return vstack(std::move(lines))
      .spacing(body * 0.01)
      .padding(body * (size.side < 56 ? 0.02 : 0.05), 0)
      .fill();
}

} // namespace

AnyView analogClockFace(const ClockReading& clock) {
  return canvas(
      Face{clock.hourHand, clock.minuteHand, clock.secondHand, clock.showsSeconds, clock.isDaytime},
      drawFace);
}

AnyView clockTileIcon(const ClockReading& clock, const TileSize& size) {
  if (clock.isAnalog)
    return tile(analogGround, analogClockFace(clock).padding(size.body() * 0.055), size)
        .accessibility(worded("Clock"), spokenTime(clock));
  const AnyView ground = rectangle().gradient(nightTop, nightBottom);
  return tile(nightBottom, zstack({ground, digitalContent(clock, size)}), size)
      .accessibility(worded("Clock"), spokenTime(clock));
}

AnyView clockWideTile(const ClockReading& clock, const TileSize& size) {
  const double body = size.body();
  WideTileContent content;
  content.ground = nightTop;
  content.groundEnd = nightBottom;
  content.tint = clockTint;
  content.mark = analogClockFace(clock);
  // The city above the time, the day below it.
  const double points = size.words(0.17);
  const QColor ink = size.quietInk(nightTop);
  const auto line = [&](const std::string& words) {
    return text(words).size(points).weight(FontWeight::medium).colour(ink);
  };
  std::vector<AnyView> lines;
  if (clock.otherZone && size.hasCaption())
    lines.push_back(line(clock.otherZone->city));
  lines.push_back(digits(clock.time, body * 0.3, palette::figure(nightBottom)));
  if (size.hasCaption())
    lines.push_back(
        firstFitting({line(clock.longDay).figure(size.words(0)),
                      line(clock.weekday).figure(size.words(0)), line(clock.shortWeekday)}));
  content.middle = vstack(std::move(lines)).align(Alignment::leading).spacing(body * 0.03);
  return wideTile(content, size).accessibility(worded("Clock"), spokenTime(clock));
}

} // namespace tavrin
