#pragma once

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// An address of the web, taken apart.
struct WebAddress {
  /// The whole, with its scheme: what a browser is to open.
  std::string url;
  bool isSecure = true;
  /// In lower case, without port and user.
  std::string host;
  /// With what follows the host's name up to the path: ":8080"; empty for the usual one.
  std::string port;

  /// From what somebody typed or kept: "example.com/a" is taken for https. No value for other
  /// schemes, for blanks and controls inside, and beyond 2048 bytes.
  static std::optional<WebAddress> from(std::string_view text);

  /// Where the host's files begin: "https://example.com:8080".
  std::string origin() const;
  /// The host without "www.".
  std::string site() const;
};

/// Where a bookmark stands; without a folder among those outside all.
struct BookmarkPlace {
  std::optional<std::size_t> folder;
  std::size_t index = 0;
  bool operator==(const BookmarkPlace&) const = default;
};

inline constexpr std::size_t mostBookmarks = 500;

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

/// Adds a link at the end, unless it is there already, is no address, or there are too many.
/// Whether it did.
bool addBookmark(BookmarkSettings& settings, std::string_view address,
                 std::optional<std::size_t> folder);
void removeBookmark(BookmarkSettings& settings, const BookmarkPlace& place);

} // namespace tavrin
