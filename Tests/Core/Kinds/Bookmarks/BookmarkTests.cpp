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
           Case{" HTTP://Example.com:8080/Path?q=1#x ", "http://Example.com:8080/Path?q=1#x",
                "http://example.com:8080"},
           Case{"https://münchen.example/ä", "https://münchen.example/ä",
                "https://münchen.example"},
           Case{"http://[2606:2800::1]:81/", "http://[2606:2800::1]:81/",
                "http://[2606:2800::1]:81"},
           Case{"http://localhost/", "http://localhost/", "http://localhost"},
           Case{"https://example.com?x", "https://example.com?x", "https://example.com"},
       }) {
    const auto address = WebAddress::from(text);
    ASSERT_TRUE(address) << text;
    EXPECT_EQ(address->url, url);
    EXPECT_EQ(address->origin(), origin);
  }
  for (const std::string& text :
       {std::string(), std::string("word"), std::string("two words.com"),
        std::string("javascript:alert(1)"), std::string("file:///etc/passwd"),
        std::string("ftp://example.com"), std::string("https://"),
        std::string("https://user@evil.com"), std::string("https://bank.com@evil.com/"),
        std::string("https://a..b"), std::string("https://a:port/"), std::string("https://a\n.com"),
        std::string("a.com\x01"), std::string("https://a.com/\"><script>"), std::string("\xff.com"),
        "https://a.com/" + std::string(2048, 'x')})
    EXPECT_FALSE(WebAddress::from(text)) << text;
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
  EXPECT_TRUE(addBookmark(settings, "other.example", 1));
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

TEST(FoldedWords, AreComparable) {
  EXPECT_EQ(foldedWords("  Crème  BRÛLÉE! "), "creme brulee");
  EXPECT_EQ(foldedWords("Straße"), "strasse");
  EXPECT_EQ(foldedWords("flag: Côte d’Ivoire"), "flag cote d ivoire");
  EXPECT_EQ(wordsOf("a bc d"), (std::vector<std::string>{"a", "bc", "d"}));
  EXPECT_TRUE(wordsOf("").empty());
}

} // namespace
} // namespace tavrin
