#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"

#include <QPainter>
#include <QRectF>

class QWidget;
class QStyleOption;

namespace tavrin {

class PanelButton;
class PanelSwitch;

/// What the style and the delegates paint alike.
namespace panelPaint {

/// How much smaller than it is meant a control's title is set before it is cut.
inline constexpr double leastFit = 0.8;
/// Between a segment's edge and its title.
inline constexpr int segmentInset = 4;

/// Fills `rect` with round corners; a valid `border` is drawn inside it, `width` points wide.
void rounded(QPainter& painter, const QRectF& rect, double radius, const QColor& fill,
             const QColor& border = {}, double width = 1);
/// What a symbol is drawn in that cannot be pressed: fainter than any that can, and strong enough
/// for its thin strokes to be made out.
QColor disabledSymbol(const PanelPalette& palette);
/// The symbol of `side` points in the middle of `rect`.
void symbol(QPainter& painter, const QString& name, const QRectF& rect, double side,
            const QColor& colour);
/// The whole picture in the middle of `rect`. One that is opaque gets an edge of `hairline`,
/// without which a light page would be lost on a light ground; an icon has an edge of its own.
void picture(QPainter& painter, const QImage& image, const QRectF& rect, const QColor& hairline);
/// One line at the start of `rect`, cut with an ellipsis where it is too long. The width it took.
double line(QPainter& painter, const QString& text, const QRectF& rect, const QFont& font,
            const QColor& colour, Qt::Alignment alignment = Qt::AlignLeading,
            Qt::TextElideMode elision = Qt::ElideRight);
/// As many lines from the top of `rect` as it has room for, the last one cut. Whether one was.
bool lines(QPainter& painter, const QString& text, const QRectF& rect, const QFont& font,
           const QColor& colour, Qt::TextElideMode elision = Qt::ElideRight);

/// What a combo box shows, in the painter's font: set smaller, then on two lines, before it is cut.
void choice(QPainter& painter, const QString& words, const QRectF& rect, const QColor& colour);

/// Whether the search field that leads to `list` has the focus: its first item is what Return means
/// then, and is marked.
bool isLed(const QWidget& list);
/// Says which search field leads to `list`.
void setLead(QWidget& list, const QWidget& field);
/// `logical`, mirrored inside `whole` where the text runs from right to left.
QRectF visual(const QRectF& logical, const QRectF& whole, Qt::LayoutDirection direction);

void button(QPainter& painter, const QStyleOption& option, const PanelButton& button);
void segment(QPainter& painter, const QStyleOption& option, const QString& title);
void toggle(QPainter& painter, const QStyleOption& option, const QString& title);
void checkBox(QPainter& painter, const QStyleOption& option, const QRect& rect, bool round);

} // namespace panelPaint

} // namespace tavrin
