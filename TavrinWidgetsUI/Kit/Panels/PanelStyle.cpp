#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStyleOption>
#include <QToolTip>

namespace tavrin {
namespace {

/// What is written in: a line, several, or a number's line.
bool isField(const QWidget* widget) {
  return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
         qobject_cast<const QPlainTextEdit*>(widget);
}

bool hasSomethingTo(QKeySequence::StandardKey step, const QObject& field) {
  const bool isUndo = step == QKeySequence::Undo;
  if (const auto* lines = qobject_cast<const QPlainTextEdit*>(&field))
    return isUndo ? lines->document()->isUndoAvailable() : lines->document()->isRedoAvailable();
  const auto* line = qobject_cast<const QLineEdit*>(&field);
  if (line == nullptr)
    line = field.findChild<QLineEdit*>();
  return line != nullptr && (isUndo ? line->isUndoAvailable() : line->isRedoAvailable());
}

} // namespace

void PanelStyle::install() {
  if (dynamic_cast<PanelStyle*>(QApplication::style()))
    return;
  const QFont toolTipFont = QToolTip::font();
  const QPalette toolTipPalette = QToolTip::palette();
  // Qt swaps its palette for the style's when the style changes; windows that are open keep theirs.
  QApplication::setStyle(new PanelStyle);
  // It forgets the fonts of single classes along with it.
  QToolTip::setFont(toolTipFont);
  QToolTip::setPalette(toolTipPalette);
}

std::function<bool()>& PanelStyle::mixesWindows() {
  static std::function<bool()> mixes;
  return mixes;
}

void PanelStyle::setMixesWindows(std::function<bool()> mixes) {
  mixesWindows() = std::move(mixes);
}

void PanelStyle::dressToolTips(const PanelAppearance& appearance) {
  QToolTip::setPalette(
      PanelPalette::make({.dark = appearance.dark, .highContrast = appearance.highContrast})
          .palette());
  QToolTip::setFont(panelFont(PanelTextStyle::caption));
}

void PanelStyle::dressMenus(const PanelAppearance& appearance) {
  constexpr const char* menus = "QMenu";
  install();
  QApplication::setPalette(PanelPalette::make(appearance).palette(), menus);
  QApplication::setFont(panelFont(PanelTextStyle::body), menus);
}

void PanelStyle::polish(QWidget* widget) {
  QCommonStyle::polish(widget);
  if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractSlider*>(widget) ||
      qobject_cast<QComboBox*>(widget) || qobject_cast<QAbstractSpinBox*>(widget) ||
      qobject_cast<QLineEdit*>(widget))
    widget->setAttribute(Qt::WA_Hover);
  if (isField(widget))
    widget->installEventFilter(this);
  // An empty line would have its caret where the keyboard's language begins, away from its prompt.
  if (auto* line = qobject_cast<QLineEdit*>(widget);
      line != nullptr && QGuiApplication::isRightToLeft() &&
      qobject_cast<QAbstractSpinBox*>(line->parentWidget()) == nullptr)
    line->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
  // Its ground shows through beside the thumb.
  if (qobject_cast<QScrollBar*>(widget))
    widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
  if (auto* menu = qobject_cast<QMenu*>(widget)) {
    menu->setAttribute(Qt::WA_TranslucentBackground);
    if (const QWidget* owner = menu->parentWidget()) {
      menu->setPalette(owner->palette());
      menu->setFont(owner->font());
    }
  }
}

void PanelStyle::unpolish(QWidget* widget) {
  QCommonStyle::unpolish(widget);
  if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractSlider*>(widget) ||
      qobject_cast<QComboBox*>(widget) || qobject_cast<QAbstractSpinBox*>(widget))
    widget->setAttribute(Qt::WA_Hover, false);
  widget->removeEventFilter(this);
}

bool PanelStyle::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride)
    return QCommonStyle::eventFilter(object, event);
  const auto* keys = static_cast<QKeyEvent*>(event);
  for (const auto step : {QKeySequence::Undo, QKeySequence::Redo})
    if (keys->matches(step) && !hasSomethingTo(step, *object)) {
      event->ignore();
      return true;
    }
  return false;
}

QPalette PanelStyle::standardPalette() const {
  return PanelPalette::make({}).palette();
}

int PanelStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                            const QWidget* widget) const {
  switch (metric) {
  case PM_FocusFrameHMargin:
  case PM_FocusFrameVMargin:
    return panel::focusRing + 1;
  case PM_ScrollBarExtent:
    return 8;
  case PM_ScrollBarSliderMin:
    return 32;
  case PM_SliderThickness:
  case PM_SliderControlThickness:
    return 24;
  case PM_SliderLength:
    return 18;
  case PM_DefaultFrameWidth:
  case PM_ComboBoxFrameWidth:
  case PM_SpinBoxFrameWidth:
    return 1;
  case PM_ScrollView_ScrollBarSpacing:
  case PM_ButtonShiftHorizontal:
  case PM_ButtonShiftVertical:
    return 0;
  case PM_MenuPanelWidth:
  case PM_MenuVMargin:
  case PM_MenuHMargin:
    return metric == PM_MenuPanelWidth ? 0 : 5;
  case PM_IndicatorWidth:
  case PM_IndicatorHeight:
  case PM_ExclusiveIndicatorWidth:
  case PM_ExclusiveIndicatorHeight:
    return panel::boxSide;
  case PM_CheckBoxLabelSpacing:
  case PM_RadioButtonLabelSpacing:
  case PM_LayoutHorizontalSpacing:
  case PM_LayoutVerticalSpacing:
    return panel::grid;
  case PM_LineEditIconMargin:
    return 6;
  case PM_TextCursorWidth:
    return 2;
  default:
    return QCommonStyle::pixelMetric(metric, option, widget);
  }
}

int PanelStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returnData) const {
  switch (hint) {
  case SH_FocusFrame_AboveWidget:
  case SH_ScrollBar_LeftClickAbsolutePosition:
  case SH_Slider_SnapToValue:
  case SH_ScrollBar_MiddleClickAbsolutePosition:
  case SH_Menu_MouseTracking:
  case SH_ComboBox_ListMouseTracking:
    return 1;
  case SH_Slider_AbsoluteSetButtons:
    return Qt::LeftButton;
  case SH_Menu_Mask: {
    auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returnData);
    if (mask == nullptr || !mixesWindows() || mixesWindows()())
      return 0;
    QPainterPath outline;
    outline.addRoundedRect(option->rect, panel::menuRadius, panel::menuRadius);
    mask->region = QRegion(outline.toFillPolygon().toPolygon());
    return 1;
  }
  case SH_ComboBox_Popup:
  case SH_EtchDisabledText:
  case SH_DitherDisabledText:
  case SH_UnderlineShortcut:
  case SH_DialogButtonBox_ButtonsHaveIcons:
  case SH_FocusFrame_Mask:
  case SH_BlinkCursorWhenTextSelected:
  case SH_Widget_Animation_Duration:
  case SH_ItemView_ShowDecorationSelected:
    return 0;
  default:
    return QCommonStyle::styleHint(hint, option, widget, returnData);
  }
}

QSize PanelStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
  const int height = panel::controlHeight;
  switch (type) {
  case CT_PushButton:
    return {size.width() + 24, height};
  case CT_CheckBox:
    if (dynamic_cast<const PanelSwitch*>(widget))
      return {size.width() + scaled(34) + 12, height};
    return {size.width() + panel::boxSide + panel::grid, height};
  case CT_RadioButton:
    if (dynamic_cast<const PanelSegments*>(widget ? widget->parentWidget() : nullptr))
      return {size.width() + 22, height - 4};
    return {size.width() + panel::boxSide + panel::grid, height};
  case CT_LineEdit:
    return {size.width() + 16, height};
  case CT_ComboBox:
    return {size.width() + 36, height};
  case CT_SpinBox:
    return {size.width() + 2 * height + 8, height};
  case CT_Slider:
    return {std::max(size.width(), 24), std::max(size.height(), 24)};
  case CT_MenuItem:
    if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
      return {size.width() + 40,
              item->menuItemType == QStyleOptionMenuItem::Separator ? 9 : height};
    return size;
  default:
    return QCommonStyle::sizeFromContents(type, option, size, widget);
  }
}

QRect PanelStyle::subElementRect(SubElement element, const QStyleOption* option,
                                 const QWidget* widget) const {
  switch (element) {
  case SE_RadioButtonClickRect:
  case SE_CheckBoxClickRect:
  case SE_CheckBoxFocusRect:
  case SE_RadioButtonFocusRect:
  case SE_PushButtonContents:
  case SE_PushButtonFocusRect:
    return option->rect;
  case SE_LineEditContents: {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    const bool framed = frame && frame->lineWidth > 0;
    return framed ? option->rect.adjusted(6, 1, -6, -1) : option->rect;
  }
  default:
    return QCommonStyle::subElementRect(element, option, widget);
  }
}

QRect PanelStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                 SubControl part, const QWidget* widget) const {
  const QRect rect = option->rect;
  const auto visual = [&](const QRect& logical) {
    return visualRect(option->direction, rect, logical);
  };
  if (control == CC_SpinBox) {
    const int side = rect.height();
    if (part == SC_SpinBoxDown)
      return visual({rect.left(), rect.top(), side, rect.height()});
    if (part == SC_SpinBoxUp)
      return visual({rect.right() + 1 - side, rect.top(), side, rect.height()});
    if (part == SC_SpinBoxEditField)
      return rect.adjusted(side, 1, -side, -1);
    return rect;
  }
  if (control == CC_ComboBox) {
    if (part == SC_ComboBoxArrow)
      return visual({rect.right() + 1 - 26, rect.top(), 26, rect.height()});
    if (part == SC_ComboBoxEditField)
      return visual(rect.adjusted(10, 1, -26, -1));
    if (part == SC_ComboBoxListBoxPopup)
      return rect.adjusted(0, 0, 0, 4);
    return rect;
  }
  if (control == CC_ScrollBar) {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    const bool across = bar && bar->orientation == Qt::Horizontal;
    if (part == SC_ScrollBarAddLine || part == SC_ScrollBarSubLine)
      return {};
    if (!bar || part == SC_ScrollBarGroove)
      return rect;
    const int room = across ? rect.width() : rect.height();
    const qint64 range = qint64(bar->maximum) - bar->minimum;
    const int least = std::min(room, pixelMetric(PM_ScrollBarSliderMin, option, widget));
    const int length =
        range > 0
            ? std::clamp(int(qint64(bar->pageStep) * room / (range + bar->pageStep)), least, room)
            : room;
    const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                              room - length, bar->upsideDown);
    const auto piece = [&](int from, int size) {
      return across ? visual({rect.left() + from, rect.top(), size, rect.height()})
                    : QRect(rect.left(), rect.top() + from, rect.width(), size);
    };
    if (part == SC_ScrollBarSubPage)
      return piece(0, start);
    if (part == SC_ScrollBarAddPage)
      return piece(start + length, room - start - length);
    return piece(start, length);
  }
  return QCommonStyle::subControlRect(control, option, part, widget);
}

} // namespace tavrin
