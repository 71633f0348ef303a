#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QSignalBlocker>

namespace tavrin {

PanelSwitch::PanelSwitch(const QString& title, QWidget* parent)
    : QCheckBox(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")), parent) {
  setAccessibleName(title);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setFont(panelFont(PanelTextStyle::body));
  // Assistive technology toggles without a click.
  connect(this, &QCheckBox::toggled, this, [this](bool on) {
    if (onChange)
      onChange(on);
  });
}

void PanelSwitch::setOn(bool on) {
  const QSignalBlocker silence(this);
  setChecked(on);
}

PanelStepper::PanelStepper(const QString& name, const QString& format, int minimum, int maximum,
                           QWidget* parent)
    : QSpinBox(parent) {
  const QString mark = QStringLiteral("%lld");
  const qsizetype at = format.indexOf(mark);
  if (at >= 0) {
    setPrefix(format.left(at));
    setSuffix(format.mid(at + mark.size()));
  }
  setAccessibleName(name);
  setRange(minimum, maximum);
  setAlignment(Qt::AlignHCenter);
  setKeyboardTracking(false);
  setFont(panelFont(PanelTextStyle::body));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  connect(this, &QSpinBox::valueChanged, this, [this](int value) {
    if (onChange)
      onChange(value);
  });
}

void PanelStepper::setNumber(int number) {
  const QSignalBlocker quiet(this);
  setValue(number);
}

PanelSearchField::PanelSearchField(const QString& prompt, QWidget* parent) : QLineEdit(parent) {
  setPlaceholderText(prompt);
  setAccessibleName(prompt);
  setFont(panelFont(PanelTextStyle::body));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setTextMargins(22, 0, 22, 0);
  auto* clear = PanelButton::icon(
      QStringLiteral("xmark"), worded("Clear"),
      [this] {
        QLineEdit::clear();
        setFocus();
      },
      this);
  clear->setFocusPolicy(Qt::NoFocus);
  clear->setCursor(Qt::ArrowCursor);
  clear->setFixedSize(24, 24);
  clear->hide();
  clear_ = clear;
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    clear_->setVisible(!text.isEmpty());
    if (onChange)
      onChange(text);
  });
}

void PanelSearchField::setList(QWidget* list) {
  list_ = list;
  panelPaint::setLead(*list, *this);
  // Else the toolkit would describe the field by its prompt, which is its name.
  setAccessibleDescription(worded("The Down key leads to what was found"));
}

void PanelSearchField::updateList() {
  if (auto* area = qobject_cast<QAbstractScrollArea*>(list_))
    area->viewport()->update();
}

void PanelSearchField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  updateList();
}

void PanelSearchField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  updateList();
}

void PanelSearchField::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  placeClearButton();
}

void PanelSearchField::placeClearButton() {
  const QRectF place = panelPaint::visual(QRectF(width() - 26, (height() - 24) / 2.0, 24, 24),
                                          rect(), layoutDirection());
  clear_->move(place.topLeft().toPoint());
}

void PanelSearchField::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  QPainter painter(this);
  const QRectF mark = panelPaint::visual(QRectF(6, 0, 20, height()), rect(), layoutDirection());
  panelPaint::symbol(painter, QStringLiteral("magnifyingglass"), mark, 14,
                     PanelPalette::from(palette()).secondary);
}

void PanelSearchField::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Escape && !text().isEmpty()) {
    QLineEdit::clear();
  } else if (key == Qt::Key_Down && list_ && list_->isVisible()) {
    // From the one that is marked.
    if (auto* items = qobject_cast<QAbstractItemView*>(list_))
      items->selectionModel()->setCurrentIndex(items->model()->index(0, 0),
                                               QItemSelectionModel::NoUpdate);
    list_->setFocus(Qt::TabFocusReason);
  } else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && onReturn) {
    onReturn();
  } else {
    QLineEdit::keyPressEvent(event);
  }
}

PanelField::PanelField(const QString& title, QWidget* control, QWidget* parent) : QWidget(parent) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(panel::grid);
  auto* label = new PanelText(title, PanelTextStyle::body, this);
  label->setSingleLine(true);
  label->setBuddy(control);
  row->addWidget(label, 1);
  row->addWidget(control);
  if (control->accessibleName().isEmpty())
    control->setAccessibleName(title);
}

void nameChoice(QComboBox& choice, const QString& name) {
  choice.setAccessibleName(name);
  auto* label = new PanelText(name, PanelTextStyle::body, choice.parentWidget());
  label->hide();
  label->setBuddy(&choice);
}

} // namespace tavrin
