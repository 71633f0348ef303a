#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelAccessible.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFocus.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace tavrin {

namespace {

// Rows and squares have a ground of their own, which reaches 8 points beyond their words.
bool reachesOut(const QWidget* widget) {
  return qobject_cast<const QAbstractItemView*>(widget);
}

QHBoxLayout* indented() {
  auto* row = new QHBoxLayout;
  row->setContentsMargins(panel::grid, 0, panel::grid, 0);
  row->setSpacing(panel::grid);
  return row;
}

/// Carries out what was asked of the layouts in `widget`: until then those within others go on
/// telling the sizes of before. From the inside out, as each asks the one around it.
void layOut(const QWidget& widget) {
  for (const QObject* child : widget.children())
    if (const auto* part = qobject_cast<const QWidget*>(child);
        part != nullptr && !part->isWindow())
      layOut(*part);
  if (QLayout* layout = widget.layout())
    layout->activate();
}

} // namespace

PanelView::PanelView(const PanelAppearance& appearance, Width width, QWidget* parent)
    : QWidget(parent), appearance_(appearance), colours_(PanelPalette::make(appearance)) {
  PanelStyle::install();
  installPanelAccessibility();
  setPalette(colours_.palette());
  setFont(panelFont(PanelTextStyle::body));
  setFixedWidth(scaled(static_cast<int>(width)));
  setFocusPolicy(Qt::NoFocus);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  makeHeader(column);
  auto* middle = new QVBoxLayout;
  middle->setContentsMargins(panel::grid, 0, panel::grid, panel::padding);
  middle->setSpacing(panel::grid);
  body_ = middle;
  column->addLayout(middle, 1);
  focus_ = new PanelFocus(this);
}

void PanelView::makeHeader(QVBoxLayout* column) {
  auto* row = new QHBoxLayout;
  row->setContentsMargins(panel::padding, panel::padding - 2, panel::padding, panel::grid + 4);
  row->setSpacing(panel::grid);
  title_ = new PanelText({}, PanelTextStyle::title, this);
  title_->setSingleLine(true);
  state_ = new PanelText({}, PanelTextStyle::secondary, this);
  state_->setSingleLine(true);
  state_->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
  state_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Minimum);
  state_->hide();
  row->addWidget(title_, 1);
  row->addWidget(state_);
  column->addLayout(row);
}

void PanelView::setTitle(const QString& title) {
  title_->setWords(title);
  if (widgetName_.isEmpty() && title_->text() != accessibleName())
    setAccessibleName(title_->text());
}

void PanelView::setWidgetName(const QString& name) {
  widgetName_ = plainWords(name);
  setWindowTitle(widgetName_);
  setAccessibleName(widgetName_.isEmpty() ? title_->text() : widgetName_);
}

void PanelView::setMainControl(QWidget* control) {
  focus_->setMain(control);
}

QString PanelView::title() const {
  return title_->text();
}

void PanelView::setState(const QString& state, State kind) {
  state_->setWords(state);
  const PanelTextStyle style =
      kind == State::trouble ? PanelTextStyle::trouble : PanelTextStyle::secondary;
  if (state_->textStyle() != style)
    state_->setStyle(style);
  state_->setForegroundRole(kind == State::trouble  ? QPalette::BrightText
                            : kind == State::active ? QPalette::Link
                                                    : QPalette::PlaceholderText);
  state_->setVisible(!state.isEmpty());
}

void PanelView::add(QWidget* widget, Qt::Alignment alignment) {
  if (reachesOut(widget)) {
    body_->addWidget(widget, 1);
    askForLayout();
    return;
  }
  QHBoxLayout* row = indented();
  row->addWidget(widget, 0, alignment);
  body_->addLayout(row);
  askForLayout();
}

