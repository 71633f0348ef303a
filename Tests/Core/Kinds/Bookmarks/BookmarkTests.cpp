#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinCore/Text/FoldedWords.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(WebAddress, TakesWhatPeopleTypeAndNothingElse) {
  struct Case {
    std::string text;
    std::string url;
    std::string origin;
  };
  for (const auto& [text, url, origin] : {
           Case{"example.com", "https://example.com", "https://example.com"},
           Case{" HTTP://Example.com:8080/Path?q=1#x ", "http://example.com:8080/Path?q=1#x",
                "http://example.com:8080"},
           Case{"https://MÜNCHEN.example/ä", "https://xn--mnchen-3ya.example/%C3%A4",
                "https://xn--mnchen-3ya.example"},
           Case{"example.com/two words?a b='c'&d=ä#e f",
                "https://example.com/two%20words?a%20b=%27c%27&d=%C3%A4#e%20f",
                "https://example.com"},
           Case{"https://a.com/\"><script>{x}`^", "https://a.com/%22%3E%3Cscript%3E%7Bx%7D%60%5E",
                "https://a.com"},
           Case{"https://a.com/%41%20|?\"<>#\"<>`", "https://a.com/%41%20|?%22%3C%3E#%22%3C%3E%60",
                "https://a.com"},
           Case{"https://a.com\\b", "https://a.com/b", "https://a.com"},
           Case{"https://a.com:443/", "https://a.com/", "https://a.com"},
           Case{"http://a.com:80/", "http://a.com/", "http://a.com"},
           Case{"http://a.com:0443", "http://a.com:443", "http://a.com:443"},
           Case{"https://a.com/?u=http://b@c", "https://a.com/?u=http://b@c", "https://a.com"},
           Case{"http://[2606:2800::1]:81/", "http://[2606:2800::1]:81/",
                "http://[2606:2800::1]:81"},
           Case{"http://localhost/", "http://localhost/", "http://localhost"},
           Case{"https://example.com?x", "https://example.com?x", "https://example.com"},
       }) {
    const auto address = WebAddress::from(text);
    ASSERT_TRUE(address) << text;
    EXPECT_EQ(address->url, url);
    EXPECT_EQ(address->origin(), origin);
    EXPECT_EQ(WebAddress::from(address->url)->url, url) << "encoded once";
    EXPECT_TRUE(WebAddress::refusal(text).empty());
  }
  for (const std::string& text :
       {std::string(), std::string("word"), std::string("two words.com"),
        std::string("javascript:alert(1)"), std::string("file:///etc/passwd"),
        std::string("ftp://example.com"), std::string("https://"),
        std::string("https://user@evil.com"), std::string("https://bank.com@evil.com/"),
        std::string("https://a..b"), std::string("https://a:port/"), std::string("https://a\n.com"),
        std::string("a.com\x01"), std::string("\xff.com"), std::string("https://[::1"),
        std::string("https://a<b.com"), std::string("https://a.com:65536/"),
        "https://a.com/" + std::string(2048, 'x')})
    EXPECT_FALSE(WebAddress::from(text)) << text;
  EXPECT_EQ(WebAddress::from("https://www.münchen.example")->site(), "münchen.example");
}

TEST(WebAddress, SaysWhyItRefuses) {
  for (const auto& [text, word] : std::initializer_list<std::pair<std::string, const char*>>{
           {"word", "not an address"},
           {"ftp://example.com", "http or https"},
           {"https://user@evil.com", "user's name"},
           {"https://a..b", "no site"},
           {"https://a.com:99999", "port"},
           {"https://a.com/" + std::string(2048, 'x'), "longer"},
           {"https://a.com/" + std::string(700, ' ') + 'x', "longer"}})
    EXPECT_NE(WebAddress::refusal(text).find(word), std::string_view::npos) << text;
}

BookmarkSettings library() {
  BookmarkSettings settings;
  settings.bookmarks = {{"Zürich Wetter", "https://wetter.example"},
                        {"", "https://www.news.example/"}};
  settings.folders = {{"Work", {{"Board", "https://board.example"}, {"", "nonsense"}}},
                      {"Empty", {}}};
  return settings;
}

