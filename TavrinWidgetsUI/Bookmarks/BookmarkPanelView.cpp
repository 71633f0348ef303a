#include "TavrinWidgetsUI/Bookmarks/BookmarkPanelView.h"

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkNameEdit.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelUndo.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QKeyEvent>
#include <algorithm>

namespace tavrin {
namespace {

constexpr int visibleRows = 9;
constexpr int monogramSide = 48;
/// More at once would bury the browser.
constexpr std::size_t mostOpened = 12;
/// What the name's editor reaches beyond the name, so that nothing of that is seen beside it.
constexpr int editMargin = 4;

/// What the buttons of a link's row do, in their order.
enum LinkAction { copyAddress, renameLink, removeLink };

/// The address as people read it: without scheme and a lone slash.
QString shortAddress(const WebAddress& address) {
  const std::size_t start = address.origin().size() - address.port.size();
  const QString text = utf8(address.site() + address.url.substr(start));
  return text.endsWith('/') ? text.chopped(1) : text;
}

} // namespace

BookmarkPanelView::BookmarkPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance, Width::lists), source_(std::move(source)),
      search_(new PanelSearchField(worded("Search or add a link"))),
      list_(new PanelList(worded("Bookmarks"))), empty_(new PanelEmptyState("bookmark.fill", {})) {
  search_->setList(list_);
  search_->onChange = [this](const QString&) {
    showItems();
    showWords();
  };
  search_->onReturn = [this] { openRow(0); };
  add(search_);
  list_->setMaximumVisibleRows(visibleRows);
  list_->onOpen = [this](int row) { openRow(row); };
  list_->onAction = [this](int row, int action) { act(row, action); };
  list_->onRemove = [this](int row) {
    if (const auto item = itemAt(row); item && item->kind == Item::Kind::link)
      remove(item->place);
  };
  list_->installEventFilter(this);
  add(list_);
  add(empty_);
  setEditButton(worded("Edit Bookmarks…"), source_.edit);
  undo_ = new PanelUndo([this] { undo(); });
  addFooterButton(undo_);
  openAll_ = new PanelButton(PanelButton::Kind::faint, worded("Open All"), [this] { openAll(); });
  addFooterButton(openAll_);
  refresh();
}

void BookmarkPanelView::showEvent(QShowEvent* event) {
  folder_.reset();
  search_->reset();
  refresh();
  search_->setFocus();
  PanelView::showEvent(event);
}

QString BookmarkPanelView::query() const {
  return search_->text().trimmed();
}

std::vector<BookmarkPanelView::Item> BookmarkPanelView::wantedItems() const {
  std::vector<Item> items;
  const auto addLinks = [&](const std::vector<BookmarkPlace>& places) {
    for (const auto& place : places)
      items.push_back({Item::Kind::link, place});
  };
  if (!query().isEmpty()) {
    const std::string typed = query().toStdString();
    addLinks(findBookmarks(settings_, typed));
    if (bookmarkRefusal(settings_, typed, folder_).empty())
      items.push_back({Item::Kind::add, {}});
    return items;
  }
  if (folder_ && *folder_ < settings_.folders.size()) {
    items.push_back({Item::Kind::back, {}});
    addLinks(bookmarksIn(settings_, folder_));
    return items;
  }
  for (std::size_t folder = 0; folder < settings_.folders.size(); ++folder)
    items.push_back({Item::Kind::folder, {folder, 0}});
  addLinks(bookmarksIn(settings_, std::nullopt));
  return items;
}

void BookmarkPanelView::showItems() {
  auto wanted = wantedItems();
  if (shown_ == settings_ && shownQuery_ == query() && items_ == wanted) {
    // An icon may have come.
    list_->viewport()->update();
    return;
  }
  shown_ = settings_;
  shownQuery_ = query();
  items_ = std::move(wanted);
  const int current = list_->currentRow();
  // Made when they come into sight: only then their icons are wanted.
  list_->setRows(static_cast<int>(items_.size()), [this](int row) {
    const auto item = itemAt(row);
    return item ? this->row(*item) : PanelRow{};
  });
  if (current >= 0 && !items_.empty())
    list_->setCurrentRow(std::min(current, static_cast<int>(items_.size()) - 1));
}

