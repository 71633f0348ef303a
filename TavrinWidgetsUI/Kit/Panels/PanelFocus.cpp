#include "TavrinWidgetsUI/Kit/Panels/PanelFocus.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <algorithm>
#include <utility>

namespace tavrin {

namespace {

// These show the focus by their own edge, or by their current row.
bool showsItself(const QWidget* widget) {
  return qobject_cast<const QAbstractScrollArea*>(widget) ||
         qobject_cast<const QLineEdit*>(widget) || dynamic_cast<const ViewWidget*>(widget);
}

bool hasNoRows(const QWidget* widget) {
  const auto* view = qobject_cast<const QAbstractItemView*>(widget);
  return view != nullptr && (view->model() == nullptr || view->model()->rowCount() == 0);
}

/// What a panel is about, or what it is opened for.
bool isChief(const QWidget* widget) {
  const auto* button = dynamic_cast<const PanelButton*>(widget);
  return qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
         qobject_cast<const QPlainTextEdit*>(widget) ||
         (button != nullptr && button->kind() == PanelButton::Kind::prominent);
}

bool isOtherChoice(const QWidget* widget) {
  const auto* radio = qobject_cast<const QRadioButton*>(widget);
  return radio != nullptr && !radio->isChecked();
}

void beginWithFirstRow(QWidget* widget) {
  auto* view = qobject_cast<QAbstractItemView*>(widget);
  if (view == nullptr || hasNoRows(view))
    return;
  view->selectionModel()->setCurrentIndex(view->model()->index(0, 0),
                                          QItemSelectionModel::NoUpdate);
  view->scrollToTop();
}

/// On the way to a shortcut, such as Ctrl+Z.
bool isLoneModifier(const QEvent& event) {
  if (event.type() != QEvent::KeyPress)
    return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  return key == Qt::Key_Control || key == Qt::Key_Meta || key == Qt::Key_Shift ||
         key == Qt::Key_Alt;
}

class ArrowKeys : public QObject {
public:
  ArrowKeys(QWidget& from, QWidget& to) : QObject(&from), to_(&to) {
    from.installEventFilter(this);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || to_ == nullptr || !to_->isVisible() ||
        !to_->isEnabled())
      return false;
    const auto* press = static_cast<QKeyEvent*>(event);
    if (press->modifiers() != Qt::NoModifier ||
        (press->key() != Qt::Key_Left && press->key() != Qt::Key_Right))
      return false;
    QCoreApplication::sendEvent(to_, event);
    return true;
  }

private:
  QPointer<QWidget> to_;
};

QString nameOf(const QWidget& control) {
  const QString name = control.accessibleName();
  return name.isEmpty() ? control.property("text").toString() : name;
}

} // namespace

PanelWork::PanelWork(const QWidget& panel) {
  const QWidget* focus = panel.window()->focusWidget();
  if (focus == nullptr || !panel.isAncestorOf(focus))
    return;
  class_ = focus->metaObject()->className();
  name_ = nameOf(*focus);
  if (const auto* line = qobject_cast<const QLineEdit*>(focus)) {
    text_ = line->text();
    cursor_ = line->cursorPosition();
    anchor_ = !line->hasSelectedText()            ? cursor_
              : cursor_ == line->selectionStart() ? line->selectionEnd()
                                                  : line->selectionStart();
  } else if (const auto* paper = qobject_cast<const QPlainTextEdit*>(focus)) {
    cursor_ = paper->textCursor().position();
    anchor_ = paper->textCursor().anchor();
  } else if (const auto* items = qobject_cast<const QAbstractItemView*>(focus)) {
    cursor_ = items->currentIndex().row();
  }
}

void PanelWork::resume(QWidget& panel) const {
  for (QWidget* each : panel.findChildren<QWidget*>())
    if (!name_.isEmpty() && class_ == each->metaObject()->className() && nameOf(*each) == name_ &&
        each->isEnabled() && each->isVisibleTo(&panel)) {
      each->setFocus(Qt::OtherFocusReason);
      resumeIn(*each);
      return;
    }
}

void PanelWork::resumeIn(QWidget& control) const {
  if (auto* line = qobject_cast<QLineEdit*>(&control)) {
    if (!line->isReadOnly() && line->text() != text_)
      line->setText(text_);
    line->setCursorPosition(cursor_);
    if (anchor_ != cursor_)
      line->setSelection(anchor_, cursor_ - anchor_);
  } else if (auto* paper = qobject_cast<QPlainTextEdit*>(&control)) {
    const int end = paper->document()->characterCount() - 1;
    QTextCursor cursor = paper->textCursor();
    cursor.setPosition(std::min(anchor_, end));
    cursor.setPosition(std::min(cursor_, end), QTextCursor::KeepAnchor);
    paper->setTextCursor(cursor);
  } else if (auto* items = qobject_cast<QAbstractItemView*>(&control)) {
    const QModelIndex row = items->model()->index(cursor_, 0);
    items->selectionModel()->setCurrentIndex(row, QItemSelectionModel::NoUpdate);
    items->scrollTo(row);
  }
}

void passArrowKeys(QWidget& from, QWidget& to) {
  new ArrowKeys(from, to);
}

PanelFocus::PanelFocus(QWidget* panel) : QObject(panel), panel_(panel) {
  panel->installEventFilter(this);
}

PanelFocus::~PanelFocus() {
  delete ring_.data();
}

