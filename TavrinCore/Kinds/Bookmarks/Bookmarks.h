#pragma once

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Bookmarks/WebAddress.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// Where a bookmark stands; without a folder among those outside all.
struct BookmarkPlace {
  std::optional<std::size_t> folder;
  std::size_t index = 0;
  bool operator==(const BookmarkPlace&) const = default;
};

inline constexpr std::size_t mostBookmarks = 500;
/// Code points.
inline constexpr std::size_t longestBookmarkTitle = 300;

/// Its title, else its site, else the address as it stands.
std::string displayTitle(const Bookmark& bookmark);

/// Null where nothing stands there.
const Bookmark* bookmarkAt(const BookmarkSettings& settings, const BookmarkPlace& place);

/// Those outside the folders, or those of one.
std::vector<BookmarkPlace> bookmarksIn(const BookmarkSettings& settings,
                                       std::optional<std::size_t> folder);
/// All, folder by folder.
std::vector<BookmarkPlace> allBookmarks(const BookmarkSettings& settings);
/// Those of which title, address and folder hold every word of `query`, those whose title begins
/// with it first.
std::vector<BookmarkPlace> findBookmarks(const BookmarkSettings& settings, std::string_view query);

/// Why a link cannot be added: a sentence for the user; empty where it can.
std::string_view bookmarkRefusal(const BookmarkSettings& settings, std::string_view address,
                                 std::optional<std::size_t> folder);
/// Adds a link at the end, unless there is a reason against it. Whether it did.
bool addBookmark(BookmarkSettings& settings, std::string_view address,
                 std::optional<std::size_t> folder);
/// An empty title shows the address. False where nothing stands there.
bool renameBookmark(BookmarkSettings& settings, const BookmarkPlace& place, std::string_view title);

/// A link that was taken away, and from where.
struct RemovedBookmark {
  Bookmark bookmark;
  BookmarkPlace place;
  /// By its title a folder is found that stands elsewhere by now.
  std::string folderTitle;
};
/// No value where nothing stands there.
std::optional<RemovedBookmark> removeBookmark(BookmarkSettings& settings,
                                              const BookmarkPlace& place);
/// Puts it back where it stood, or as near as may be: behind the last one where there are fewer by
/// now, outside every folder where its own is gone. Where it stands then.
BookmarkPlace restoreBookmark(BookmarkSettings& settings, const RemovedBookmark& removed);

} // namespace tavrin
