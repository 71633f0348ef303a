#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct Bookmark {
  /// Empty shows the address.
  std::string title;
  std::string url;

  static constexpr auto fields() {
    return std::tuple{optional("title", &Bookmark::title)
                          .titled("Title")
                          .helped("What the bookmark is called; without one its address is shown.")
                          .absentAs("The address"),
                      required("url", &Bookmark::url)
                          .titled("Address")
                          .helped("Where the bookmark leads: a page on the web.")
                          .as(FieldRole::link)};
  }
  bool operator==(const Bookmark&) const = default;
};

struct BookmarkFolder {
  std::string title;
  std::vector<Bookmark> bookmarks;

  static constexpr auto fields() {
    return std::tuple{required("title", &BookmarkFolder::title)
                          .titled("Title")
                          .helped("What the folder is called in the panel."),
                      optional("bookmarks", &BookmarkFolder::bookmarks)
                          .titled("Bookmarks")
                          .helped("The bookmarks in this folder, in the order of the panel.")};
  }
  bool operator==(const BookmarkFolder&) const = default;
};

struct BookmarkSettings {
  static constexpr std::string_view kindKey = "bookmarks";

  /// Those outside every folder.
  std::vector<Bookmark> bookmarks;
  std::vector<BookmarkFolder> folders;
  /// Fetches each site's icon once.
  bool showsIcons = true;
  /// Asks the page of a link that is added for its name.
  bool fetchesNames = true;

  static constexpr auto fields() {
    return std::tuple{
        optional("bookmarks", &BookmarkSettings::bookmarks)
            .titled("Bookmarks")
            .helped("Those outside every folder, in the order of the tile and the panel."),
        optional("folders", &BookmarkSettings::folders)
            .titled("Folders")
            .helped("Bookmarks that belong together, under a title of their own."),
        optional("showsIcons", &BookmarkSettings::showsIcons)
            .titled("Show icons")
            .helped("Fetches each site's icon once and shows it beside the bookmark."),
        optional("fetchesNames", &BookmarkSettings::fetchesNames)
            .titled("Fetch names")
            .helped("Asks the page of a bookmark that is added for its name.")};
  }
  bool operator==(const BookmarkSettings&) const = default;
};

} // namespace tavrin