TEST(Bookmarks, AreFoundByTitleAddressAndFolder) {
  const auto settings = library();
  const auto titles = [&](std::string_view query) {
    std::vector<std::string> found;
    for (const auto& place : findBookmarks(settings, query))
      found.push_back(displayTitle(*bookmarkAt(settings, place)));
    return found;
  };
  using Titles = std::vector<std::string>;
  EXPECT_EQ(titles("zurich"), (Titles{"Zürich Wetter"}));
  EXPECT_EQ(titles("WORK"), (Titles{"Board", "nonsense"}));
  EXPECT_EQ(titles("example board"), (Titles{"Board"}));
  EXPECT_EQ(titles("news"), (Titles{"news.example"}));
  EXPECT_EQ(titles("example").size(), 3U);
  EXPECT_TRUE(titles("").empty());
  EXPECT_TRUE(titles("nothing").empty());
  EXPECT_EQ(allBookmarks(settings).size(), 4U);
  EXPECT_EQ(bookmarkAt(settings, {1, 0}), nullptr);
  EXPECT_EQ(bookmarkAt(settings, {7, 0}), nullptr);
}

TEST(Bookmarks, AreAddedOnceAndRemoved) {
  auto settings = library();
  EXPECT_TRUE(addBookmark(settings, "new.example", std::nullopt));
  EXPECT_FALSE(addBookmark(settings, "https://new.example", 0)) << "it is there already";
  EXPECT_FALSE(addBookmark(settings, "no address", std::nullopt));
  EXPECT_FALSE(addBookmark(settings, "other.example", 5));
  EXPECT_EQ(bookmarkRefusal(settings, "https://new.example/", 0), "This address is here already.");
  EXPECT_FALSE(renameBookmark(settings, {1, 0}, "x")) << "nothing stands there yet";
  EXPECT_TRUE(addBookmark(settings, "other.example", 1));
  EXPECT_TRUE(renameBookmark(settings, {1, 0}, " Two\nlines "));
  EXPECT_EQ(settings.folders[1].bookmarks[0].title, "Two lines");
  EXPECT_EQ(settings.folders[1].bookmarks.at(0).url, "https://other.example");
  removeBookmark(settings, {std::nullopt, 0});
  EXPECT_EQ(settings.bookmarks.at(0).url, "https://www.news.example/");
  const auto before = settings;
  removeBookmark(settings, {std::nullopt, 99});
  EXPECT_EQ(settings, before);
  while (allBookmarks(settings).size() < mostBookmarks)
    settings.bookmarks.push_back({"", "x"});
  EXPECT_FALSE(addBookmark(settings, "toomany.example", std::nullopt));
}

TEST(Bookmarks, WhatWasRemovedComesBackWhereItStoodOrAsNearAsMayBe) {
  BookmarkSettings settings;
  settings.bookmarks = {{"A", "https://a.example"}, {"B", "https://b.example"}};
  settings.folders = {{"Home", {}}, {"Work", {{"C", "https://c.example"}, {"D", "javascript:1"}}}};
  const auto before = settings;
  const auto first = removeBookmark(settings, {std::nullopt, 0});
  const auto second = removeBookmark(settings, {1, 1});
  ASSERT_TRUE(first && second);
  EXPECT_FALSE(removeBookmark(settings, {std::nullopt, 99}));
  auto elsewhere = settings;
  EXPECT_EQ(restoreBookmark(settings, *second), (BookmarkPlace{1, 1}));
  EXPECT_EQ(restoreBookmark(settings, *first), (BookmarkPlace{std::nullopt, 0}));
  EXPECT_EQ(settings, before);
  // Others have changed the list meanwhile.
  elsewhere.folders.erase(elsewhere.folders.begin());
  elsewhere.folders[0].bookmarks.clear();
  EXPECT_EQ(restoreBookmark(elsewhere, *second), (BookmarkPlace{0, 0})) << "by the folder's title";
  elsewhere.folders.clear();
  EXPECT_EQ(restoreBookmark(elsewhere, *second), (BookmarkPlace{std::nullopt, 1}));
  EXPECT_EQ(restoreBookmark(elsewhere, *first), (BookmarkPlace{std::nullopt, 0}));
}

TEST(FoldedWords, AreComparable) {
  EXPECT_EQ(foldedWords("  Crème  BRÛLÉE! "), "creme brulee");
  EXPECT_EQ(foldedWords("Straße"), "strasse");
  EXPECT_EQ(foldedWords("flag: Côte d’Ivoire"), "flag cote d ivoire");
  EXPECT_EQ(wordsOf("a bc d"), (std::vector<std::string>{"a", "bc", "d"}));
  EXPECT_TRUE(wordsOf("").empty());
}

} // namespace
} // namespace tavrin