bool PanelFocus::takesFocus(const QWidget* widget) const {
  return (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr &&
         widget->isEnabled() && widget->isVisibleTo(panel_) && !hasNoRows(widget);
}

bool PanelFocus::isInFooter(const QWidget* widget) const {
  return footer_ != nullptr && footer_->isAncestorOf(widget);
}

QWidget* PanelFocus::wanted() const {
  if (main_ != nullptr && takesFocus(main_))
    return main_;
  QWidget* first = nullptr;
  QWidget* inFooter = nullptr;
  for (QWidget* one = panel_->nextInFocusChain(); one != panel_; one = one->nextInFocusChain()) {
    if (!panel_->isAncestorOf(one) || !takesFocus(one) || isOtherChoice(one))
      continue;
    if (isInFooter(one))
      inFooter = inFooter != nullptr ? inFooter : one;
    else if (isChief(one))
      return one;
    else if (first == nullptr)
      first = one;
  }
  return first != nullptr ? first : inFooter;
}

void PanelFocus::place() {
  isLost_ = false;
  QWidget* from = panel_->window()->focusWidget();
  if (from != nullptr && panel_->isAncestorOf(from) && !takesFocus(from))
    gone_ = from;
  QWidget* to = wanted();
  if (to == nullptr || to == panel_->window()->focusWidget())
    return;
  beginWithFirstRow(to);
  isPlacing_ = true;
  to->setFocus(Qt::OtherFocusReason);
  isPlacing_ = false;
  last_ = to;
}

void PanelFocus::open() {
  isUntouched_ = true;
  gone_ = nullptr;
  putFooterLast();
  beginWithFirstRow(wanted());
  place();
  panel_->window()->setAttribute(Qt::WA_KeyboardFocusChange);
  follow();
}

void PanelFocus::settle() {
  if (!panel_->isVisible())
    return;
  putFooterLast();
  const QWidget* focus = panel_->window()->focusWidget();
  if (gone_ != nullptr && takesFocus(gone_)) {
    QWidget* back = std::exchange(gone_, nullptr);
    isPlacing_ = true;
    back->setFocus(Qt::OtherFocusReason);
    isPlacing_ = false;
    last_ = back;
    isLost_ = false;
    return;
  }
  if (isUntouched_ || isLost_ || focus == nullptr ||
      (panel_->isAncestorOf(focus) && focus->focusProxy() == nullptr && !takesFocus(focus)))
    place();
}

/// What is added to the middle later would come after it.
void PanelFocus::putFooterLast() {
  QWidget* last = nullptr;
  QList<QWidget*> early;
  QList<QWidget*> footer;
  for (QWidget* one = panel_->nextInFocusChain(); one != panel_; one = one->nextInFocusChain()) {
    if (!panel_->isAncestorOf(one) || one->focusPolicy() == Qt::NoFocus)
      continue;
    if (isInFooter(one)) {
      footer.append(one);
      continue;
    }
    last = one;
    early = footer;
  }
  if (early.isEmpty())
    return;
  for (QWidget* one : footer)
    QWidget::setTabOrder(std::exchange(last, one), one);
}

void PanelFocus::moved(QWidget* to, const QFocusEvent& event) {
  const bool isTheWindows =
      event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
  if (!isPlacing_ && !isTheWindows) {
    if (last_ == nullptr || !takesFocus(last_)) {
      isLost_ = true;
      gone_ = last_;
    } else if (to != last_) {
      isUntouched_ = false;
      gone_ = nullptr;
    }
  }
  last_ = to;
}

void PanelFocus::watch(bool on) {
  if (on == watching_)
    return;
  watching_ = on;
  if (on)
    qApp->installEventFilter(this);
  else
    qApp->removeEventFilter(this);
}

bool PanelFocus::eventFilter(QObject* object, QEvent* event) {
  const auto isInside = [this](QObject* which) {
    return which->isWidgetType() && panel_->isAncestorOf(static_cast<QWidget*>(which));
  };
  switch (event->type()) {
  case QEvent::Show:
  case QEvent::Hide:
    if (object == panel_)
      watch(event->type() == QEvent::Show);
    break;
  case QEvent::KeyPress:
  case QEvent::MouseButtonPress:
    if (isInside(object)) {
      if (!isLoneModifier(*event))
        gone_ = nullptr;
      isUntouched_ = false;
      keyboardWasUsed(event->type() == QEvent::KeyPress);
    }
    break;
  case QEvent::FocusIn:
    if (isInside(object))
      moved(static_cast<QWidget*>(object), *static_cast<QFocusEvent*>(event));
    [[fallthrough]];
  case QEvent::FocusOut:
    if (isInside(object))
      follow();
    break;
  default:
    break;
  }
  return false;
}

void PanelFocus::keyboardWasUsed(bool keyboard) {
  if (panel_->window()->testAttribute(Qt::WA_KeyboardFocusChange) == keyboard)
    return;
  panel_->window()->setAttribute(Qt::WA_KeyboardFocusChange, keyboard);
  follow();
}

void PanelFocus::follow() {
  QWidget* focus = panel_->window()->focusWidget();
  const bool keyboard = panel_->window()->testAttribute(Qt::WA_KeyboardFocusChange);
  if (focus && focus->hasFocus())
    focus->update();
  const bool shown =
      keyboard && focus && focus->hasFocus() && panel_->isAncestorOf(focus) && !showsItself(focus);
  if (shown && !ring_)
    ring_ = new QFocusFrame(panel_);
  if (ring_)
    ring_->setWidget(shown ? focus : nullptr);
}

} // namespace tavrin
