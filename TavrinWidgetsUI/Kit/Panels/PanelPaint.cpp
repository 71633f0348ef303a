#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QStyleOption>
#include <QVariant>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace tavrin::panelPaint {

void rounded(QPainter& painter, const QRectF& rect, double radius, const QColor& fill,
             const QColor& border, double width) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  if (fill.isValid() && fill.alpha() > 0) {
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, radius, radius);
  }
  if (border.isValid()) {
    const double half = width / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(border, width));
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
  }
}

void picture(QPainter& painter, const QImage& image, const QRectF& rect, const QColor& hairline) {
  QRectF target(QPointF(), QSizeF(image.size()).scaled(rect.size(), Qt::KeepAspectRatio));
  target.moveCenter(rect.center());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(target, image);
  if (image.hasAlphaChannel())
    return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(hairline, 1));
  painter.drawRect(target.adjusted(0.5, 0.5, -0.5, -0.5));
}

void symbol(QPainter& painter, const QString& name, const QRectF& rect, double side,
            const QColor& colour) {
  const QPointF centre = rect.center();
  painter.setRenderHint(QPainter::Antialiasing);
  drawSymbol(painter, name.toStdString(),
             QRectF(centre.x() - side / 2, centre.y() - side / 2, side, side), colour);
}

double line(QPainter& painter, const QString& words, const QRectF& rect, const QFont& font,
            const QColor& colour, Qt::Alignment alignment, Qt::TextElideMode elision) {
  if (rect.width() < 1)
    return 0;
  const QString text = plainWords(words);
  const QFontMetricsF metrics(font);
  const double full = metrics.horizontalAdvance(text);
  const bool fits = full <= rect.width() + 0.5;
  const QString shown = fits ? text : metrics.elidedText(text, elision, rect.width());
  painter.setFont(font);
  painter.setPen(colour);
  // A painter goes by the text's own direction unless told; a line goes by the interface's.
  const auto direction = painter.layoutDirection() == Qt::LayoutDirectionAuto
                             ? QGuiApplication::layoutDirection()
                             : painter.layoutDirection();
  const Qt::Alignment visual =
      QStyle::visualAlignment(direction, alignment & Qt::AlignHorizontal_Mask);
  painter.drawText(rect,
                   int((visual | Qt::AlignVCenter | Qt::AlignAbsolute).toInt()) |
                       Qt::TextSingleLine | Qt::TextDontClip,
                   shown);
  return fits ? full : metrics.horizontalAdvance(shown);
}

bool lines(QPainter& painter, const QString& words, const QRectF& rect, const QFont& font,
           const QColor& colour, Qt::TextElideMode elision) {
  const QFontMetricsF metrics(font);
  const double height = std::ceil(metrics.height());
  const int most = std::max(1, static_cast<int>(rect.height() / height));
  QStringList rows{QString()};
  for (const QString& word : plainWords(words).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    const QString longer = rows.last().isEmpty() ? word : rows.last() + QLatin1Char(' ') + word;
    if (rows.last().isEmpty() || rows.size() == most ||
        metrics.horizontalAdvance(longer) <= rect.width() + 0.5)
      rows.last() = longer;
    else
      rows.append(word);
  }
  QRectF place(rect.topLeft(), QSizeF(rect.width(), height));
  for (const QString& row : rows) {
    line(painter, row, place, font, colour, Qt::AlignHCenter, elision);
    place.translate(0, height);
  }
  return std::ranges::any_of(rows, [&](const QString& row) {
    return metrics.horizontalAdvance(row) > rect.width() + 0.5;
  });
}

namespace {

constexpr const char* leadProperty = "tavrin.lead";

} // namespace

bool isLed(const QWidget& list) {
  const auto* field = list.property(leadProperty).value<QWidget*>();
  return field != nullptr && field->hasFocus();
}

void setLead(QWidget& list, const QWidget& field) {
  list.setProperty(leadProperty, QVariant::fromValue(const_cast<QWidget*>(&field)));
}

