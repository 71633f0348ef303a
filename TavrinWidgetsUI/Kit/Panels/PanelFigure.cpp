#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/View.h"

#include <QEvent>
#include <algorithm>

namespace tavrin {

PanelFigure::PanelFigure(int size, const QString& widest, QWidget* parent)
    : ViewWidget(QSizeF(0, scaled(size)), parent), size_(scaled(size)), widest_(widest) {
  rebuild();
}

void PanelFigure::setText(const QString& text) {
  if (text == text_)
    return;
  text_ = text;
  rebuild();
}

void PanelFigure::setWidest(const QString& widest) {
  if (widest == widest_)
    return;
  widest_ = widest;
  rebuild();
}

void PanelFigure::setUnit(const QString& unit) {
  if (unit == unit_)
    return;
  unit_ = unit;
  rebuild();
}

void PanelFigure::setAlignment(Qt::Alignment alignment) {
  alignment_ = alignment;
  rebuild();
}

void PanelFigure::setName(const QString& name) {
  name_ = name;
  rebuild();
}

void PanelFigure::changeEvent(QEvent* event) {
  ViewWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange)
    rebuild();
}

void PanelFigure::rebuild() {
  const PanelPalette p = PanelPalette::from(palette());
  const TextAlignment align = alignment_ & Qt::AlignHCenter ? TextAlignment::centre
                              : alignment_ & Qt::AlignRight ? TextAlignment::trailing
                                                            : TextAlignment::leading;
  const AnyView number = tavrin::text(text_)
                             .size(size_)
                             .weight(FontWeight::semibold)
                             .colour(p.text)
                             .align(align)
                             .widest(widest_.isEmpty() ? widestDigits(text_) : widest_)
                             .figure(size_ / 2.0);
  AnyView whole = number;
  if (!unit_.isEmpty()) {
    const double unitSize = std::max(11.0, size_ * 0.4);
    whole =
        hstack({number,
                tavrin::text(unit_).size(unitSize).weight(FontWeight::medium).colour(p.secondary)})
            .spacing(size_ * 0.12)
            .align(Alignment::bottom);
  }
  // Commas and brackets reach below a figure.
  whole = whole.padding(0, size_ * 0.07);
  setViewSize(measure(whole));
  setView(whole);
  const QString value = unit_.isEmpty() ? text_ : text_ + QLatin1Char(' ') + unit_;
  ViewWidget::setName(joinedFacts({name_, value}));
}

} // namespace tavrin
