#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/FocusRing.h"

#include <QFocusFrame>
#include <QRadioButton>
#include <QStyleOption>

namespace tavrin {

namespace {

bool has(const QStyleOption& option, QStyle::StateFlag flag) {
  return option.state.testFlag(flag);
}

/// Buttons of other makes get the quiet look.
/// "Save" of "&Save": the keys that the toolkit's own dialogs mark are not underlined here.
QString withoutMnemonic(QString words) {
  const QChar escaped(0xFFFF);
  return words.replace(QLatin1String("&&"), escaped).remove(QLatin1Char('&')).replace(escaped, '&');
}

void drawForeignButton(const QStyleOptionButton& button, QPainter& painter) {
  const PanelPalette p = PanelPalette::from(button.palette);
  const bool enabled = has(button, QStyle::State_Enabled);
  const bool sunken = enabled && has(button, QStyle::State_Sunken);
  const bool hover = enabled && has(button, QStyle::State_MouseOver);
  panelPaint::rounded(painter, button.rect, panel::cornerRadius,
                      sunken  ? p.controlPressed
                      : hover ? p.controlHover
                              : p.control);
  panelPaint::line(painter, withoutMnemonic(button.text), button.rect.adjusted(8, 0, -8, 0),
                   painter.font(), enabled ? p.text : p.disabledText, Qt::AlignHCenter);
}

void drawBox(const QStyleOptionButton& option, QPainter& painter, bool round) {
  const PanelPalette p = PanelPalette::from(option.palette);
  const int side = panel::boxSide;
  const QRect box = QStyle::visualRect(
      option.direction, option.rect,
      QRect(option.rect.left(), option.rect.center().y() - side / 2 + 1, side, side));
  panelPaint::checkBox(painter, option, box, round);
  const QRect words = QStyle::visualRect(option.direction, option.rect,
                                         option.rect.adjusted(side + panel::grid, 0, 0, 0));
  panelPaint::line(painter, option.text, words, panelFont(PanelTextStyle::body),
                   has(option, QStyle::State_Enabled) ? p.text : p.disabledText);
}

void drawMenuItem(const QStyleOptionMenuItem& item, QPainter& painter) {
  const PanelPalette p = PanelPalette::from(item.palette);
  const QRectF rect = item.rect;
  if (item.menuItemType == QStyleOptionMenuItem::Separator) {
    painter.fillRect(QRectF(rect.left() + 8, rect.center().y(), rect.width() - 16, 1), p.hairline);
    return;
  }
  const bool enabled = has(item, QStyle::State_Enabled);
  const bool chosen = enabled && has(item, QStyle::State_Selected);
  if (chosen)
    panelPaint::rounded(painter, rect, panel::cornerRadius - 1, p.fill);
  const QColor ink = !enabled ? p.disabledText : chosen ? p.onFill : p.text;
  QString title = item.text.section(QLatin1Char('\t'), 0, 0);
  const QString keys = item.text.section(QLatin1Char('\t'), 1);
  title.remove(QLatin1Char('&'));
  const QRectF inner = rect.adjusted(10, 0, -10, 0);
  panelPaint::line(painter, title, inner, panelFont(PanelTextStyle::body), ink);
  panelPaint::line(painter, keys, inner, panelFont(PanelTextStyle::caption),
                   chosen    ? p.onFill
                   : enabled ? p.secondary
                             : p.disabledText,
                   Qt::AlignTrailing);
}

void drawFocusFrame(const QWidget* widget, QPainter& painter, const QRect& rect) {
  const auto* frame = qobject_cast<const QFocusFrame*>(widget);
  const QWidget* target = frame ? frame->widget() : nullptr;
  if (!target)
    return;
  const bool isSegment = dynamic_cast<const PanelSegments*>(target->parentWidget()) != nullptr;
  const double radius = panel::cornerRadius + (isSegment ? 2 : 3);
  drawFocusRing(painter, rect, radius, PanelPalette::from(target->palette()).accent);
}

} // namespace

void PanelStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  const PanelPalette p = PanelPalette::from(option->palette);
  switch (element) {
  case PE_PanelLineEdit: {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    if (frame && frame->lineWidth <= 0)
      return;
    [[fallthrough]];
  }
  case PE_Frame: {
    const bool focus = has(*option, State_HasFocus) && has(*option, State_Enabled);
    const bool hover = has(*option, State_MouseOver) && has(*option, State_Enabled);
    panelPaint::rounded(*painter, option->rect, panel::cornerRadius,
                        has(*option, State_Enabled) ? p.field : p.control,
                        focus   ? p.accent
                        : hover ? p.outline
                                : p.fieldBorder,
                        focus ? panel::focusRing : 1);
    return;
  }
  case PE_PanelMenu:
  case PE_PanelTipLabel:
    // A mask cuts whole pixels, and half a one at the corner would be half black.
    if (widget != nullptr && !widget->mask().isEmpty())
      painter->fillRect(option->rect, p.fieldBorder);
    panelPaint::rounded(*painter, option->rect, element == PE_PanelMenu ? panel::menuRadius : 4,
                        p.field, p.fieldBorder);
    return;
  case PE_IndicatorCheckBox:
  case PE_IndicatorItemViewItemCheck:
    panelPaint::checkBox(*painter, *option, option->rect, false);
    return;
  case PE_IndicatorRadioButton:
    panelPaint::checkBox(*painter, *option, option->rect, true);
    return;
  // Focus is shown by the ring of the panel, or by the row itself.
  case PE_FrameFocusRect:
  case PE_FrameMenu:
  case PE_FrameDefaultButton:
  case PE_FrameLineEdit:
    return;
  default:
    QCommonStyle::drawPrimitive(element, option, painter, widget);
  }
}

void PanelStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  switch (element) {
  case CE_PushButton:
    if (const auto* button = dynamic_cast<const PanelButton*>(widget))
      panelPaint::button(*painter, *option, *button);
    else if (const auto* foreign = qstyleoption_cast<const QStyleOptionButton*>(option))
      drawForeignButton(*foreign, *painter);
    return;
  case CE_CheckBox:
  case CE_RadioButton: {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (!button)
      return;
    if (dynamic_cast<const PanelSwitch*>(widget))
      panelPaint::toggle(*painter, *option, button->text);
    else if (dynamic_cast<const PanelSegments*>(widget ? widget->parentWidget() : nullptr))
      panelPaint::segment(*painter, *option, button->text);
    else
      drawBox(*button, *painter, element == CE_RadioButton);
    return;
  }
  case CE_ComboBoxLabel:
    if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
      const PanelPalette p = PanelPalette::from(option->palette);
      panelPaint::choice(*painter, combo->currentText,
                         subControlRect(CC_ComboBox, combo, SC_ComboBoxEditField, widget),
                         has(*option, State_Enabled) ? p.text : p.disabledText);
    }
    return;
  case CE_ShapedFrame:
    if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option)) {
      if (frame->frameShape == QFrame::StyledPanel)
        drawPrimitive(PE_Frame, option, painter, widget);
      return;
    }
    return;
  case CE_MenuItem:
    if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
      drawMenuItem(*item, *painter);
    return;
  case CE_FocusFrame:
    drawFocusFrame(widget, *painter, option->rect);
    return;
  default:
    QCommonStyle::drawControl(element, option, painter, widget);
  }
}