// Qt shows what is added to a visible panel later, and lays it out then without a word.
void PanelView::askForLayout() {
  if (!isVisible())
    return;
  for (QWidget* child : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
    if (child->isHidden() && !child->testAttribute(Qt::WA_WState_ExplicitShowHide))
      child->show();
  QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
}

QHBoxLayout* PanelView::addRow(std::initializer_list<QWidget*> widgets, bool stretch) {
  QHBoxLayout* row = indented();
  for (QWidget* widget : widgets)
    row->addWidget(widget, stretch ? 1 : 0);
  if (!stretch)
    row->addStretch(1);
  body_->addLayout(row);
  askForLayout();
  return row;
}

void PanelView::addSpace(int points) {
  body_->addSpacing(points);
}

QHBoxLayout* PanelView::footerRow() {
  if (footerRow_)
    return footerRow_;
  auto* column = static_cast<QVBoxLayout*>(layout());
  hairline_ = new PanelDivider(this);
  column->addWidget(hairline_);
  footer_ = new QWidget(this);
  focus_->setFooter(footer_);
  footerRow_ = new QHBoxLayout(footer_);
  footerRow_->setContentsMargins(panel::grid, 6, panel::grid, 6);
  footerRow_->setSpacing(panel::grid / 2);
  footerRow_->addStretch(1);
  column->addWidget(footer_);
  askForLayout();
  return footerRow_;
}

void PanelView::setEditButton(const QString& title, std::function<void()> action) {
  QHBoxLayout* row = footerRow();
  if (!edit_) {
    edit_ = new PanelButton(PanelButton::Kind::faint, title, {}, footer_);
    edit_->setShortTitle(worded("Edit…"));
    row->insertWidget(0, edit_, 0, Qt::AlignLeading);
  }
  edit_->setTitle(title);
  edit_->setAction(std::move(action));
}

void PanelView::addFooterButton(PanelButton* button) {
  footerRow()->addWidget(button, 0, Qt::AlignLeading);
}

void PanelView::setAppearance(const PanelAppearance& appearance) {
  if (appearance == appearance_)
    return;
  appearance_ = appearance;
  colours_ = PanelPalette::make(appearance);
  setPalette(colours_.palette());
  appearanceChanged();
  update();
}

void PanelView::arrangeFooter() const {
  if (!footerRow_)
    return;
  const auto fits = [this](bool isShort) {
    int wanted = 2 * panel::grid - footerRow_->spacing();
    for (const QPushButton* button : footer_->findChildren<QPushButton*>())
      if (!button->isHidden())
        wanted += (button == edit_ ? edit_->widthOf(isShort) : button->sizeHint().width()) +
                  footerRow_->spacing();
    return wanted <= minimumWidth();
  };
  const bool isWhole = fits(false);
  const bool isRow = isWhole || fits(true);
  if (edit_)
    edit_->setShort(isRow && !isWhole);
  footerRow_->setDirection(isRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

QSize PanelView::fittingSize() const {
  const int width = minimumWidth();
  arrangeFooter();
  layOut(*this);
  const QLayout* column = layout();
  const int wanted = column->hasHeightForWidth() ? column->totalHeightForWidth(width)
                                                 : column->sizeHint().height();
  const int height = std::min<int>(wanted, panel::maximumHeight);
  keptHeight_ = isSearching() ? std::max(keptHeight_, height) : height;
  return {width, keptHeight_};
}

bool PanelView::isSearching() const {
  for (const QLineEdit* line : findChildren<QLineEdit*>())
    if (dynamic_cast<const PanelSearchField*>(line) && line->isVisibleTo(this) &&
        !line->text().isEmpty())
      return true;
  return false;
}

void PanelView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous())
    focus_->open();
}

void PanelView::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReturn && event->modifiers() & ~Qt::KeypadModifier) {
    QWidget::keyPressEvent(event);
    return;
  }
  for (QPushButton* button : isReturn ? findChildren<QPushButton*>() : QList<QPushButton*>()) {
    const auto* known = dynamic_cast<PanelButton*>(button);
    if (known && known->kind() == PanelButton::Kind::prominent && button->isVisible() &&
        button->isEnabled()) {
      button->click();
      return;
    }
  }
  QWidget::keyPressEvent(event);
}

bool PanelView::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::LayoutRequest) {
    focus_->settle();
    const QSize size = fittingSize();
    // Who laid the panel out may have asked, and not have it.
    if (size != told_ || size != this->size()) {
      told_ = size;
      updateGeometry();
      if (onFittingSizeChange)
        onFittingSizeChange();
    }
  }
  return handled;
}

} // namespace tavrin
