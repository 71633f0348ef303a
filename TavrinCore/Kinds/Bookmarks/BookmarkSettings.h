#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct Bookmark {
  /// Empty shows the address.
  std::string title;
  std::string url;

  static constexpr auto fields() {
    return std::tuple{optional("title", &Bookmark::title).titled("Title"),
                      required("url", &Bookmark::url).titled("Address")};
  }
  bool operator==(const Bookmark&) const = default;
};

struct BookmarkFolder {
  std::string title;
  std::vector<Bookmark> bookmarks;

  static constexpr auto fields() {
    return std::tuple{required("title", &BookmarkFolder::title).titled("Title"),
                      optional("bookmarks", &BookmarkFolder::bookmarks).titled("Bookmarks")};
  }
  bool operator==(const BookmarkFolder&) const = default;
};

struct BookmarkSettings {
  /// Those outside every folder.
  std::vector<Bookmark> bookmarks;
  std::vector<BookmarkFolder> folders;
  /// Fetches each site's icon once.
  bool showsIcons = true;

  static constexpr auto fields() {
    return std::tuple{optional("bookmarks", &BookmarkSettings::bookmarks).titled("Bookmarks"),
                      optional("folders", &BookmarkSettings::folders).titled("Folders"),
                      optional("showsIcons", &BookmarkSettings::showsIcons).titled("Show icons")};
  }
  bool operator==(const BookmarkSettings&) const = default;
};

} // namespace tavrin
