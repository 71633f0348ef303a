#include "TavrinSettings/Gallery/GalleryView.h"

#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinSettings/Base/ScrollFade.h"
#include "TavrinSettings/Base/TabStop.h"
#include "TavrinSettings/Base/VisibleTick.h"
#include "TavrinSettings/Editing/StripOrder.h"
#include "TavrinSettings/Gallery/FlowLayout.h"
#include "TavrinSettings/Gallery/KindSearch.h"
#include "TavrinSettings/Gallery/WidgetCard.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace tavrin {
namespace {

constexpr int columnWidth = 250;

} // namespace

GalleryView::GalleryView(PageServices& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  setAccessibleName(worded("Gallery"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  auto* top = new QHBoxLayout;
  search_ = new PanelSearchField(worded("Search widgets"), this);
  search_->setAccessibleName(worded("Search widgets"));
  search_->onChange = [this](const QString& words) { search(words); };
  search_->onReturn = [this] {
    if (!order_.empty() && !search_->text().isEmpty())
      order_.front()->click();
    // What is typed next is another search.
    search_->selectAll();
  };
  top->addWidget(search_, 1);
  starter_ = new PanelButton(
      PanelButton::Kind::prominent, worded("Starter Set"),
      [this] { services_.attempt([&] { services_.editor.addStarterSet(); }); }, this);
  setPlainToolTip(starter_, worded("A Pomodoro, a timer, a clock, a countdown, the day's "
                                   "progress and a note"));
  top->addWidget(starter_);
  // The search keeps its place when the button goes.
  top->addStrut(starter_->sizeHint().height());
  column->addLayout(top);

  scroll_ = ScrollFade::makeArea(this);
  auto* inner = new QWidget;
  auto* list = new QVBoxLayout(inner);
  // The ring around a card lies outside it.
  list->setContentsMargins(panel::focusRing, panel::focusRing, panel::grid, panel::grid);
  list->setSpacing(panel::grid);
  keptTitle_ = new PanelText(worded("Kept off the strip"), PanelTextStyle::section);
  kept_ = new QWidget;
  keptFlow_ = new FlowLayout(columnWidth, panel::grid, kept_);
  kindsTitle_ = new PanelText(worded("Add a widget"), PanelTextStyle::section);
  kinds_ = new QWidget;
  kindFlow_ = new FlowLayout(columnWidth, panel::grid, kinds_);
  none_ = new PanelEmptyState(QStringLiteral("magnifyingglass"), {});
  none_->setStep(worded("Show All"), [this] { search_->clear(); });
  for (QWidget* part : {static_cast<QWidget*>(keptTitle_), kept_,
                        static_cast<QWidget*>(kindsTitle_), kinds_, static_cast<QWidget*>(none_)})
    list->addWidget(part);
  list->addStretch(1);
  scroll_->setWidget(inner);
  scroll_->viewport()->setAutoFillBackground(false);
  inner->setAutoFillBackground(false);
  column->addWidget(scroll_, 1);
  makeKinds();
  search({});
  new VisibleTick(this, [this] {
    for (const auto* shown : {&keptCards_, &order_})
      for (auto* card : *shown)
        card->tick();
  });
}

void GalleryView::makeKinds() {
  for (const auto& kind : allKinds()) {
    const Date now = services_.forms.now();
    const auto fresh = freshKind(kind.key, now);
    DockWidget sample({}, translated(kind.title), std::nullopt, *fresh, 1);
    if (auto* countdown = sample.kind.get<CountdownSettings>()) {
      countdown->target = now + 14 * 86'400.0 + 5000;
      sample.name = translated("Trip");
    }
    if (auto* note = sample.kind.get<NoteSettings>())
      note->text = translated("Milk, bread\nCall Ada");
    auto* card = new WidgetCard(services_, sample, {{}, std::string(kind.key), 1},
                                worded(kind.title), worded(kind.purpose), kinds_);
    card->setAccessibleName(worded("Add {name}", {{"name", translation(kind.title)}}));
    QObject::connect(card, &QAbstractButton::clicked, this, [this, &kind] { add(kind); });
    follow(card);
    kindCards_.push_back(card);
  }
}

void GalleryView::add(const KindInfo& kind) {
  services_.attempt([&] {
    const UUID id = services_.editor.add(kind.key);
    if (onAdd)
      onAdd(id);
  });
}

void GalleryView::search(const QString& words) {
  const auto found = kindsMatching(words.toStdString());
  while (auto* item = kindFlow_->takeAt(0))
    delete item;
  for (auto* card : kindCards_)
    card->hide();
  order_.clear();
  QWidget* before = starter_;
  for (const auto* kind : found) {
    auto* card = kindCards_[static_cast<std::size_t>(kind - allKinds().data())];
    kindFlow_->addWidget(card);
    card->show();
    order_.push_back(card);
    setTabOrder(before, card);
    before = card;
  }
  kindFlow_->invalidate();
  kinds_->updateGeometry();
  refresh();
  none_->setSentence(QStringLiteral("magnifyingglass"),
                     worded("No widget goes by “{words}”", {{"words", words}}));
  none_->setVisible(found.empty());
  kindsTitle_->setVisible(!found.empty());
}

void GalleryView::follow(WidgetCard* card) {
  card->onKey = [this, card](int key) { return moveFocus(card, key); };
  card->onType = [this](const QString& text) {
    search_->setFocus(Qt::OtherFocusReason);
    search_->setText(search_->text() + text);
  };
  card->onFocus = [this, card](bool isPressed) {
    stop_ = card;
    placeStop();
    // A card that is pressed stays under the pointer that is to let go of it.
    if (!isPressed)
      scroll_->ensureWidgetVisible(card);
  };
}

std::vector<WidgetCard*> GalleryView::cards() const {
  std::vector<WidgetCard*> all = keptCards_;
  all.insert(all.end(), order_.begin(), order_.end());
  std::erase_if(all, [](const WidgetCard* card) { return !card->isEnabled(); });
  return all;
}

void GalleryView::placeStop() {
  stop_ = makeTabStop(cards(), stop_);
}

/// The one nearest to `from` in the next row, or in the one before.
WidgetCard* GalleryView::cardBeyond(const WidgetCard* from, bool isBelow) const {
  const auto placeOf = [this](const WidgetCard* card) {
    return QRect(card->mapTo(scroll_->widget(), QPoint()), card->size());
  };
  const QRect own = placeOf(from);
  WidgetCard* nearest = nullptr;
  std::pair<int, int> least;
  for (auto* card : cards()) {
    const QRect place = placeOf(card);
    const int rows = isBelow ? place.top() - own.top() : own.top() - place.top();
    const std::pair distance(rows, std::abs(place.center().x() - own.center().x()));
    if (rows > 0 && (nearest == nullptr || distance < least)) {
      nearest = card;
      least = distance;
    }
  }
  return nearest;
}

bool GalleryView::moveFocus(WidgetCard* from, int key) {
  const auto all = cards();
  const auto at = std::ranges::find(all, from) - all.begin();
  const auto count = static_cast<std::ptrdiff_t>(all.size());
  const auto nth = [&](std::ptrdiff_t index) {
    return index >= 0 && index < count ? all[static_cast<std::size_t>(index)] : nullptr;
  };
  const int onwards = layoutDirection() == Qt::RightToLeft ? Qt::Key_Left : Qt::Key_Right;
  WidgetCard* to = nullptr;
  if (key == Qt::Key_Left || key == Qt::Key_Right)
    to = nth(key == onwards ? at + 1 : at - 1);
  else if (key == Qt::Key_Home || key == Qt::Key_End)
    to = nth(key == Qt::Key_Home ? 0 : count - 1);
  else if (key == Qt::Key_Up || key == Qt::Key_Down)
    to = cardBeyond(from, key == Qt::Key_Down);
  else
    return false;
  if (to != nullptr)
    to->setFocus(Qt::TabFocusReason);
  else if (key == Qt::Key_Up)
    search_->setFocus(Qt::TabFocusReason);
  return true;
}

WidgetCard* GalleryView::makeKept(const DockWidget& widget) {
  auto* card = new WidgetCard(services_, widget, {widget.id, {}, widget.span},
                              QString::fromStdString(widget.name),
                              worded("Click to set it up, or drag it onto the strip."), kept_);
  QObject::connect(card, &QAbstractButton::clicked, this, [this, id = widget.id] {
    if (onOpen)
      onOpen(id);
  });
  follow(card);
  return card;
}

void GalleryView::refreshKept() {
  auto kept = keptOffStrip(services_.editor.file());
  const QString words = search_->text().trimmed();
  if (!words.isEmpty()) {
    const auto kinds = kindsMatching(words.toStdString());
    std::erase_if(kept, [&](const DockWidget& widget) {
      return !QString::fromStdString(widget.name).contains(words, Qt::CaseInsensitive) &&
             std::ranges::count(kinds, widget.kind.key(), &KindInfo::key) == 0;
    });
  }
  while (auto* item = keptFlow_->takeAt(0))
    delete item;
  // A card stays the same one, so that it keeps keyboard and mouse whatever changes around it.
  auto before = std::exchange(keptCards_, {});
  QWidget* last = starter_;
  for (const auto& widget : kept) {
    const auto found = std::ranges::find(before, widget.id,
                                         [](const WidgetCard* card) { return card->record().id; });
    WidgetCard* card = nullptr;
    if (found != before.end()) {
      card = *found;
      before.erase(found);
    } else {
      card = makeKept(widget);
    }
    card->setRecord(widget, QString::fromStdString(widget.name));
    card->setAccessibleDescription(
        worded("{name}, kept off the strip", {{"name", widget.kind.title()}}));
    keptFlow_->addWidget(card);
    card->show();
    keptCards_.push_back(card);
    setTabOrder(last, card);
    last = card;
  }
  for (auto* gone : before) {
    gone->hide();
    gone->deleteLater();
  }
  keptFlow_->invalidate();
  keptTitle_->setVisible(!kept.empty());
  kept_->setVisible(!kept.empty());
  kept_->updateGeometry();
}

void GalleryView::refresh() {
  refreshKept();
  const auto& file = services_.editor.file();
  starter_->setVisible(file.widgets.empty() && file.unrecognized.empty());
  const bool isFull = isStripFull(file);
  for (auto* card : kindCards_)
    card->setEnabled(!isFull);
  placeStop();
}

void GalleryView::refreshTiles() {
  for (auto* card : keptCards_)
    card->refreshTile();
}

void GalleryView::focusSearch() {
  search_->setFocus(Qt::OtherFocusReason);
}

void GalleryView::showKinds() {
  search_->clear();
  search_->setFocus(Qt::ShortcutFocusReason);
  if (auto* inner = scroll_->widget(); inner->layout() != nullptr)
    inner->layout()->activate();
  scroll_->verticalScrollBar()->setValue(kept_->isHidden() ? 0 : kindsTitle_->y());
}

bool GalleryView::focusCard(const UUID& id) {
  const auto found =
      std::ranges::find(keptCards_, id, [](const WidgetCard* card) { return card->record().id; });
  if (found != keptCards_.end())
    (*found)->setFocus(Qt::TabFocusReason);
  return found != keptCards_.end();
}

} // namespace tavrin
