#include "TavrinSettings/Window/WidgetsPage.h"

#include "TavrinSettings/Editing/StripOrder.h"
#include "TavrinSettings/Gallery/GalleryView.h"
#include "TavrinSettings/Strip/StripView.h"
#include "TavrinSettings/Widget/WidgetPage.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace tavrin {

WidgetsPage::WidgetsPage(PageServices& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  strip_ = new StripView(services_, this);
  strip_->onChoose = [this](const UUID& id, bool isOpened) { choose(id, isOpened); };
  strip_->onEnter = [this](const UUID& id) { enter(id); };
  strip_->onAdd = [this] { seek(); };
  strip_->onPlaced = [this](const UUID& id) { wasPlaced(id); };
  column->addWidget(strip_);
  column->addWidget(makeTools());
  below_ = new QStackedWidget(this);
  gallery_ = new GalleryView(services_, below_);
  gallery_->onAdd = [this](const UUID& id) { wasPlaced(id); };
  gallery_->onOpen = [this](const UUID& id) { enter(id); };
  widget_ = new WidgetPage(services_, below_);
  widget_->onBack = [this] { leaveWidget(); };
  below_->addWidget(gallery_);
  below_->addWidget(widget_);
  column->addWidget(below_, 1);
}

void WidgetsPage::wasPlaced(const UUID& id) {
  choose(id, false);
  if (const auto* widget = services_.editor.widget(id))
    services_.tell(worded("“{name}” is on the strip.", {{"name", widget->name}}), false);
}

void WidgetsPage::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && below_->currentWidget() == widget_)
    widget_->onBack();
  else if (event->key() == Qt::Key_Escape && isSeeking_)
    endSeeking();
  else
    QWidget::keyPressEvent(event);
}

bool WidgetsPage::enter(const UUID& id) {
  const bool isThere = open(id);
  if (isThere)
    widget_->focusForm();
  return isThere;
}

void WidgetsPage::leaveWidget() {
  showGallery();
  const UUID& id = widget_->shown();
  if (!strip_->focusTile(id) && !gallery_->focusCard(id))
    gallery_->focusSearch();
}

void WidgetsPage::refreshTiles() {
  strip_->refreshTiles();
  gallery_->refreshTiles();
  widget_->refreshTiles();
}

QWidget* WidgetsPage::makeTools() {
  auto* tools = new QWidget(this);
  auto* row = new QHBoxLayout(tools);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2);
  hint_ = new PanelText({}, PanelTextStyle::secondary, tools);
  hint_->setSingleLine(true);
  row->addWidget(hint_, 1);
  // What means a direction on the strip stands in that direction.
  auto* arrows = new QWidget(tools);
  arrows->setLayoutDirection(Qt::LeftToRight);
  auto* arrowRow = new QHBoxLayout(arrows);
  arrowRow->setContentsMargins(0, 0, 0, 0);
  arrowRow->setSpacing(2);
  row->addWidget(arrows);
  const auto add = [&](const char* symbol, const QString& name, auto action, QHBoxLayout* to) {
    auto* button = PanelButton::icon(
        QString::fromUtf8(symbol), name,
        [this, action] {
          if (chosen_)
            action(*chosen_);
        },
        tools);
    to->addWidget(button);
    return button;
  };
  moveLeft_ = add(
      "chevron.left", worded("Move Left"), [this](const UUID& id) { strip_->moveBy(id, -1); },
      arrowRow);
  moveRight_ = add(
      "chevron.right", worded("Move Right"), [this](const UUID& id) { strip_->moveBy(id, 1); },
      arrowRow);
  narrower_ = add(
      "minus", worded("Narrower"), [this](const UUID& id) { strip_->widenBy(id, -1); }, row);
  wider_ = add(
      "plus", worded("Wider"), [this](const UUID& id) { strip_->widenBy(id, 1); }, row);
  takeOff_ = add(
      "xmark", worded("Take Off the Strip"), [this](const UUID& id) { strip_->takeOff(id); }, row);
  settings_ = add(
      "gearshape", worded("Settings"), [this](const UUID& id) { enter(id); }, row);
  return tools;
}

const DockWidget* WidgetsPage::chosenOnStrip(int& place) const {
  if (!chosen_)
    return nullptr;
  const auto strip = stripOf(services_.editor.file());
  const auto found = std::ranges::find(strip, *chosen_, &DockWidget::id);
  place = static_cast<int>(found - strip.begin());
  return found == strip.end() ? nullptr : services_.editor.widget(*chosen_);
}

void WidgetsPage::refreshTools() {
  int place = 0;
  const auto* widget = chosenOnStrip(place);
  const auto& file = services_.editor.file();
  const int count = static_cast<int>(stripOf(file).size());
  moveLeft_->setEnabled(widget != nullptr && place > 0);
  moveRight_->setEnabled(widget != nullptr && place + 1 < count);
  narrower_->setEnabled(widget != nullptr && widget->span > 1);
  wider_->setEnabled(widget != nullptr && widget->span < widget->kind.maxSpan());
  takeOff_->setEnabled(widget != nullptr);
  settings_->setEnabled(widget != nullptr);
  if (widget != nullptr)
    hint_->setWords(QStringLiteral("%1 · %2").arg(
        QString::fromStdString(widget->name),
        wordedPlural("{count} tile wide", "{count} tiles wide", widget->span)));
  else if (isSeeking_)
    hint_->setWords(worded("Choose a widget below. It comes to the marked place."));
  else if (isStripFull(file))
    hint_->setWords(worded("All twelve places are taken. Take a widget off to make room."));
  else if (count == 0)
    hint_->setWords(worded("Nothing is on the strip yet. Choose a widget below."));
  else
    hint_->setWords(worded("Drag tiles to arrange them, or click one to set it up."));
}

void WidgetsPage::refresh() {
  strip_->refresh();
  gallery_->refresh();
  if (chosen_ && services_.editor.widget(*chosen_) == nullptr)
    chosen_.reset();
  strip_->setChosen(chosen_);
  if (below_->currentWidget() == widget_ && !widget_->show(widget_->shown()))
    showGallery();
  refreshTools();
}

void WidgetsPage::seek() {
  showGallery();
  chosen_.reset();
  strip_->setChosen(chosen_);
  isSeeking_ = true;
  strip_->setAwaiting(true);
  gallery_->showKinds();
  refreshTools();
}

void WidgetsPage::endSeeking() {
  isSeeking_ = false;
  strip_->setAwaiting(false);
  refreshTools();
}

void WidgetsPage::choose(const UUID& id, bool isOpened) {
  chosen_ = id;
  strip_->setChosen(chosen_);
  endSeeking();
  if (isOpened || below_->currentWidget() == widget_)
    open(id);
}

bool WidgetsPage::open(const UUID& id) {
  if (id != widget_->shown())
    commit();
  if (!widget_->show(id))
    return false;
  chosen_ = id;
  strip_->setChosen(chosen_);
  endSeeking();
  below_->setCurrentWidget(widget_);
  return true;
}

void WidgetsPage::commit() {
  if (below_->currentWidget() == widget_)
    widget_->commit();
}

void WidgetsPage::setAppearance() {
  widget_->setAppearance();
}

void WidgetsPage::showGallery() {
  commit();
  below_->setCurrentWidget(gallery_);
}

void WidgetsPage::focusSearch() {
  showGallery();
  gallery_->focusSearch();
}

} // namespace tavrin
