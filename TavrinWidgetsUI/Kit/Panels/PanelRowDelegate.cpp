#include "TavrinWidgetsUI/Kit/Panels/PanelRowDelegate.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Views/FocusRing.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"
#include "TavrinWidgetsUI/Kit/Views/Text.h"

#include <QFontMetricsF>
#include <algorithm>

namespace tavrin {

namespace {

constexpr double inset = panel::grid;
constexpr double actionSide = 24;
constexpr double plainPictureSide = 28;
constexpr double dotSide = 10;
/// Between a mark and the words.
constexpr double markGap = 10;

/// One row being painted, from the outside in: each part takes its room off `left` or `right`.
struct RowPainting {
  QPainter& painter;
  const PanelRow& row;
  const PanelPalette& colours;
  QRectF rect;
  Qt::LayoutDirection direction;
  double left;
  double right;
  /// The list's icon size, where it has one: titles begin behind it, whatever stands there.
  double markWidth;

  QRectF room(double x, double width) const {
    return panelPaint::visual({x, rect.top(), width, rect.height()}, rect, direction);
  }
  QColor ink() const { return row.isEnabled ? colours.text : colours.disabledText; }
  QColor quietInk() const { return row.isEnabled ? colours.secondary : colours.disabledText; }

  void paintMark();
  void paintTrailing();
  /// Whether the title was cut.
  bool paintWords();
};

/// What stands before the row's words; 0 for nothing.
double markWidthOf(const PanelRow& row, double least) {
  const bool hasImage = !row.image.isNull();
  if (!hasImage && !row.dot.isValid() && row.symbol.isEmpty() && row.mark.isEmpty())
    return 0;
  constexpr double symbolSide = 20;
  return std::max(!hasImage && row.dot.isValid() ? dotSide : symbolSide, least);
}

void RowPainting::paintMark() {
  const double width = markWidthOf(row, markWidth);
  if (width <= 0)
    return;
  const bool hasImage = !row.image.isNull();
  const QRectF place = room(left, width);
  if (hasImage) {
    // Without a width of its own larger than a symbol about the same middle: the words of all rows
    // begin in one line.
    const double pictureSide = markWidth > 0 ? rect.height() - 12 : plainPictureSide;
    QRectF square(0, 0, pictureSide, pictureSide);
    square.moveCenter(place.center());
    panelPaint::picture(painter, row.image, square, colours.hairline);
  } else if (row.dot.isValid()) {
    QRectF circle(0, 0, dotSide, dotSide);
    circle.moveCenter(place.center());
    panelPaint::rounded(painter, circle, dotSide / 2, row.dot);
  } else if (!row.symbol.isEmpty()) {
    panelPaint::symbol(painter, row.symbol, place, 18, row.isEnabled ? colours.accent : ink());
  } else {
    panelPaint::line(painter, row.mark, place, panelFont(PanelTextStyle::body), quietInk(),
                     Qt::AlignHCenter);
  }
  left += width + markGap;
}

/// A unit that is a number takes the room of its widest digits, so that what stands before it does
/// so in a column; the font's own digits differ in width.
QString columnForm(QString unit) {
  constexpr QChar figureSpace = u'\u2007';
  if (std::none_of(unit.begin(), unit.end(), [](QChar c) { return c.isDigit(); }))
    return unit;
  return widestDigits(unit.replace(figureSpace, u'8').replace(u'-', u'8'));
}

void RowPainting::paintTrailing() {
  if (row.isNew) {
    constexpr double side = 8;
    QRectF dot(0, 0, side, side);
    dot.moveCenter(room(right - side, side).center());
    panelPaint::rounded(painter, dot, side / 2, colours.accent);
    right -= side + inset;
  }
  if (row.isChecked) {
    panelPaint::symbol(painter, QStringLiteral("checkmark"), room(right - 16, 16), 14,
                       colours.accent);
    right -= 16 + inset;
  }
  const QFont font = panelFont(PanelTextStyle::body);
  const auto put = [&](const QString& words, const QString& form, const QColor& colour,
                       double gap) {
    if (words.isEmpty())
      return;
    const double width =
        std::min(QFontMetricsF(font).horizontalAdvance(form) + 1, (right - left) * 0.6);
    panelPaint::line(painter, words, room(right - width, width), font, colour, Qt::AlignTrailing);
    right -= width + gap;
  };
  put(row.unit, columnForm(row.unit), quietInk(), 3);
  put(row.trailing, row.trailing, row.unit.isEmpty() ? quietInk() : ink(), inset);
}

bool RowPainting::paintWords() {
  QFont font = panelFont(PanelTextStyle::body);
  font.setStrikeOut(row.isDone);
  const QColor colour = row.isDone ? quietInk() : ink();
  const QRectF words = room(left, right - left);
  const bool isCut =
      QFontMetricsF(font).horizontalAdvance(plainWords(row.title)) > words.width() + 0.5;
  const Qt::TextElideMode elision = row.isFileName ? Qt::ElideMiddle : Qt::ElideRight;
  if (row.subtitle.isEmpty()) {
    panelPaint::line(painter, row.title, words, font, colour, Qt::AlignLeading, elision);
    return isCut;
  }
  const double middle = words.center().y();
  const double scale = panelTextScale();
  panelPaint::line(painter, row.title,
                   {words.left(), middle - 17 * scale, words.width(), 18 * scale}, font, colour,
                   Qt::AlignLeading, elision);
  panelPaint::line(painter, row.subtitle, {words.left(), middle + 1, words.width(), 15 * scale},
                   panelFont(PanelTextStyle::caption), quietInk());
  return isCut;
}

QColor groundOf(const PanelRow& row, bool hover, bool pressed, bool led,
                const PanelPalette& colours) {
  if (pressed)
    return colours.rowPressed;
  if (row.isChecked || row.isShown || led)
    return colours.rowSelected;
  return hover ? colours.rowHover : QColor();
}

} // namespace

PanelRowDelegate::PanelRowDelegate(PanelList* list) : QAbstractItemDelegate(list), list_(list) {}

QSize PanelRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
  return {80, list_->rowHeight()};
}

