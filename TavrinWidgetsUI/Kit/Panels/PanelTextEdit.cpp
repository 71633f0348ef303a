#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QEvent>
#include <QFontMetrics>
#include <QSignalBlocker>
#include <QStyle>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <cmath>

namespace tavrin {

PanelTextEdit::PanelTextEdit(const QString& name, const QString& prompt, QWidget* parent)
    : QPlainTextEdit(parent), prompt_(plainWords(prompt)) {
  setAccessibleName(name);
  setTabChangesFocus(true);
  setFont(panelFont(PanelTextStyle::body));
  setFrameShape(QFrame::StyledPanel);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  document()->setDocumentMargin(7);
  // To the document that is a change of its own.
  document()->clearUndoRedoStacks();
  // The frame paints the ground with its round corners.
  viewport()->setAutoFillBackground(false);
  connect(this, &QPlainTextEdit::textChanged, this, [this] {
    if (onChange)
      onChange(toPlainText());
  });
}

void PanelTextEdit::setText(const QString& text) {
  if (text == toPlainText())
    return;
  const QSignalBlocker quiet(this);
  const int at = textCursor().position();
  setPlainText(text);
  QTextCursor cursor = textCursor();
  cursor.setPosition(std::min(at, std::max(0, document()->characterCount() - 1)));
  setTextCursor(cursor);
}

void PanelTextEdit::setPaper(const QColor& colour) {
  if (colour == paper_)
    return;
  paper_ = colour;
  applyPaper();
}

void PanelTextEdit::applyPaper() {
  if (!paper_.isValid())
    return;
  QPalette colours;
  const QColor ink = withContrast(QColor(0x1C, 0x1C, 0x1E), paper_, 7);
  colours.setColor(QPalette::Base, paper_);
  colours.setColor(QPalette::Text, ink);
  colours.setColor(QPalette::PlaceholderText, withContrast(mix(ink, paper_, 0.35), paper_, 4.6));
  colours.setColor(QPalette::LinkVisited, mix(paper_, ink, 0.15));
  if (colours.color(QPalette::Base) != palette().color(QPalette::Base))
    setPalette(colours);
}

void PanelTextEdit::setLines(int lines) {
  lines_ = std::max(1, lines);
  updateGeometry();
}

QSize PanelTextEdit::sizeHint() const {
  return {160, lines_ * QFontMetrics(font()).lineSpacing() + 16};
}

QSize PanelTextEdit::minimumSizeHint() const {
  return {80, std::min(lines_, 3) * QFontMetrics(font()).lineSpacing() + 16};
}

void PanelTextEdit::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange)
    applyPaper();
}

void PanelTextEdit::paintEvent(QPaintEvent* event) {
  if (paper_.isValid()) {
    QPainter painter(viewport());
    const QColor ink = palette().color(QPalette::Text);
    painter.setPen(QPen(withOpacity(ink, 0.10), 1));
    const int step = QFontMetrics(font()).lineSpacing();
    const double first =
        blockBoundingGeometry(firstVisibleBlock()).translated(contentOffset()).top();
    double y = std::fmod(first, step) + step + 0.5;
    for (; y < viewport()->height() - 2; y += step)
      if (y > 4)
        painter.drawLine(QPointF(8, std::round(y) + 0.5),
                         QPointF(viewport()->width() - 8, std::round(y) + 0.5));
  }
  QPlainTextEdit::paintEvent(event);
  paintPrompt();
}

/// Qt's own stands at the left wherever the interface runs to.
void PanelTextEdit::paintPrompt() {
  const QTextBlock first = document()->firstBlock();
  if (!document()->isEmpty() || !first.layout()->preeditAreaText().isEmpty())
    return;
  const double margin = document()->documentMargin();
  const double top = blockBoundingGeometry(first).translated(contentOffset()).top();
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(QRectF(viewport()->rect()).adjusted(margin, top, -margin, 0),
                   int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignTop)) |
                       Qt::TextWordWrap,
                   prompt_);
}

} // namespace tavrin
