#include "TavrinSettings/Gallery/GalleryView.h"

#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinSettings/Editing/StripOrder.h"
#include "TavrinSettings/Gallery/FlowLayout.h"
#include "TavrinSettings/Gallery/KindSearch.h"
#include "TavrinSettings/Gallery/WidgetCard.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QScrollArea>
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
    if (const auto shown = shownKinds(); !shown.empty() && !search_->text().isEmpty())
      shown.front()->click();
  };
  top->addWidget(search_, 1);
  starter_ = new PanelButton(
      PanelButton::Kind::prominent, worded("Starter Set"),
      [this] { services_.attempt([&] { services_.editor.addStarterSet(); }); }, this);
  starter_->setToolTip(worded("A Pomodoro, a timer, a clock, a countdown, the day's "
                              "progress and a note"));
  starter_->setAccessibleDescription(starter_->toolTip());
  top->addWidget(starter_);
  column->addLayout(top);

  scroll_ = new QScrollArea(this);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setWidgetResizable(true);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_->setFocusPolicy(Qt::NoFocus);
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
}

void GalleryView::makeKinds() {
  for (const auto& kind : allKinds()) {
    const Date now = services_.forms.now();
    const auto fresh = freshKind(kind.key, now);
    DockWidget sample({}, translated(kind.title), std::nullopt, *fresh, 1);
    if (auto* countdown = sample.kind.get<CountdownSettings>())
      countdown->target = now + 14 * 86'400.0 + 5000;
    if (auto* note = sample.kind.get<NoteSettings>())
      note->text = translated("Milk, bread\nCall Ada");
    auto* card = new WidgetCard(services_, sample, {{}, std::string(kind.key), 1},
                                worded(kind.title), worded(kind.purpose), kinds_);
    card->setAccessibleName(worded("Add {name}", {{"name", translation(kind.title)}}));
    QObject::connect(card, &QAbstractButton::clicked, this, [this, &kind] { add(kind); });
    card->onMove = [this, card](int cards, int rows) {
      moveFocus(shownKinds(), *kindFlow_, card, cards, rows);
    };
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
  QWidget* before = search_;
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

std::vector<WidgetCard*> GalleryView::shownKinds() const {
  return order_;
}

void GalleryView::moveFocus(const std::vector<WidgetCard*>& cards, FlowLayout& flow,
                            WidgetCard* from, int steps, int rows) {
  const auto found = std::ranges::find(cards, from);
  if (found == cards.end())
    return;
  const auto next = (found - cards.begin()) + steps + rows * flow.columns();
  if (next < 0)
    return search_->setFocus(Qt::TabFocusReason);
  if (next >= static_cast<std::ptrdiff_t>(cards.size()))
    return;
  auto* card = cards[static_cast<std::size_t>(next)];
  card->setFocus(Qt::TabFocusReason);
  scroll_->ensureWidgetVisible(card);
}

void GalleryView::refresh() {
  const auto& file = services_.editor.file();
  auto kept = keptOffStrip(file);
  const QString words = search_->text().trimmed();
  if (!words.isEmpty()) {
    const auto kinds = kindsMatching(words.toStdString());
    std::erase_if(kept, [&](const DockWidget& widget) {
      return !QString::fromStdString(widget.name).contains(words, Qt::CaseInsensitive) &&
             std::ranges::count(kinds, widget.kind.key(), &KindInfo::key) == 0;
    });
  }
  for (auto* card : std::exchange(keptCards_, {})) {
    keptFlow_->removeWidget(card);
    card->hide();
    card->deleteLater();
  }
  for (const auto& widget : kept) {
    auto* card = new WidgetCard(services_, widget, {widget.id, {}, widget.span},
                                QString::fromStdString(widget.name),
                                worded("Click to set it up, or drag it onto the strip."), kept_);
    card->setAccessibleDescription(
        worded("{name}, kept off the strip", {{"name", widget.kind.title()}}));
    QObject::connect(card, &QAbstractButton::clicked, this, [this, id = widget.id] {
      if (onOpen)
        onOpen(id);
    });
    card->onMove = [this, card](int cards, int rows) {
      moveFocus(keptCards_, *keptFlow_, card, cards, rows);
    };
    keptFlow_->addWidget(card);
    card->show();
    keptCards_.push_back(card);
  }
  keptTitle_->setVisible(!kept.empty());
  kept_->setVisible(!kept.empty());
  kept_->updateGeometry();
  starter_->setVisible(file.widgets.empty() && file.unrecognized.empty());
  const bool isFull = isStripFull(file);
  for (auto* card : kindCards_)
    card->setEnabled(!isFull);
}

void GalleryView::focusSearch() {
  search_->setFocus(Qt::OtherFocusReason);
}

} // namespace tavrin
