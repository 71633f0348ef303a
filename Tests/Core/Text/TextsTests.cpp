#include "TavrinCore/Text/DecimalText.h"
#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/TextCatalogue.h"
#include "TavrinCore/Text/Texts.h"
#include "Tests/Support/InLanguage.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace tavrin {
namespace {

using Lines = test::CatalogueLines;
using test::InLanguage;

const Lines german = {
    {"", "Content-Type: text/plain; charset=UTF-8\nPlural-Forms: nplurals=2; plural=n != 1;\n"},
    {"Play", "Abspielen"},
    {"Delete “{name}”?", "„{name}“ löschen?"},
    {"Lacks {name}", "Ohne Namen"},
    {"Plain", "{surprise}"},
    {"{done} of {all}", "{all}, davon {done}"},
    {"verb\x04Open", "Öffnen"},
    {"state\x04Open", "Offen"},
    {std::string("{count} file\0{count} files", 25),
     std::string("Eine Datei\0{count} Dateien", 26)}};

TEST(Texts, AreEnglishWithoutACatalogue) {
  EXPECT_EQ(translated("Play"), "Play");
  EXPECT_EQ(translated("Delete “{name}”? {other}", {{"name", "{other}"}}),
            "Delete “{other}”? {other}");
  EXPECT_EQ(plural("{count} file", "{count} files", 1), "1 file");
  EXPECT_EQ(plural("{count} file in {folder}", "{count} files in {folder}", 2, {{"folder", "a"}}),
            "2 files in a");
  EXPECT_EQ(translatedIn("verb", "Open"), "Open");
  EXPECT_EQ(translated(""), "");
  EXPECT_EQ(textLanguage(), "en");
}

TEST(Texts, AreTheCataloguesInEitherByteOrder) {
  for (const bool isSwapped : {false, true}) {
    const InLanguage language(german, "de", isSwapped);
    EXPECT_EQ(translated("Play"), "Abspielen");
    EXPECT_EQ(translation("Stop"), "Stop");
    EXPECT_EQ(translated(""), "");
    EXPECT_EQ(translated("Delete “{name}”?", {{"name", "Tee"}}), "„Tee“ löschen?");
    EXPECT_EQ(translated("{done} of {all}", {{"done", 3}, {"all", 4}}), "4, davon 3");
    EXPECT_EQ(translatedIn("verb", "Open"), "Öffnen");
    EXPECT_EQ(translatedIn("state", "Open"), "Offen");
    EXPECT_EQ(translatedIn("noun", "Open"), "Open");
    EXPECT_EQ(plural("{count} file", "{count} files", 1), "Eine Datei");
    EXPECT_EQ(plural("{count} file", "{count} files", -5), "-5 Dateien");
    EXPECT_EQ(textLanguage(), "de");
    EXPECT_FALSE(isRightToLeft());
  }
}

TEST(Texts, NumbersHaveTheLanguagesSeparatorAndPlainDigits) {
  EXPECT_EQ(decimalText(8.46, 1), "8.5");
  EXPECT_EQ(translated("{half} of {all}", {{"half", 0.5}, {"all", 1234567}}), "0.5 of 1234567");
  {
    const InLanguage language(german, "de");
    EXPECT_EQ(decimalText(8.46, 1), "8,5");
    EXPECT_EQ(decimalText(8, 0), "8");
    EXPECT_EQ(translated("{done} of {all}", {{"done", 0.5}, {"all", 2.0}}), "2, davon 0,5");
  }
  const InLanguage language(german, "ar");
  EXPECT_EQ(decimalText(8.46, 1), "8.5");
}

TEST(Texts, CountsHaveTheirThousandsApart) {
  EXPECT_EQ(countText(999), "999");
  EXPECT_EQ(countText(-1000), "-1,000");
  EXPECT_EQ(countText(12'345'678), "12,345,678");
  EXPECT_EQ(plural("{count} file", "{count} files", 1234), "1,234 files");
  {
    const InLanguage language(german, "de");
    EXPECT_EQ(countText(12'345'678), "12.345.678");
    EXPECT_EQ(plural("{count} file", "{count} files", 1234), "1.234 Dateien");
  }
  // Digits of one script, whatever the language's own are; numbers are not isolated.
  const InLanguage language(german, "ar");
  EXPECT_EQ(countText(12'345), "12,345");
  EXPECT_EQ(plural("{count} file", "{count} files", 1234), "1,234 Dateien");
}

TEST(Texts, ATranslationWithOtherPlacesCountsAsNone) {
  const InLanguage language(german, "de");
  EXPECT_EQ(translated("Lacks {name}", {{"name", "Tee"}}), "Lacks Tee");
  EXPECT_EQ(translated("Plain", {{"name", "Tee"}}), "Plain");
}

TEST(Texts, NamesAreIsolatedWhereTheLanguageRunsTheOtherWay) {
  const InLanguage language({{"", ""}, {"Delete “{name}” ({number})?", "حذف {name} {number}؟"}},
                            "ar_EG");
  ASSERT_TRUE(isRightToLeft());
  const auto sentence = [](std::string_view name) {
    return translated("Delete “{name}” ({number})?", {{"name", name}, {"number", 7}});
  };
  EXPECT_EQ(sentence("a.txt"), "حذف \u2068a.txt\u2069 7؟");
  EXPECT_EQ(plainText(sentence("a.txt")), sentence("a.txt"));
  // A name cannot leave its isolate, and names alone may not have any.
  EXPECT_EQ(sentence("a\u2069\u202Eb"), "حذف \u2068a\uFFFD\uFFFDb\u2069 7؟");
  EXPECT_EQ(plainText("a\u2069b\u2068"), "a\uFFFDb\uFFFD");
  EXPECT_EQ(translated("Not there: {name}", {{"name", "x"}}), "Not there: x");
}

TEST(Texts, ATranslationWithoutLettersOfItsOwnKeepsTheLanguagesDirection) {
  const InLanguage language({{"", ""}, {"{day}, {time}", "{day}، {time}"}}, "ar");
  const auto text = translated("{day}, {time}", {{"day", "Mo"}, {"time", "9"}});
  EXPECT_EQ(text, "\u200F\u2068Mo\u2069، \u20689\u2069");
  EXPECT_EQ(plainText(text), text);
  EXPECT_EQ(plainText(isolated(text)), isolated(text));
  EXPECT_EQ(printable(text), text);
  // Foreign text has no such mark of its own, nor within a line.
  EXPECT_EQ(plainText("\u200Fabc"), "abc");
  EXPECT_EQ(plainText("\u2068a\u2069\u200Fb"), "\u2068a\u2069b");
}

TEST(Texts, BrokenCataloguesAreNone) {
  const auto whole = test::compiled(german);
  ASSERT_TRUE(TextCatalogue::of(whole));
  EXPECT_FALSE(TextCatalogue::of(""));
  EXPECT_FALSE(TextCatalogue::of("\xde\x12\x04\x95"));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto cut = TextCatalogue::of(std::string_view(whole).substr(0, size));
    if (cut)
      for (const auto& [original, translation] : german)
        cut->find(original.substr(0, original.find('\0')), 2ULL);
  }
  auto far = whole;
  far[8] = far[9] = far[10] = '\x7f';
  EXPECT_FALSE(TextCatalogue::of(far));
}

TEST(Texts, PluralsFollowTheCataloguesRule) {
  struct Case {
    std::string rule;
    std::vector<std::pair<unsigned long long, unsigned>> forms;
  };
  const Case cases[] = {
      {"nplurals=2; plural=n != 1;", {{0, 1}, {1, 0}, {2, 1}}},
      {"nplurals=1; plural=0;", {{0, 0}, {1, 0}, {7, 0}}},
      {"nplurals=6; plural=n==0 ? 0 : n==1 ? 1 : n==2 ? 2 : n%100>=3 && n%100<=10 ? 3 : "
       "n%100>=11 ? 4 : 5;",
       {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {10, 3}, {11, 4}, {99, 4}, {100, 5}, {103, 3}, {202, 5}}},
      {"nplurals=3; plural=(n%10==1 && n%100!=11 ? 0 : n%10>=2 && n%10<=4 && (n%100<10 || "
       "n%100>=20) ? 1 : 2);",
       {{1, 0}, {11, 2}, {21, 0}, {22, 1}, {12, 2}, {5, 2}}},
      {"nplurals=2; plural=!(n-1)+10/(n*0)", {{1, 1}, {3, 0}}},
      // What cannot be read is English's rule, and a form that is not there the first one.
      {"nplurals=2; plural=n ? 1", {{1, 0}, {2, 1}}},
      {"nplurals=2; plural=" + std::string(5000, '('), {{1, 0}, {2, 1}}},
      {"nplurals=2; plural=" + std::string(5000, '!') + "n", {{1, 0}, {2, 1}}},
      {"nplurals=2; plural=n;", {{0, 0}, {1, 1}, {9, 0}}},
  };
  for (const auto& each : cases) {
    const auto rule = PluralRule::of(each.rule);
    for (const auto& [number, form] : each.forms)
      EXPECT_EQ(rule.form(number), form) << each.rule << " " << number;
  }
}

} // namespace
} // namespace tavrin