namespace {

void drawSlider(const QStyleOptionSlider& slider, const QRect& handle, QPainter& painter) {
  const PanelPalette p = PanelPalette::from(slider.palette);
  const bool enabled = has(slider, QStyle::State_Enabled);
  const QPointF knob = QRectF(handle).center();
  const QRectF rect = slider.rect;
  const bool across = slider.orientation == Qt::Horizontal;
  const QRectF groove = across ? QRectF(rect.left() + 1, knob.y() - 2, rect.width() - 2, 4)
                               : QRectF(knob.x() - 2, rect.top() + 1, 4, rect.height() - 2);
  QRectF done = groove;
  if (across && slider.upsideDown)
    done.setLeft(knob.x());
  else if (across)
    done.setRight(knob.x());
  else
    done.setTop(knob.y());
  panelPaint::rounded(painter, groove, 2, p.track);
  panelPaint::rounded(painter, done, 2, enabled ? p.fill : p.disabledText);
  const bool sunken = enabled && has(slider, QStyle::State_Sunken);
  const bool hover = enabled && has(slider, QStyle::State_MouseOver);
  const QColor face = !enabled ? p.control
                      : sunken ? mix(p.chosen, p.fill, 0.2)
                               : QColor(Qt::white);
  const double radius = 9;
  panelPaint::rounded(painter, QRectF(knob.x() - radius, knob.y() - radius, 2 * radius, 2 * radius),
                      radius, face, hover || sunken ? p.fill : p.outline, hover ? 2 : 1);
}

void drawScrollBar(const QStyleOptionSlider& bar, const QRect& thumb, QPainter& painter) {
  if (bar.maximum <= bar.minimum)
    return;
  const PanelPalette p = PanelPalette::from(bar.palette);
  const bool active = bar.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                      (has(bar, QStyle::State_MouseOver) || has(bar, QStyle::State_Sunken));
  const double width = active ? 6 : 4;
  const QRectF room = thumb;
  const bool across = bar.orientation == Qt::Horizontal;
  const QRectF line = across ? QRectF(room.left(), room.bottom() - 1 - width, room.width(), width)
                      : bar.direction == Qt::RightToLeft
                          ? QRectF(room.left() + 1, room.top(), width, room.height())
                          : QRectF(room.right() - 1 - width, room.top(), width, room.height());
  panelPaint::rounded(painter, line, width / 2, active ? p.outline : p.track);
}

void drawSpinBox(const QStyleOptionSpinBox& spin, const QStyle& style, const QWidget* widget,
                 QPainter& painter) {
  const PanelPalette p = PanelPalette::from(spin.palette);
  const bool enabled = has(spin, QStyle::State_Enabled);
  panelPaint::rounded(painter, spin.rect, panel::cornerRadius, p.control);
  const auto end = [&](QStyle::SubControl part, QAbstractSpinBox::StepEnabledFlag flag,
                       const QString& name) {
    const QRectF rect = style.subControlRect(QStyle::CC_SpinBox, &spin, part, widget);
    const bool can = enabled && spin.stepEnabled.testFlag(flag);
    const bool active = can && spin.activeSubControls == part;
    if (active)
      panelPaint::rounded(painter, rect, panel::cornerRadius,
                          has(spin, QStyle::State_Sunken) ? p.controlPressed : p.controlHover);
    panelPaint::symbol(painter, name, rect, 14, can ? p.text : panelPaint::disabledSymbol(p));
  };
  end(QStyle::SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled, QStringLiteral("minus"));
  end(QStyle::SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled, QStringLiteral("plus"));
}

} // namespace

void PanelStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
  if (control == CC_Slider) {
    if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option))
      drawSlider(*slider, subControlRect(CC_Slider, slider, SC_SliderHandle, widget), *painter);
  } else if (control == CC_ScrollBar) {
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
      drawScrollBar(*bar, subControlRect(CC_ScrollBar, bar, SC_ScrollBarSlider, widget), *painter);
  } else if (control == CC_SpinBox) {
    if (const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option))
      drawSpinBox(*spin, *this, widget, *painter);
  } else if (control == CC_ComboBox) {
    const PanelPalette p = PanelPalette::from(option->palette);
    const bool enabled = has(*option, State_Enabled);
    const bool sunken = enabled && has(*option, State_Sunken);
    const bool hover = enabled && has(*option, State_MouseOver);
    panelPaint::rounded(*painter, option->rect, panel::cornerRadius,
                        sunken  ? p.controlPressed
                        : hover ? p.controlHover
                                : p.control);
    panelPaint::symbol(*painter, QStringLiteral("chevron.down"),
                       subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget), 12,
                       enabled ? p.secondary : p.disabledText);
  } else {
    QCommonStyle::drawComplexControl(control, option, painter, widget);
  }
}

} // namespace tavrin
