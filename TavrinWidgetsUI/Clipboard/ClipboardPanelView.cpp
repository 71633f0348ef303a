#include "TavrinWidgetsUI/Clipboard/ClipboardPanelView.h"

#include "TavrinCore/Text/ComputerWords.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>

namespace tavrin {
namespace {

constexpr int visibleRows = 8;
constexpr int thumbnailSide = 64;
constexpr std::size_t mostThumbnails = 128;

} // namespace

ClipboardPanelView::ClipboardPanelView(const PanelAppearance& appearance, ClipboardModel& model,
                                       Services services)
    : PanelView(appearance, Width::lists), model_(model), services_(std::move(services)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      missing_(new PanelText(worded("That image was too large to be kept. Only its size is known."),
                             PanelTextStyle::trouble)),
      search_(new PanelSearchField(worded("Search"))),
      list_(new PanelList(worded("Clipboard history"))),
      empty_(new PanelEmptyState("doc.on.clipboard", {})) {
  add(trouble_);
  missing_->hide();
  add(missing_);
  search_->setList(list_);
  search_->onChange = [this](const QString& text) {
    model_.setSearchText(text.toStdString());
    showResults();
    showWords();
  };
  search_->onReturn = [this] { copy(entryAt(0)); };
  add(search_);
  makeList();
  add(empty_);
  setEditButton(worded("Edit this widget's settings"), services_.edit);
  clear_ = new PanelButton(PanelButton::Kind::faint, worded("Clear"),
                           [this] { model_.clearUnpinned(); });
  setPlainToolTip(clear_, worded("Removes everything that is not pinned"));
  clear_->setAccessibleDescription(worded("Removes everything that is not pinned"));
  addFooterButton(clear_);
  refresh();
}

void ClipboardPanelView::makeList() {
  list_->setTall(true);
  list_->setMaximumVisibleRows(visibleRows);
  list_->onOpen = [this](int row) { copy(entryAt(row)); };
  list_->onAction = [this](int row, int action) { act(row, action); };
  list_->onRemove = [this](int row) {
    if (const auto entry = entryAt(row))
      model_.remove(entry->item);
  };
  add(list_);
}

void ClipboardPanelView::showEvent(QShowEvent* event) {
  search_->reset();
  search_->setFocus();
  PanelView::showEvent(event);
}

void ClipboardPanelView::hideEvent(QHideEvent* event) {
  revealed_.clear();
  missing_->hide();
  PanelView::hideEvent(event);
}

void ClipboardPanelView::copy(const ClipboardEntryPtr& entry) {
  missing_->setVisible(entry && !entry->item.hasContent());
  if (entry && entry->item.hasContent())
    services_.copy(entry->item);
}

void ClipboardPanelView::appearanceChanged() {
  list_->viewport()->update();
}

ClipboardEntryPtr ClipboardPanelView::entryAt(int row) const {
  return row >= 0 && static_cast<std::size_t>(row) < shown_.size()
             ? shown_[static_cast<std::size_t>(row)]
             : nullptr;
}

void ClipboardPanelView::act(int row, int action) {
  const auto entry = entryAt(row);
  if (!entry)
    return;
  const auto actions = list_->row(row).actions;
  const QString symbol = actions[static_cast<std::size_t>(action)].symbol;
  if (symbol == "lock.open.fill") {
    revealed_.insert(entry->item.id);
  } else if (symbol == "lock.fill") {
    revealed_.erase(entry->item.id);
  } else if (symbol == "trash") {
    model_.remove(entry->item);
  } else {
    model_.togglePin(entry->item);
  }
  list_->viewport()->update();
}

QString ClipboardPanelView::timeText(Date date) const {
  const auto local = [](Date each) {
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(each.unixSeconds() * 1000));
  };
  const QDateTime then = local(date);
  const QLocale locale;
  return then.date() == local(services_.clock.now()).date()
             ? locale.toString(then.time(), QLocale::ShortFormat)
             : locale.toString(then.date(), QLocale::ShortFormat);
}

QImage ClipboardPanelView::thumbnail(const ClipboardEntryPtr& entry) {
  const auto& data = entry->item.kind == ClipboardItem::Kind::image ? entry->item.imageData
                                                                    : entry->item.ogImageData;
  if (!data)
    return {};
  if (const auto found = thumbnails_.find(entry->item.id); found != thumbnails_.end())
    return found->second;
  if (thumbnails_.size() >= mostThumbnails)
    thumbnails_.clear();
  // Asked for once, also where nothing comes of it.
  thumbnails_.emplace(entry->item.id, QImage());
  const auto picture = std::make_shared<QImage>();
  services_.runLoop.background(
      [entry, picture, &bytes = *data] {
        *picture = tavrin::thumbnail(bytes.view(), thumbnailSide);
      },
      alive_,
      [this, id = entry->item.id, picture] {
        if (picture->isNull())
          return;
        thumbnails_[id] = *picture;
        list_->viewport()->update();
      });
  return {};
}

PanelRow ClipboardPanelView::makeRow(const ClipboardEntryPtr& entry) {
  PanelRow row = clipboardRow(entry->item, revealed_.contains(entry->item.id),
                              timeText(entry->item.capturedAt.date));
  row.image = thumbnail(entry);
  return row;
}

void ClipboardPanelView::showResults() {
  if (shown_ == model_.results() && list_->count() == static_cast<int>(shown_.size()))
    return;
  const auto current = entryAt(list_->currentRow());
  shown_ = model_.results();
  list_->setRows(static_cast<int>(shown_.size()), [this](int row) {
    const auto entry = entryAt(row);
    return entry ? makeRow(entry) : PanelRow{};
  });
  if (!current)
    return;
  const auto same = std::ranges::find_if(
      shown_, [&](const auto& entry) { return entry->item.id == current->item.id; });
  if (same != shown_.end())
    list_->setCurrentRow(static_cast<int>(same - shown_.begin()));
}

void ClipboardPanelView::showWords() {
  const bool isSearching = !model_.items().empty();
  empty_->setVisible(shown_.empty());
  list_->setVisible(!shown_.empty());
  search_->setVisible(isSearching);
  if (!model_.hasRead()) {
    empty_->setSentence("doc.on.clipboard", worded("Loading clipboard"));
    empty_->setHint({});
  } else if (isSearching) {
    empty_->setSentence("magnifyingglass", worded("Nothing found"));
    empty_->setHint(worded("Try a different word."));
  } else if (!model_.canCapture()) {
    empty_->setSentence("exclamationmark.triangle.fill",
                        worded("This desktop does not tell programs what is copied"));
    empty_->setHint(worded("An X11 session keeps a history."));
  } else {
    empty_->setSentence("doc.on.clipboard", worded("Nothing copied yet"));
    empty_->setHint(
        utf8(localSentence(translated("Copy something on your {Mac} and it will show up here."))));
  }
}

void ClipboardPanelView::refresh() {
  setTitle(QString::fromStdString(model_.widget().name));
  const auto count = model_.items().size();
  setState(count == 0
               ? QString()
               : wordedPlural("{count} item", "{count} items", static_cast<long long>(count)));
  const auto& trouble = model_.trouble();
  trouble_->setVisible(trouble.has_value());
  if (trouble)
    trouble_->setWords(worded("{trouble}. {reason}. The next change tries again.",
                              {{"trouble", trouble->title()}, {"reason", trouble->text}}));
  showResults();
  showWords();
  clear_->setEnabled(
      std::ranges::any_of(model_.items(), [](const auto& entry) { return !entry->item.isPinned; }));
}

} // namespace tavrin
