#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QFontMetricsF>
#include <QStyleOptionButton>
#include <cmath>

namespace tavrin {

PanelButton::PanelButton(Kind kind, const QString& title, std::function<void()> action,
                         QWidget* parent)
    : QPushButton(parent), kind_(kind), action_(std::move(action)) {
  setFocusPolicy(Qt::TabFocus);
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  setKind(kind);
  setTitle(title);
  // A copy: what the action does may take this button away.
  connect(this, &QPushButton::clicked, this, [this] {
    if (const auto run = action_)
      run();
  });
}

PanelButton* PanelButton::icon(const QString& symbol, const QString& name,
                               std::function<void()> action, QWidget* parent) {
  auto* button = new PanelButton(Kind::icon, {}, std::move(action), parent);
  button->setSymbol(symbol);
  button->setAccessibleName(plainWords(name));
  setPlainToolTip(button, name);
  button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  return button;
}

void PanelButton::setKind(Kind kind) {
  kind_ = kind;
  QFont font = panelFont(PanelTextStyle::body);
  if (kind == Kind::prominent)
    font.setWeight(QFont::DemiBold);
  else if (kind == Kind::quiet)
    font.setWeight(QFont::Medium);
  setFont(font);
  updateGeometry();
  update();
}

void PanelButton::setSymbol(const QString& symbol) {
  if (symbol == symbol_)
    return;
  symbol_ = symbol;
  updateGeometry();
  update();
}

void PanelButton::setTitle(const QString& title) {
  const QString plain = plainWords(title);
  if (plain == title_)
    return;
  title_ = plain;
  // Qt reads "&" as a mark for a shortcut.
  setText(QString(plain).replace(QLatin1Char('&'), QLatin1String("&&")));
  setAccessibleName(plain);
  updateGeometry();
}

void PanelButton::setShortTitle(const QString& title) {
  shortTitle_ = plainWords(title);
}

void PanelButton::setShort(bool isShort) {
  isShort = isShort && !shortTitle_.isEmpty();
  if (isShort == isShort_)
    return;
  isShort_ = isShort;
  setPlainToolTip(this, isShort ? title_ : QString());
  updateGeometry();
  update();
}

int PanelButton::widthOf(bool isShort) const {
  const QString& words = isShort && !shortTitle_.isEmpty() ? shortTitle_ : title_;
  const double mark = symbol_.isEmpty() ? 0 : words.isEmpty() ? 15 : 21;
  const bool bare = kind_ == Kind::plain || kind_ == Kind::faint;
  return int(std::ceil(QFontMetricsF(font()).horizontalAdvance(words) + mark)) + (bare ? 16 : 28);
}

QSize PanelButton::sizeHint() const {
  if (kind_ == Kind::icon)
    return {panel::controlHeight, panel::controlHeight};
  const bool bare = kind_ == Kind::plain || kind_ == Kind::faint;
  return {widthOf(isShort_), bare ? panel::controlHeight : panel::buttonHeight};
}

QSize PanelButton::minimumSizeHint() const {
  const QSize full = sizeHint();
  return {std::min(full.width(), 56), full.height()};
}

PanelSwatch::PanelSwatch(const QColor& colour, const QString& name, std::function<void()> action,
                         QWidget* parent)
    : QPushButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setColour(colour, name);
  // Assistive technology turns a checkable button without a click.
  const auto press = [this, run = std::move(action)] {
    if (!isTold_ && run)
      run();
  };
  connect(this, &QPushButton::clicked, this, [this, press] {
    if (!isCheckable())
      press();
  });
  connect(this, &QPushButton::toggled, this, press);
}

void PanelSwatch::setColour(const QColor& colour, const QString& name) {
  if (colour == colour_ && name == accessibleName())
    return;
  colour_ = colour;
  setAccessibleName(plainWords(name));
  setPlainToolTip(this, name);
  update();
}

void PanelSwatch::setChosen(bool chosen) {
  isTold_ = true;
  setCheckable(true);
  // Qt turns a checkable button at each click; here the panel says what is chosen.
  setChecked(chosen);
  isTold_ = false;
  update();
}

void PanelSwatch::setSide(int side) {
  side_ = std::max(side, 24);
  updateGeometry();
}

void PanelSwatch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const PanelPalette p = PanelPalette::from(palette());
  QColor fill = over(colour_, p.ground);
  if (isDown())
    fill = mix(fill, p.text, 0.25);
  else if (underMouse())
    fill = mix(fill, p.text, 0.10);
  if (!isEnabled())
    painter.setOpacity(0.45);
  panelPaint::rounded(painter, rect(), panel::cornerRadius, fill, mix(fill, p.text, 0.2));
  if (isChecked())
    panelPaint::symbol(painter, QStringLiteral("checkmark"), rect(), 16,
                       contrast(palette::white, fill) >= 3 ? palette::white : palette::black);
}

} // namespace tavrin