QRectF PanelRowDelegate::actionRect(const PanelRow& row, int action, const QRectF& rect,
                                    Qt::LayoutDirection direction) {
  const int fromEnd = static_cast<int>(row.actions.size()) - action;
  return panelPaint::visual({rect.right() - 4 - fromEnd * actionSide,
                             rect.center().y() - actionSide / 2, actionSide, actionSide},
                            rect, direction);
}

double PanelRowDelegate::wordsInset(const PanelRow& row) const {
  const double width = markWidthOf(row, list_->iconSize().width());
  return inset + (width > 0 ? width + markGap : 0);
}

bool PanelRowDelegate::isCut(const QModelIndex& index) const {
  const auto found = cut_.find(index.row());
  return found != cut_.end() && found->second;
}

void PanelRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  const auto row = index.data(PanelRowModel::rowRole).value<PanelRow>();
  const PanelPalette colours = PanelPalette::from(list_->palette());
  const QRectF rect = option.rect;
  const QPoint pointer = list_->viewport()->mapFromGlobal(QCursor::pos());
  const bool live = !list_->isReadOnly() && row.isEnabled;
  const bool led = live && index.row() == 0 && panelPaint::isLed(*list_);
  const bool hover = live && option.state.testFlag(QStyle::State_MouseOver);
  const bool focus = live && list_->currentIndex() == index && showsFocus(*list_);
  const int overAction = hover ? list_->actionAt(index, pointer) : -1;
  const bool pressed = hover && overAction < 0 && list_->isPressed(index);

  painter->save();
  panelPaint::rounded(*painter, rect, panel::cornerRadius,
                      groundOf(row, hover, pressed, led, colours));
  RowPainting painting{*painter,
                       row,
                       colours,
                       rect,
                       option.direction,
                       rect.left() + inset,
                       rect.right() - inset,
                       double(list_->iconSize().width())};
  const int count = static_cast<int>(row.actions.size());
  int firstShown = count;
  for (int i = count - 1; i >= 0; --i) {
    const PanelRowAction& action = row.actions[static_cast<std::size_t>(i)];
    if (!action.stays && !hover && !focus)
      continue;
    const QRectF place = actionRect(row, i, rect, option.direction);
    if (i == overAction)
      panelPaint::rounded(*painter, place, 5,
                          list_->isPressed(index) ? colours.controlPressed : colours.controlHover);
    panelPaint::symbol(*painter, action.symbol, place, 15,
                       i == overAction ? colours.text : colours.secondary);
    if (focus && list_->currentAction() == i)
      drawFocusRing(*painter, place, 6, colours.accent);
    firstShown = i;
  }
  if (firstShown < count)
    painting.right = rect.right() - 4 - (count - firstShown) * actionSide - 4;
  painting.paintMark();
  painting.paintTrailing();
  cut_[index.row()] = painting.paintWords();
  if (focus && list_->currentAction() < 0)
    drawFocusRing(*painter, rect, panel::cornerRadius, colours.accent);
  painter->restore();
}

} // namespace tavrin