QRectF visual(const QRectF& logical, const QRectF& whole, Qt::LayoutDirection direction) {
  if (direction != Qt::RightToLeft)
    return logical;
  return {whole.left() + whole.right() - logical.right(), logical.top(), logical.width(),
          logical.height()};
}

QColor disabledSymbol(const PanelPalette& palette) {
  constexpr double seen = 3;
  return withContrast(mix(palette.ground, palette.disabledText, 0.45), palette.ground, seen);
}

namespace {

struct ButtonColours {
  QColor ground;
  QColor ink;
};

ButtonColours coloursOf(PanelButton::Kind kind, const QStyleOption& option, const PanelPalette& p) {
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool pressed = enabled && option.state.testFlag(QStyle::State_Sunken);
  const bool hover = enabled && option.state.testFlag(QStyle::State_MouseOver);
  const bool on = option.state.testFlag(QStyle::State_On);
  const bool solid = kind == PanelButton::Kind::quiet || kind == PanelButton::Kind::prominent;
  if (!enabled)
    return {solid ? p.control : QColor(),
            kind == PanelButton::Kind::icon ? disabledSymbol(p) : p.disabledText};
  if (kind == PanelButton::Kind::prominent)
    return {pressed ? p.fillPressed : hover ? p.fillHover : p.fill, p.onFill};
  if (kind == PanelButton::Kind::quiet)
    return {pressed ? p.controlPressed
            : hover ? p.controlHover
            : on    ? p.rowSelected
                    : p.control,
            on ? p.accent : p.text};
  const QColor rest = on ? p.rowSelected : QColor();
  const QColor ground = pressed ? p.rowPressed : hover ? p.rowHover : rest;
  if (kind == PanelButton::Kind::plain || on)
    return {ground, p.accent};
  return {ground, pressed || hover ? p.text : p.secondary};
}

} // namespace

namespace {

/// So much smaller that `words` fit into `room`, but no smaller than four fifths.
QFont fittedFont(QFont font, const QString& words, double room) {
  const double wanted = QFontMetricsF(font).horizontalAdvance(words) + 0.5;
  if (wanted > room && room > 0 && font.pixelSize() > 0)
    font.setPixelSize(int(font.pixelSize() * std::max(room / wanted, leastFit)));
  return font;
}

} // namespace

void choice(QPainter& painter, const QString& words, const QRectF& rect, const QColor& colour) {
  const QString plain = plainWords(words);
  const QFont font = fittedFont(painter.font(), plain, rect.width());
  const QFontMetricsF metrics(font);
  if (metrics.horizontalAdvance(plain) <= rect.width() + 0.5) {
    line(painter, plain, rect, font, colour);
    return;
  }
  const double height = 2 * std::ceil(metrics.height());
  lines(painter, plain, {rect.left(), rect.center().y() - height / 2, rect.width(), height}, font,
        colour);
}

void button(QPainter& painter, const QStyleOption& option, const PanelButton& button) {
  const PanelPalette p = PanelPalette::from(option.palette);
  const ButtonColours colours = coloursOf(button.kind(), option, p);
  const QRectF rect = option.rect;
  rounded(painter, rect, panel::cornerRadius, colours.ground);
  if (button.kind() == PanelButton::Kind::icon) {
    symbol(painter, button.symbol(), rect, 16, colours.ink);
    return;
  }
  const bool marked = !button.symbol().isEmpty();
  const double mark = marked ? 15 : 0;
  const double gap = marked && !button.shownTitle().isEmpty() ? 6 : 0;
  // Words that are too long come closer to the edges, then are set smaller, before they are cut.
  constexpr double leastInset = 3;
  const double room = rect.width() - 2 * leastInset - mark - gap;
  const QFont font = fittedFont(button.font(), button.shownTitle(), room);
  const double width =
      std::min(room, QFontMetricsF(font).horizontalAdvance(button.shownTitle()) + 0.5);
  const double start = rect.left() + (rect.width() - mark - gap - width) / 2;
  if (marked)
    symbol(painter, button.symbol(),
           visual({start, rect.top(), mark, rect.height()}, rect, option.direction), mark,
           colours.ink);
  line(painter, button.shownTitle(),
       visual({start + mark + gap, rect.top(), width, rect.height()}, rect, option.direction), font,
       colours.ink);
}

