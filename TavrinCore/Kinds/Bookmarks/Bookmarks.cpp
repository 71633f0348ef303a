#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"

#include "TavrinCore/Text/FoldedWords.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>

namespace tavrin {

std::string displayTitle(const Bookmark& bookmark) {
  if (const auto title = trimmed(bookmark.title); !title.empty())
    return std::string(title);
  const auto address = WebAddress::from(bookmark.url);
  return address ? address->site() : bookmark.url;
}

const Bookmark* bookmarkAt(const BookmarkSettings& settings, const BookmarkPlace& place) {
  if (place.folder && *place.folder >= settings.folders.size())
    return nullptr;
  const auto& list = place.folder ? settings.folders[*place.folder].bookmarks : settings.bookmarks;
  return place.index < list.size() ? &list[place.index] : nullptr;
}

std::vector<BookmarkPlace> bookmarksIn(const BookmarkSettings& settings,
                                       std::optional<std::size_t> folder) {
  std::vector<BookmarkPlace> places;
  for (BookmarkPlace place{folder, 0}; bookmarkAt(settings, place) != nullptr; ++place.index)
    places.push_back(place);
  return places;
}

std::vector<BookmarkPlace> allBookmarks(const BookmarkSettings& settings) {
  auto places = bookmarksIn(settings, std::nullopt);
  for (std::size_t folder = 0; folder < settings.folders.size(); ++folder) {
    const auto some = bookmarksIn(settings, folder);
    places.insert(places.end(), some.begin(), some.end());
  }
  return places;
}

std::vector<BookmarkPlace> findBookmarks(const BookmarkSettings& settings, std::string_view query) {
  const std::string whole = foldedWords(query.substr(0, 200));
  const auto words = wordsOf(whole);
  std::vector<BookmarkPlace> first;
  std::vector<BookmarkPlace> others;
  if (words.empty())
    return first;
  for (const auto& place : allBookmarks(settings)) {
    const Bookmark& bookmark = *bookmarkAt(settings, place);
    const std::string title = foldedWords(displayTitle(bookmark));
    std::string searched = title + ' ' + foldedWords(bookmark.url.substr(0, WebAddress::longest));
    if (place.folder)
      searched += ' ' + foldedWords(settings.folders[*place.folder].title);
    if (std::ranges::all_of(words,
                            [&](const auto& word) { return searched.find(word) != searched.npos; }))
      (title.starts_with(whole) ? first : others).push_back(place);
  }
  first.insert(first.end(), others.begin(), others.end());
  return first;
}

std::string_view bookmarkRefusal(const BookmarkSettings& settings, std::string_view text,
                                 std::optional<std::size_t> folder) {
  if (const auto refusal = WebAddress::refusal(text); !refusal.empty())
    return refusal;
  if (folder && *folder >= settings.folders.size())
    return marked("The folder is gone.");
  const auto address = WebAddress::from(text);
  const auto places = allBookmarks(settings);
  const bool isThere = std::ranges::any_of(places, [&](const BookmarkPlace& place) {
    const auto other = WebAddress::from(bookmarkAt(settings, place)->url);
    return other && other->key() == address->key();
  });
  if (isThere)
    return marked("This address is here already.");
  return places.size() >= mostBookmarks ? marked("There is no room for more than 500 links.") : "";
}

bool addBookmark(BookmarkSettings& settings, std::string_view text,
                 std::optional<std::size_t> folder) {
  if (!bookmarkRefusal(settings, text, folder).empty())
    return false;
  (folder ? settings.folders[*folder].bookmarks : settings.bookmarks)
      .push_back({"", WebAddress::from(text)->url});
  return true;
}

bool renameBookmark(BookmarkSettings& settings, const BookmarkPlace& place,
                    std::string_view title) {
  if (bookmarkAt(settings, place) == nullptr)
    return false;
  auto& list = place.folder ? settings.folders[*place.folder].bookmarks : settings.bookmarks;
  list[place.index].title = oneLine(title, longestBookmarkTitle);
  return true;
}

std::optional<RemovedBookmark> removeBookmark(BookmarkSettings& settings,
                                              const BookmarkPlace& place) {
  const Bookmark* bookmark = bookmarkAt(settings, place);
  if (bookmark == nullptr)
    return std::nullopt;
  RemovedBookmark removed{*bookmark, place, {}};
  if (place.folder)
    removed.folderTitle = settings.folders[*place.folder].title;
  auto& list = place.folder ? settings.folders[*place.folder].bookmarks : settings.bookmarks;
  list.erase(list.begin() + static_cast<std::ptrdiff_t>(place.index));
  return removed;
}

BookmarkPlace restoreBookmark(BookmarkSettings& settings, const RemovedBookmark& removed) {
  BookmarkPlace place = removed.place;
  auto& folders = settings.folders;
  const auto isIts = [&](const BookmarkFolder& folder) {
    return folder.title == removed.folderTitle;
  };
  if (place.folder && (*place.folder >= folders.size() || !isIts(folders[*place.folder]))) {
    const auto found = std::ranges::find_if(folders, isIts);
    place.folder = found == folders.end()
                       ? std::nullopt
                       : std::optional(static_cast<std::size_t>(found - folders.begin()));
  }
  auto& list = place.folder ? folders[*place.folder].bookmarks : settings.bookmarks;
  const bool isElsewhere = removed.place.folder && !place.folder;
  place.index = isElsewhere ? list.size() : std::min(place.index, list.size());
  list.insert(list.begin() + static_cast<std::ptrdiff_t>(place.index), removed.bookmark);
  return place;
}

} // namespace tavrin
