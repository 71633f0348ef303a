#include "TavrinCore/Kinds/Bookmarks/BookmarkFiles.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinCore/Text/Text.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

/// As every browser exports it.
constexpr const char* page = R"HTML(<!DOCTYPE NETSCAPE-Bookmark-file-1>
<META HTTP-EQUIV="Content-Type" CONTENT="text/html; charset=UTF-8">
<TITLE>Bookmarks</TITLE>
<H1>Bookmarks Menu</H1>
<DL><p>
    <DT><A HREF="https://menu.example/" ADD_DATE="1700000000" ICON="data:image/png;base64,AA">Menu &amp; more</A>
    <DT><H3 ADD_DATE="1" PERSONAL_TOOLBAR_FOLDER="true">Bookmarks Toolbar</H3>
    <DL><p>
        <DT><A HREF="https://bar.example/a b">Zürich</A>
        <DT><H3>Work</H3>
        <DL><p>
            <DT><A HREF="https://work.example/">Work</A>
            <DT><H3>Board</H3>
            <DL><p>
                <DT><A HREF="https://board.example/">Board</A>
            </DL><p>
            <DT><A HREF="javascript:alert(1)">Bookmarklet</A>
        </DL><p>
    </DL><p>
    <DT><A HREF="https://last.example/">Last</A>
</DL><p>
)HTML";

constexpr const char* chromiumFile = R"({"checksum": "x", "roots": {
  "synced": {"children": [], "name": "Mobile", "type": "folder"},
  "other": {"children": [{"name": "Other", "type": "url", "url": "https://other.example/"}],
            "name": "Other bookmarks", "type": "folder"},
  "bookmark_bar": {"name": "Bookmarks bar", "type": "folder", "children": [
    {"name": "Bar", "type": "url", "url": "https://bar.example/"},
    {"name": "Work", "type": "folder", "children": [
      {"name": "Deep", "type": "folder", "children": [
        {"name": "One", "type": "url", "url": "https://one.example/"}]},
      {"name": "Page", "type": "url", "url": "chrome://settings/"}]}]}},
  "version": 1})";

constexpr const char* firefoxFile =
    R"({"guid": "root________", "type": "text/x-moz-place-container",
  "root": "placesRoot", "children": [
    {"title": "menu", "type": "text/x-moz-place-container", "root": "bookmarksMenuFolder", "children": [
      {"title": "Menu", "type": "text/x-moz-place", "uri": "https://menu.example/"},
      {"type": "text/x-moz-place-separator"},
      {"title": "Work", "type": "text/x-moz-place-container", "children": [
        {"title": "One", "type": "text/x-moz-place", "uri": "https://one.example/"}]}]},
    {"title": "toolbar", "type": "text/x-moz-place-container", "root": "toolbarFolder", "children": [
      {"title": "", "type": "text/x-moz-place", "uri": "place:sort=8"}]}]})";

TEST(BookmarkFiles, EveryBrowsersExportIsRead) {
  const auto html = readBookmarks(page);
  ASSERT_TRUE(html);
  EXPECT_EQ(html->found.bookmarks, (std::vector<Bookmark>{{"Menu & more", "https://menu.example/"},
                                                          {"Zürich", "https://bar.example/a%20b"},
                                                          {"Last", "https://last.example/"}}));
  EXPECT_EQ(html->found.folders,
            (std::vector<BookmarkFolder>{{"Work", {{"Work", "https://work.example/"}}},
                                         {"Work / Board", {{"Board", "https://board.example/"}}}}));
  EXPECT_EQ(html->refused, 1U);

  const auto chromium = readBookmarks(chromiumFile);
  ASSERT_TRUE(chromium);
  EXPECT_EQ(chromium->found.bookmarks,
            (std::vector<Bookmark>{{"Bar", "https://bar.example/"},
                                   {"Other", "https://other.example/"}}));
  EXPECT_EQ(chromium->found.folders,
            (std::vector<BookmarkFolder>{{"Work / Deep", {{"One", "https://one.example/"}}}}));
  EXPECT_EQ(chromium->refused, 1U);

  const auto firefox = readBookmarks(firefoxFile);
  ASSERT_TRUE(firefox);
  EXPECT_EQ(firefox->found.bookmarks, (std::vector<Bookmark>{{"Menu", "https://menu.example/"}}));
  EXPECT_EQ(firefox->found.folders,
            (std::vector<BookmarkFolder>{{"Work", {{"One", "https://one.example/"}}}}));
  EXPECT_EQ(firefox->refused, 1U);
}

TEST(BookmarkFiles, WhatIsNoneIsRefused) {
  for (const char* text : {"", " \n", "{", "{}", "[]", "{\"roots\": 7}", "{\"children\": []}",
                           "plain words", "<html><a href='https://a.example'>x</a></html>"})
    EXPECT_FALSE(readBookmarks(text)) << text;
  std::string deep;
  for (int i = 0; i < 5000; ++i)
    deep += "<DL><DT><H3>x</H3>";
  EXPECT_TRUE(readBookmarks(deep)) << "read as far as it goes";
  const auto latin = readBookmarks("<DL><DT><A HREF=https://a.example>M\xFCnchen</A>");
  ASSERT_TRUE(latin);
  EXPECT_EQ(latin->found.bookmarks.at(0).title, "München");
}

TEST(BookmarkFiles, WhatIsWrittenIsReadAgain) {
  BookmarkSettings settings;
  settings.bookmarks = {{"A <b> & \"c\"", "https://a.example/?x=1&y=2"}};
  settings.folders = {{"F & G", {{"One", "https://one.example/"}}}};
  const auto again = readBookmarks(bookmarksPage(settings, "Links <x>"));
  ASSERT_TRUE(again);
  EXPECT_EQ(again->found, settings);
}

TEST(BookmarkFiles, AMergeAddsWhatIsNew) {
  BookmarkSettings settings;
  settings.bookmarks = {{"Mine", "https://menu.example"}};
  settings.folders = {{"Work", {}}};
  const auto merge = mergeBookmarks(settings, readBookmarks(page)->found);
  EXPECT_EQ(merge.added, 4U);
  EXPECT_EQ(merge.known, 1U);
  EXPECT_EQ(settings.bookmarks.front().title, "Mine") << "one's own name stays";
  EXPECT_EQ(settings.folders[0].bookmarks.size(), 1U);
  EXPECT_EQ(settings.folders.size(), 2U);
  BookmarkSettings many;
  for (int i = 0; i < 600; ++i)
    many.bookmarks.push_back({"", fmt::format("https://example.com/{}", i)});
  const auto full = mergeBookmarks(settings, many);
  EXPECT_EQ(allBookmarks(settings).size(), mostBookmarks);
  EXPECT_EQ(full.left, 600 - full.added);
}

} // namespace
} // namespace tavrin
