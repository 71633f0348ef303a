#include "TavrinSlot/Controllers/BookmarkWidget.h"

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkPanelView.h"

namespace tavrin {

void BookmarkWidgetController::start() {
  icons_.emplace(
      BookmarkIcons::Services{platform().runLoop(), platform().clock(),
                              [this]() -> HTTPClient& { return platform().http(); },
                              platform().fileManager().cachesFolder() / "tavrin" / "icons"});
  icons_->setEnabled(settings().showsIcons);
  icons_->onChange = [this] { refresh(); };
  names_.emplace(platform().runLoop(), [this]() -> HTTPClient& { return platform().http(); });
  names_->onName = [this](const std::string& url, const std::string& name) { call(url, name); };
}

void BookmarkWidgetController::stop() {
  removed_.clear();
  names_.reset();
  icons_.reset();
}

void BookmarkWidgetController::added(const std::string& url) {
  const auto known = std::erase_if(removed_, [&](const RemovedBookmark& each) {
    const auto address = WebAddress::from(each.bookmark.url);
    return address && address->key() == WebAddress::from(url)->key();
  });
  if (known > 0)
    refreshPanel();
  if (settings().fetchesNames)
    names_->fetch(url);
}

void BookmarkWidgetController::remove(const BookmarkPlace& place) {
  BookmarkSettings changed = settings();
  auto removed = removeBookmark(changed, place);
  if (!removed)
    return;
  removed_.push_back(std::move(*removed));
  save(changed);
}

std::optional<BookmarkPlace> BookmarkWidgetController::restore() {
  if (removed_.empty())
    return std::nullopt;
  BookmarkSettings changed = settings();
  const auto place = restoreBookmark(changed, removed_.back());
  removed_.pop_back();
  save(changed);
  return place;
}

void BookmarkWidgetController::call(const std::string& url, const std::string& name) {
  BookmarkSettings changed = settings();
  for (const auto& place : allBookmarks(changed)) {
    const Bookmark& bookmark = *bookmarkAt(changed, place);
    // Meanwhile its user may have called it something.
    if (bookmark.url == url && bookmark.title.empty())
      renameBookmark(changed, place, name);
  }
  if (changed != settings())
    save(changed);
}

void BookmarkWidgetController::widgetChanged() {
  icons_->setEnabled(settings().showsIcons);
}

void BookmarkWidgetController::open(const std::string& url) {
  if (const auto address = WebAddress::from(url))
    platform().workspace().open(address->url);
}

QColor BookmarkWidgetController::tint() const {
  return bookmarkTint;
}

AnyView BookmarkWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? bookmarkWideTile(
                             settings(), size,
                             [this](const std::string& url) { return icons_->icon(url); }, open_)
                       : bookmarkTileIcon(settings(), size);
}

PanelView* BookmarkWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new BookmarkPanelView(
      appearance,
      {.name = [this] { return widget().name; },
       .settings = [this] { return settings(); },
       .icon = [this](const std::string& url) { return icons_->icon(url); },
       .open =
           [this](const std::vector<std::string>& urls) {
             for (const auto& url : urls)
               open(url);
             context().panel.closeIfShown();
           },
       .copy = [this](const std::string& url) { platform().pasteboard().writeText(url); },
       .change = [this](const BookmarkSettings& changed) { save(changed); },
       .added = [this](const std::string& url) { added(url); },
       .remove = [this](const BookmarkPlace& place) { remove(place); },
       .removed = [this] { return removed_.empty() ? "" : displayTitle(removed_.back().bookmark); },
       .restore = [this] { return restore(); },
       .edit = context().onEdit});
}

} // namespace tavrin
