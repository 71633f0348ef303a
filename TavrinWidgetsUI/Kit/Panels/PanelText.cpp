#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QVBoxLayout>
#include <cmath>

namespace tavrin {

namespace {

/// For the vowel marks of a script whose font is not the interface's own, and reaches further than
/// that one's lines are high.
constexpr QMargins markRoom{0, 4, 0, 4};

} // namespace

PanelText::PanelText(const QString& text, PanelTextStyle style, QWidget* parent)
    : QLabel(parent), style_(style) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  // Not Minimum: the hint does not know the panel's width, and may ask for a line too many.
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  // A label goes by its text's own direction, so that a name would stand at the other side.
  if (layoutDirection() == Qt::RightToLeft) {
    setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    setContentsMargins(markRoom);
  }
  setStyle(style);
  setWords(text);
}

void PanelText::setStyle(PanelTextStyle style) {
  style_ = style;
  setFont(panelFont(style));
  const bool quiet = style == PanelTextStyle::secondary || style == PanelTextStyle::caption ||
                     style == PanelTextStyle::section;
  setForegroundRole(style == PanelTextStyle::trouble ? QPalette::BrightText
                    : quiet                          ? QPalette::PlaceholderText
                                                     : QPalette::WindowText);
}

void PanelText::setSingleLine(bool single, Qt::TextElideMode elision) {
  single_ = single;
  elision_ = elision;
  setWordWrap(!single);
  updateGeometry();
}

void PanelText::setWords(const QString& words) {
  const QString plain = plainWords(words);
  if (plain == text())
    return;
  setText(plain);
  if (single_)
    setPlainToolTip(this, isElided() ? plain : QString());
}

bool PanelText::isElided() const {
  return single_ && QFontMetricsF(font()).horizontalAdvance(text()) > width() + 0.5;
}

QSize PanelText::sizeHint() const {
  if (!single_)
    return QLabel::sizeHint();
  const QFontMetricsF metrics(font());
  return QSize(int(std::ceil(metrics.horizontalAdvance(text()))), int(std::ceil(metrics.height())))
      .grownBy(contentsMargins());
}

QSize PanelText::minimumSizeHint() const {
  if (!single_)
    return QLabel::minimumSizeHint();
  const QSize full = sizeHint();
  return {std::min(full.width(), 40), full.height()};
}

/// As the label does, but that a line which runs from the right has its end, not the space behind
/// it, at the edge.
void PanelText::paintFromTheRight(QPainter& painter) const {
  QTextOption option(QStyle::visualAlignment(Qt::RightToLeft, alignment()));
  option.setTextDirection(Qt::RightToLeft);
  QTextLayout layout(QString(text()).replace(u'\n', QChar::LineSeparator), font());
  layout.setTextOption(option);
  const QRectF room = contentsRect();
  const double leading = QFontMetricsF(font()).leading();
  double height = 0;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(room.width());
    line.setPosition({0, height});
    height += line.height() + leading;
  }
  layout.endLayout();
  const double free = room.height() - (height - leading);
  const bool isAtTop = (alignment() & Qt::AlignTop) != 0;
  painter.setPen(palette().color(foregroundRole()));
  layout.draw(&painter, {room.x(), room.y() + (isAtTop ? 0 : std::floor(free / 2))});
}

void PanelText::paintEvent(QPaintEvent* event) {
  if (!single_ && !text().isRightToLeft()) {
    QLabel::paintEvent(event);
    return;
  }
  QPainter painter(this);
  if (single_)
    panelPaint::line(painter, text(), contentsRect(), font(), palette().color(foregroundRole()),
                     alignment(), elision_);
  else
    paintFromTheRight(painter);
}

void PanelText::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  if (single_)
    setPlainToolTip(this, isElided() ? text() : QString());
}

PanelDivider::PanelDivider(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setFixedHeight(1);
}

void PanelDivider::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), PanelPalette::from(palette()).hairline);
}

PanelEmptyState::PanelEmptyState(const QString& symbol, const QString& sentence, QWidget* parent)
    : QWidget(parent), sentence_(new PanelText({}, PanelTextStyle::body, this)),
      hint_(new PanelText({}, PanelTextStyle::secondary, this)),
      step_(new PanelButton(PanelButton::Kind::quiet, {}, {}, this)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3 * panel::grid, 2 * panel::grid + 40, 3 * panel::grid,
                             2 * panel::grid);
  column->setSpacing(panel::grid / 2);
  sentence_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  hint_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  column->addWidget(sentence_);
  column->addWidget(hint_);
  column->addSpacing(panel::grid);
  column->addWidget(step_, 0, Qt::AlignHCenter);
  column->addStretch();
  hint_->hide();
  step_->hide();
  setSentence(symbol, sentence);
}

void PanelEmptyState::setSentence(const QString& symbol, const QString& sentence) {
  symbol_ = symbol;
  sentence_->setWords(sentence);
  setAccessibleName(plainWords(sentence));
  update();
}

void PanelEmptyState::setHint(const QString& hint) {
  hint_->setWords(hint);
  hint_->setVisible(!hint.isEmpty());
}

void PanelEmptyState::setStep(const QString& title, std::function<void()> action) {
  step_->setTitle(title);
  step_->setAction(std::move(action));
  step_->setVisible(!title.isEmpty());
}

void PanelEmptyState::setTrouble(bool trouble) {
  if (trouble == trouble_)
    return;
  trouble_ = trouble;
  update();
}

void PanelEmptyState::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const PanelPalette p = PanelPalette::from(palette());
  const QRectF room(0, sentence_->y() - 40, width(), 32);
  panelPaint::symbol(painter, symbol_, room, 32, trouble_ ? p.trouble : p.secondary);
}

} // namespace tavrin