void segment(QPainter& painter, const QStyleOption& option, const QString& title) {
  const PanelPalette p = PanelPalette::from(option.palette);
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool on = option.state.testFlag(QStyle::State_On);
  const bool hover = option.state.testFlag(QStyle::State_MouseOver);
  const QRectF rect = option.rect;
  if (on) {
    rounded(painter, rect, panel::cornerRadius - 1, enabled ? p.chosen : p.control, p.hairline);
  } else if (enabled && option.state.testFlag(QStyle::State_Sunken)) {
    rounded(painter, rect, panel::cornerRadius - 1, p.controlPressed);
  } else if (enabled && hover) {
    rounded(painter, rect, panel::cornerRadius - 1, p.controlHover);
  }
  QFont font = panelFont(PanelTextStyle::body);
  font.setWeight(on ? QFont::DemiBold : QFont::Normal);
  const QRectF words = rect.adjusted(segmentInset, 0, -segmentInset, 0);
  line(painter, title, words, fittedFont(font, title, words.width()),
       !enabled ? p.disabledText : p.text, Qt::AlignHCenter);
}

void toggle(QPainter& painter, const QStyleOption& option, const QString& title) {
  const PanelPalette p = PanelPalette::from(option.palette);
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool on = option.state.testFlag(QStyle::State_On);
  const bool rtl = option.direction == Qt::RightToLeft;
  const QRectF rect = option.rect;
  const QSizeF body = QSizeF(34, 20) * panelTextScale();
  const QRectF knobRoom(rtl ? rect.left() : rect.right() - body.width(),
                        rect.center().y() - body.height() / 2, body.width(), body.height());
  const QRectF words =
      rtl ? rect.adjusted(body.width() + 12, 0, 0, 0) : rect.adjusted(0, 0, -body.width() - 12, 0);
  line(painter, title, words, panelFont(PanelTextStyle::body), enabled ? p.text : p.disabledText);
  QColor ground = on ? p.fill : p.track;
  if (enabled && option.state.testFlag(QStyle::State_Sunken))
    ground = on ? p.fillPressed : p.controlPressed;
  else if (enabled && option.state.testFlag(QStyle::State_MouseOver) && on)
    ground = p.fillHover;
  painter.save();
  if (!enabled)
    painter.setOpacity(0.45);
  rounded(painter, knobRoom, body.height() / 2, ground, on ? QColor() : p.outline, 1);
  const double knob = body.height() - 4;
  const bool atEnd = on != rtl;
  const QRectF place(atEnd ? knobRoom.right() - knob - 2 : knobRoom.left() + 2, knobRoom.top() + 2,
                     knob, knob);
  rounded(painter, place, knob / 2, on ? p.onFill : QColor(Qt::white),
          on ? QColor() : p.fieldBorder);
  painter.restore();
}

void checkBox(QPainter& painter, const QStyleOption& option, const QRect& rect, bool round) {
  const PanelPalette p = PanelPalette::from(option.palette);
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool on = option.state & (QStyle::State_On | QStyle::State_NoChange);
  const bool sunken = enabled && option.state.testFlag(QStyle::State_Sunken);
  const bool hover = enabled && option.state.testFlag(QStyle::State_MouseOver);
  const QRectF box = QRectF(rect).adjusted(1, 1, -1, -1);
  const double radius = round ? box.width() / 2 : 4;
  painter.save();
  if (!enabled)
    painter.setOpacity(0.45);
  if (on) {
    rounded(painter, box, radius, sunken ? p.fillPressed : hover ? p.fillHover : p.fill);
    if (round)
      rounded(painter, box.adjusted(4, 4, -4, -4), radius, p.onFill);
    else
      symbol(painter, option.state.testFlag(QStyle::State_NoChange) ? "minus" : "checkmark", box,
             12, p.onFill);
  } else {
    rounded(painter, box, radius,
            sunken  ? p.controlPressed
            : hover ? p.controlHover
                    : p.field,
            p.outline, 1);
  }
  painter.restore();
}

} // namespace tavrin::panelPaint
