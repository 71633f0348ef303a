#include "TavrinCore/Kinds/Clipboard/PagePreview.h"

#include "TavrinCore/Text/CharacterSet.h"
#include "TavrinCore/Text/HTMLReader.h"
#include "TavrinCore/Text/Text.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

PagePreview read(const std::string& page, const std::string& type = "text/html") {
  return readPagePreview(page, type);
}

TEST(PagePreview, OpenGraphGoesBeforeTheCardAndThatBeforeThePage) {
  const std::string page = "<title>Page</title><meta name=description content='of page'>"
                           "<link rel='shortcut icon' href=/icon.png>";
  EXPECT_EQ(read(page), (PagePreview{"Page", "of page", "/icon.png"}));
  const std::string card = "<meta name=twitter:title content=Card>"
                           "<meta name='Twitter:Description' content='of card'>"
                           "<meta name=twitter:image content=card.png>";
  EXPECT_EQ(read(page + card), (PagePreview{"Card", "of card", "card.png"}));
  const std::string graph = "<META PROPERTY=\"og:title\" CONTENT=\"Graph\" />"
                            "<meta property='og:description'content='of graph'/>"
                            "<meta property=og:image content=graph.png>"
                            "<meta property=og:image content=second.png>";
  const PagePreview whole{"Graph", "of graph", "graph.png"};
  EXPECT_EQ(read(page + card + graph), whole);
  EXPECT_EQ(read(graph + card + page), whole);
  EXPECT_EQ(read("<meta property=og:title content=' '>" + page).title, "Page");
  EXPECT_EQ(read("<meta property=og:site_name content=Site>").title, "Site");
  EXPECT_EQ(read(graph + "<meta property=og:image:secure_url content=https://x/y>").image,
            "https://x/y");
}

TEST(PagePreview, ReadsWhatBrowsersRead) {
  const std::pair<const char*, const char*> titles[] = {
      {"<title>A</title>", "A"},
      {"<TITLE lang=en>A\n  b\t</Title >", "A b"},
      {"<title>a < b & c</title>", "a < b & c"},
      {"<title><b>bold</b></title>", "<b>bold</b>"},
      {"<!-- <title>no</title> --><title>yes</title>", "yes"},
      {"<!--><title>yes</title>", "yes"},
      {"<!doctype html><?xml x?><html><head><title>yes", "yes"},
      {"<script>'<title>no</title>'</script><title>yes</title>", "yes"},
      {"<script>a</scripty><title>no</title></SCRIPT><title>yes</title>", "yes"},
      {"<style>x{content:'<title>no</title>'}</style><title>yes</title>", "yes"},
      {"<svg><title>no</title></svg><title>yes</title>", "yes"},
      {"<title>first</title><title>second</title>", "first"},
      {"<p a=\"<title>no</title>\"><title>yes</title>", "yes"},
      {"<p a=b\"><title>yes</title>", "yes"},
      {"< title>no</title>1 < 2 <title>yes</title>", "yes"},
      {"<p / a / = ><title>yes</title>", "yes"},
      {"<title></title><meta name=title content=yes>", "yes"},
      {"", ""},
      {"<", ""},
      {"<title", ""},
      {"<title>", ""},
      {"<!--", ""},
      {"<script><title>no</title>", ""},
      {"<meta property=og:title content='never closed", "never closed"}};
  for (const auto& [page, title] : titles)
    EXPECT_EQ(read(page).title, title) << page;
}

TEST(PagePreview, Entities) {
  const std::pair<const char*, const char*> cases[] = {
      {"&amp;&lt;&gt;&quot;&apos;", "&<>\"'"},
      {"caf&eacute; &Agrave; &yuml;&nbsp;&szlig;", "café À ÿ\u00A0ß"},
      {"&#233;&#xE9;&#XE9;&#0233", "éééé"},
      {"&#8217;&rsquo;&hellip;&mdash;&euro;", "’’…—€"},
      {"&#146;&#128;", "’€"},
      {"&#0;&#xD800;&#x110000;&#99999999999;", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"&#x1F600;", "😀"},
      {"a & b &c; &; &# &#x; &unknown; &", "a & b &c; &; &# &#x; &unknown; &"},
      {"fish &amp chips", "fish & chips"},
      {"?a=1&copy=2&lt=3&amp=4&amp;b", "?a=1&copy=2&lt=3&amp=4&b"},
      {"&amp;lt;", "&lt;"}};
  for (const auto& [text, wanted] : cases)
    EXPECT_EQ(withoutEntities(text), wanted) << text;
  EXPECT_EQ(read("<meta property=og:image content='/p?a=1&amp;b=2'>").image, "/p?a=1&b=2");
}