PanelRow BookmarkPanelView::row(const Item& item) {
  switch (item.kind) {
  case Item::Kind::add: {
    const auto address = WebAddress::from(query().toStdString());
    return {.id = "add",
            .title = worded("Add {name}", {{"name", address ? shortAddress(*address) : query()}}),
            .symbol = "plus.circle.fill"};
  }
  case Item::Kind::back:
    return {.id = "back",
            .title = utf8(settings_.folders[*folder_].title),
            .symbol = isRightToLeft() ? "chevron.right" : "chevron.left"};
  case Item::Kind::folder: {
    const auto& folder = settings_.folders[*item.place.folder];
    return {.id = QStringLiteral("folder %1").arg(*item.place.folder),
            .title = utf8(folder.title),
            .trailing = QString::number(folder.bookmarks.size()),
            .symbol = "folder.fill"};
  }
  case Item::Kind::link:
    break;
  }
  return linkRow(item.place);
}

PanelRow BookmarkPanelView::linkRow(const BookmarkPlace& place) {
  const Bookmark& bookmark = *bookmarkAt(settings_, place);
  const auto address = WebAddress::from(bookmark.url);
  PanelRow row;
  row.id = utf8(bookmark.url);
  row.title = utf8(displayTitle(bookmark));
  if (!address)
    row.subtitle = worded("Not an address of the web");
  else if (const QString address_ = shortAddress(*address); address_ != row.title)
    row.subtitle = address_;
  if (!query().isEmpty() && place.folder)
    row.trailing = utf8(settings_.folders[*place.folder].title);
  row.image = iconOf(bookmark);
  row.actions = {{"doc.on.clipboard", worded("Copy Address")},
                 {"pencil", worded("Rename")},
                 {"trash", worded("Remove")}};
  row.isEnabled = address.has_value();
  return row;
}

QImage BookmarkPanelView::iconOf(const Bookmark& bookmark) {
  if (const QImage icon = source_.icon(bookmark.url); !icon.isNull())
    return icon;
  constexpr std::size_t mostMonograms = 128;
  const std::string key = bookmark.title + '\n' + bookmark.url;
  if (const auto found = monograms_.find(key); found != monograms_.end())
    return found->second;
  if (monograms_.size() >= mostMonograms)
    monograms_.clear();
  return monograms_[key] = bookmarkMonogramImage(monogramRenderer_, bookmark, monogramSide);
}

std::optional<BookmarkPanelView::Item> BookmarkPanelView::itemAt(int row) const {
  return row >= 0 && static_cast<std::size_t>(row) < items_.size()
             ? std::optional(items_[static_cast<std::size_t>(row)])
             : std::nullopt;
}

void BookmarkPanelView::openRow(int row) {
  const auto item = itemAt(row);
  if (!item)
    return;
  switch (item->kind) {
  case Item::Kind::add: {
    BookmarkSettings changed = settings_;
    const auto address = WebAddress::from(query().toStdString());
    if (address && addBookmark(changed, address->url, folder_)) {
      search_->reset();
      source_.change(changed);
      source_.added(address->url);
    }
    return;
  }
  case Item::Kind::back:
    enter(std::nullopt);
    return;
  case Item::Kind::folder:
    enter(item->place.folder);
    return;
  case Item::Kind::link:
    if (const auto* bookmark = bookmarkAt(settings_, item->place))
      source_.open({bookmark->url});
  }
}

void BookmarkPanelView::enter(std::optional<std::size_t> folder) {
  folder_ = folder;
  refresh();
  list_->setCurrentRow(0);
}

void BookmarkPanelView::act(int row, int action) {
  const auto item = itemAt(row);
  if (!item || item->kind != Item::Kind::link)
    return;
  switch (action) {
  case copyAddress:
    source_.copy(bookmarkAt(settings_, item->place)->url);
    break;
  case renameLink:
    rename(row);
    break;
  case removeLink:
    remove(item->place);
    break;
  default:
    break;
  }
}

