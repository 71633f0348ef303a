#pragma once

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// Bookmarks as browsers hand them to each other. Read are the Netscape bookmark file, an HTML page
/// that all of them export, the file in which Chromium and its relatives keep theirs ("Bookmarks"),
/// and the backup that Firefox makes ("bookmarks-2026-03-01.json"). Written is the first.
struct BookmarkImport {
  /// In the order of the file. Links of a browser's own folders (its bar, its menu) stand outside
  /// every folder; a folder inside another is titled after both, "Work / Board".
  BookmarkSettings found;
  /// Links that are no addresses of the web: scripts, the browser's own pages.
  std::size_t refused = 0;
};

/// No value for a file of none of these forms. Whatever the bytes, titles and addresses are UTF-8,
/// and at most `mostImported` links are read.
std::optional<BookmarkImport> readBookmarks(std::string_view file);
inline constexpr std::size_t mostImported = 20'000;

/// What became of links that were brought together.
struct BookmarkMerge {
  std::size_t added = 0;
  /// There already.
  std::size_t known = 0;
  /// For which there is no room.
  std::size_t left = 0;
};

/// Adds the links of `found` that are not there yet, each to the folder of its title, which is made
/// where there is none.
BookmarkMerge mergeBookmarks(BookmarkSettings& settings, const BookmarkSettings& found);

/// As a Netscape bookmark file.
std::string bookmarksPage(const BookmarkSettings& settings, std::string_view title);

} // namespace tavrin