TEST(PagePreview, HonoursTheCharacterSet) {
  struct Case {
    const char* why;
    std::string page;
    std::string type;
    std::string title;
  };
  const std::string sjis = "\x93\xFA\x96\x7B";
  const std::string koi8 = "\xF0\xD2\xC9\xD7\xC5\xD4";
  const std::string latin = "caf\xE9 \x93quoted\x94";
  using namespace std::string_literals;
  const Case cases[] = {
      {"header", "<title>" + sjis + "</title>", "text/html; charset=Shift_JIS", "日本"},
      {"quoted header", "<title>" + koi8 + "</title>", "text/html;CharSet = \"koi8-r\"; x",
       "Привет"},
      {"meta", "<meta charset=\"koi8-r\"><title>" + koi8 + "</title>", "text/html", "Привет"},
      {"old meta",
       "<meta http-equiv='Content-Type' content='text/html; charset=shift_jis'><title>" + sjis, "",
       "日本"},
      {"header before meta", "<meta charset=koi8-r><title>é</title>", "text/html; charset=utf-8",
       "é"},
      {"unknown header", "<meta charset=koi8-r><title>" + koi8, "text/html; charset=klingon",
       "Привет"},
      {"mark before header", "\xEF\xBB\xBF<title>é</title>", "text/html; charset=koi8-r", "é"},
      {"UTF-16", "\xFF\xFE<\0t\0i\0t\0l\0e\0>\0\xE9\0"s, "text/html", "é"},
      {"UTF-16 by name only", "<meta charset=utf-16><title>é</title>", "", "é"},
      {"Latin-1 means windows-1252", "<title>" + latin, "text/html; charset=ISO-8859-1",
       "café “quoted”"},
      {"nothing said, UTF-8", "<title>日本</title>", "", "日本"},
      {"nothing said, cut off", "<title>日本</title>\xE6\x97", "", "日本"},
      {"nothing said, not UTF-8", "<title>" + latin + "</title>", "", "café “quoted”"},
      {"GB2312 means its successor", "<meta charset=gb2312><title>\x96\x7C</title>", "", "東"},
      {"broken UTF-8", "<title>a\xFF\xC3z</title>", "text/html; charset=utf-8", "a\uFFFD\uFFFDz"},
      {"odd names", "<title>é</title>", "text/html; charset=../../x,swaplfnl", "é"}};
  for (const auto& each : cases)
    EXPECT_EQ(read(each.page, each.type).title, each.title) << each.why;
}

TEST(PagePreview, IsBounded) {
  const auto page =
      read("<title>" + std::string(5'000, 'x') + "</title><meta name=description content='" +
           std::string(5'000, 'y') + "'><meta property=og:image content='http://x/" +
           std::string(5'000, 'z') + "'><base href='/b'><base href='/c'>");
  EXPECT_EQ(page.title.size(), PagePreview::longestTitle);
  EXPECT_EQ(page.description.size(), PagePreview::longestDescription);
  EXPECT_EQ(page.image, "") << "a part of an address is another address";
  EXPECT_EQ(page.base, "/b");
}

TEST(PagePreview, HostileLengthsTakeNoLongerThanOthers) {
  for (const char* piece : {"<", "<a ", "<title>", "</title", "<title></x", "<!--", "<script>",
                            "&amp", "<a b='", "<meta a=b c=d ", "<svg>", "&#"}) {
    std::string page;
    while (page.size() < 512 * 1024)
      page += piece;
    EXPECT_TRUE(isUTF8(read(page).title)) << piece;
  }
}

TEST(CharacterSet, NamesInContentTypes) {
  const std::pair<const char*, const char*> cases[] = {{"text/html; charset=utf-8", "utf-8"},
                                                       {"text/html;charset='x y'", "x y"},
                                                       {"text/html; charset=a;b", "a"},
                                                       {"charset", ""},
                                                       {"charset=", ""},
                                                       {"charset=\"open", "open"},
                                                       {"text/html", ""},
                                                       {"", ""}};
  for (const auto& [type, name] : cases)
    EXPECT_EQ(characterSetIn(type), name) << type;
  EXPECT_FALSE(textFrom("x", "klingon"));
  EXPECT_FALSE(textFrom("x", ""));
}

} // namespace
} // namespace tavrin::test