bool BookmarkPanelView::eventFilter(QObject* object, QEvent* event) {
  if (object == list_ && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2) {
    rename(list_->currentRow());
    return true;
  }
  return PanelView::eventFilter(object, event);
}

void BookmarkPanelView::rename(int row) {
  const auto item = itemAt(row);
  if (!item || item->kind != Item::Kind::link || nameEdit_ != nullptr)
    return;
  const Bookmark bookmark = *bookmarkAt(settings_, item->place);
  const auto index = list_->model()->index(row, 0);
  list_->scrollTo(index);
  nameEdit_ = new BookmarkNameEdit(utf8(bookmark.title), utf8(displayTitle({"", bookmark.url})),
                                   list_->viewport());
  const QRect place =
      list_->wordsRect(row).adjusted(-editMargin, 0, editMargin, 0) & list_->visualRect(index);
  const int height = std::min(nameEdit_->sizeHint().height(), place.height());
  nameEdit_->setGeometry(place.left(), place.center().y() - height / 2, place.width(), height);
  nameEdit_->onEnd = [this, at = item->place](const auto& name) { endRename(at, name); };
  nameEdit_->show();
  nameEdit_->setFocus(Qt::OtherFocusReason);
}

void BookmarkPanelView::endRename(const BookmarkPlace& place, const std::optional<QString>& name) {
  auto* edit = std::exchange(nameEdit_, nullptr);
  if (edit->hasFocus())
    list_->setFocus(Qt::OtherFocusReason);
  edit->hide();
  edit->deleteLater();
  BookmarkSettings changed = settings_;
  if (!name || !renameBookmark(changed, place, name->toStdString()) || changed == settings_)
    return;
  source_.change(changed);
  refresh();
}

void BookmarkPanelView::remove(const BookmarkPlace& place) {
  // From now on that is what undoing takes back.
  search_->forgetTyping();
  source_.remove(place);
  refresh();
}

void BookmarkPanelView::undo() {
  const auto place = source_.restore();
  refresh();
  const auto back =
      place ? std::ranges::find(items_, Item{Item::Kind::link, *place}) : items_.end();
  if (back != items_.end())
    list_->setCurrentRow(static_cast<int>(back - items_.begin()));
}

void BookmarkPanelView::openAll() {
  std::vector<std::string> urls;
  for (const Item& item : items_)
    if (item.kind == Item::Kind::link && urls.size() < mostOpened)
      urls.push_back(bookmarkAt(settings_, item.place)->url);
  source_.open(urls);
}

void BookmarkPanelView::showWords() {
  const bool isEmpty = items_.empty();
  list_->setVisible(!isEmpty);
  empty_->setVisible(isEmpty);
  if (isEmpty && !query().isEmpty()) {
    const bool isAddress = query().contains('.') || query().contains(':');
    empty_->setSentence("magnifyingglass", worded("Nothing found"));
    empty_->setHint(
        isAddress ? utf8(translation(bookmarkRefusal(settings_, query().toStdString(), folder_)))
                  : worded("An address such as example.com can be added here."));
  } else if (isEmpty) {
    empty_->setSentence("bookmark.fill", worded("No links yet"));
    empty_->setHint(worded("Type or paste an address above, and press Return."));
  }
  undo_->setWhat(utf8(source_.removed()));
  const auto links = std::ranges::count(items_, Item::Kind::link, &Item::kind);
  openAll_->setVisible(folder_ && query().isEmpty() && links > 1);
}

void BookmarkPanelView::refresh() {
  const BookmarkSettings now = source_.settings();
  if (now != settings_) {
    // A name that is edited may stand elsewhere.
    if (nameEdit_ != nullptr)
      endRename({}, std::nullopt);
    settings_ = now;
  }
  if (folder_ && *folder_ >= settings_.folders.size())
    folder_.reset();
  setTitle(QString::fromStdString(source_.name()));
  const auto count = allBookmarks(settings_).size();
  setState(count == 0
               ? QString()
               : wordedPlural("{count} link", "{count} links", static_cast<long long>(count)));
  showItems();
  showWords();
}

} // namespace tavrin
