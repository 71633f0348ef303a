#include "TavrinCore/Kinds/GitHub/GitHubQuery.h"
#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/Text.h"
#include "Tests/Support/HostileTexts.h"

#include <gtest/gtest.h>
#include <regex>

namespace tavrin {
namespace {

TEST(ForeignText, WhatSteersIsShownAndNotObeyed) {
  struct Case {
    std::string text;
    std::string plain;
    std::string printed;
  };
  const Case cases[] = {
      {"Übergröße, שלום, 日本 👩‍💻", "Übergröße, שלום, 日本 👩‍💻",
       "Übergröße, שלום, 日本 👩‍💻"},
      {"a\nb\tc", "a\nb c", "a⏎b c"},
      {"a\u202Egpj.exe", "a\uFFFDgpj.exe", "a\uFFFDgpj.exe"},
      {"\u2066a\u2069", "\uFFFDa\uFFFD", "\uFFFDa\uFFFD"},
      {"a\u200F\u200E\uFEFFb", "ab", "ab"},
      {"\x1b[2Jx\r", "\uFFFD[2Jx\uFFFD", "\uFFFD[2Jx\uFFFD"},
      {std::string("a\0b", 3), "a\uFFFDb", "a\uFFFDb"},
      {"\u009Bx\u2028", "\uFFFDx\uFFFD", "\uFFFDx\uFFFD"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(plainText(each.text), each.plain);
    EXPECT_EQ(printable(each.text), each.printed);
  }
  EXPECT_EQ(plainText("abcd", 3), "abc…");
  EXPECT_EQ(plainText("abc", 3), "abc");
  EXPECT_EQ(markupEscaped("<b>a & b</b>"), "&lt;b&gt;a &amp; b&lt;/b&gt;");
}

TEST(ForeignText, NoHostileTextIsInterpreted) {
  const std::regex literal(R"rx("([^"\\\x00-\x1f]|\\["\\]|\\u00[0-9a-f]{2})*")rx",
                           std::regex::optimize);
  for (const std::string& text : hostileTexts(10'000)) {
    const std::string plain = plainText(text);
    const std::string line = printable(text);
    for (const std::string* shown : {&plain, &line}) {
      EXPECT_TRUE(isUTF8(*shown));
      for (const char* steering :
           {"\x1b", "\r", "\x07", "\u202E", "\u2066", "\u200F", "\u2028", "\u009B", "\uFEFF"})
        ASSERT_EQ(shown->find(steering), std::string::npos) << *shown;
      ASSERT_EQ(shown->find('\0'), std::string::npos);
    }
    ASSERT_EQ(line.find('\n'), std::string::npos);
    ASSERT_EQ(markupEscaped(text).find_first_of("<>"), std::string::npos);
    // The whole is one string of a query; a megabyte would only take the expression's stack.
    if (text.size() < 1000) {
      ASSERT_TRUE(std::regex_match(GitHubQuery::quoted(text), literal)) << text;
    }
  }
}

} // namespace
} // namespace tavrin
