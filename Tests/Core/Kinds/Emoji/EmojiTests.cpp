#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinCore/Kinds/Emoji/EmojiTable.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace tavrin {
namespace {

constexpr const char* data = "/usr/share/unicode/";

std::string contents(const std::string& name) {
  std::ifstream file(data + name, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

const EmojiTable& whole() {
  static const EmojiTable table(
      contents("emoji/emoji-test.txt"),
      std::vector<std::string>{contents("cldr/common/annotations/de.xml"),
                               contents("cldr/common/annotations/en.xml")});
  return table;
}

class WholeEmojiTable : public testing::Test {
protected:
  void SetUp() override {
    if (contents("emoji/emoji-test.txt").empty() ||
        contents("cldr/common/annotations/de.xml").empty())
      GTEST_SKIP() << "unicode-data and unicode-cldr-core are not installed";
  }
  static std::vector<std::string> found(const char* query) {
    std::vector<std::string> texts;
    for (const auto index : whole().search(query))
      texts.push_back(whole().emoji(index).text);
    return texts;
  }
  static bool isAmongFirst(const char* query, const char* emoji, std::size_t many) {
    const auto texts = found(query);
    const auto place = std::ranges::find(texts, emoji);
    return static_cast<std::size_t>(place - texts.begin()) < std::min(many, texts.size());
  }
};

TEST_F(WholeEmojiTable, HoldsEveryWholeEmojiOnceAndEveryToneOfEach) {
  std::istringstream lines(contents("emoji/emoji-test.txt"));
  std::size_t toneless = 0;
  std::size_t toned = 0;
  for (std::string line; std::getline(lines, line);) {
    const auto semicolon = line.find("; fully-qualified");
    if (semicolon == line.npos)
      continue;
    const auto hash = line.find("# ");
    const std::string emoji = line.substr(hash + 2, line.find(' ', hash + 2) - hash - 2);
    const auto index = whole().find(emoji);
    const bool hasTone = line.find(" 1F3F") < semicolon;
    if (!hasTone) {
      ASSERT_TRUE(index) << line;
      EXPECT_EQ(whole().emoji(*index).text, emoji);
      ++toneless;
      continue;
    }
    // One tone for all who have one; the others are left to those who need them.
    for (const auto tone : allCases<EmojiSkinTone>())
      if (index && whole().emoji(*index).inTone(tone) == emoji)
        ++toned;
  }
  EXPECT_EQ(whole().size(), toneless);
  std::size_t withTones = 0;
  for (std::size_t i = 0; i < whole().size(); ++i)
    withTones += !whole().emoji(i).light.empty();
  EXPECT_GT(withTones, 250U);
  EXPECT_EQ(toned, withTones * 5) << "each toned form that is made is one of Unicode's";
  ASSERT_EQ(whole().groups().size(), 9U);
  EXPECT_EQ(whole().groups().front().name, "Smileys & Emotion");
  EXPECT_EQ(whole().groups().back().name, "Flags");
}

TEST_F(WholeEmojiTable, IsSearchedInBothLanguages) {
  EXPECT_EQ(whole().name(*whole().find("🐈")), "Katze");
  EXPECT_TRUE(isAmongFirst("Katze", "🐈", 1));
  EXPECT_TRUE(isAmongFirst("KATZ", "😺", 12));
  EXPECT_TRUE(isAmongFirst("cat", "🐈", 30));
  EXPECT_TRUE(isAmongFirst("bär", "🐻", 5));
  EXPECT_TRUE(isAmongFirst("bar", "🐻", 12)) << "accents do not count";
  EXPECT_TRUE(isAmongFirst("red heart", "❤️", 3));
  EXPECT_TRUE(isAmongFirst("heart red", "❤️", 10)) << "nor does the order";
  EXPECT_TRUE(isAmongFirst("party", "🎉", 12)) << "a word, though not in the name";
  EXPECT_EQ(found("👋🏿"), std::vector<std::string>{"👋"});
  EXPECT_TRUE(found("xyzzy").empty());
  EXPECT_TRUE(found("🐈🐈").empty());
  EXPECT_EQ(found("").size(), whole().size());
}

TEST_F(WholeEmojiTable, TheFirstFoundIsTheOneMeant) {
  for (const auto& [query, emoji] : std::initializer_list<std::pair<const char*, const char*>>{
           {"heart", "❤️"}, {"Herz", "❤️"}, {"cat", "🐈"},    {"fire", "🔥"},
           {"joy", "😂"},        {":)", "🙂"},     {":-)", "🙂"}, {"=)", "🙂"},
           {":D", "😀"},         {":-D", "😀"},       {"XD", "😆"},     {";)", "😉"},
           {":'(", "😢"},        {"<3", "❤️"},   {"</3", "💔"},    {"lol", "😂"},
           {"LOL", "😂"},        {"+1", "👍"},        {"-1", "👎"},     {"^^", "😊"},
           {"omg", "😱"},        {"thx", "🙏"},       {"OK", "👌"},     {"8-)", "😎"},
           {"rofl", "🤣"}}) {
    const auto texts = found(query);
    ASSERT_FALSE(texts.empty()) << query;
    EXPECT_EQ(texts.front(), emoji) << query;
  }
  EXPECT_GT(found(":").size(), 10U) << "while a face is being typed";
  EXPECT_TRUE(isAmongFirst("lol", "🤣", 2));
  EXPECT_TRUE(isAmongFirst("ok", "🆗", 8)) << "a shorthand hides no name";
  EXPECT_TRUE(isAmongFirst(":dog", "🐕", 10)) << "a colon before a word is no face";
  // A keyword that is the whole query goes before one that only begins with it.
  const auto hearts = found("heart");
  const auto place = [&](const char* emoji) { return std::ranges::find(hearts, emoji); };
  EXPECT_LT(place("🤍"), place("💘")) << "\"heart\" before \"heart with arrow\"";
}

TEST_F(WholeEmojiTable, WhatIsUsedComesFirstWhereItIsMeant) {
  const std::vector<EmojiUse> uses{{"💔", 3}, {"❤", 1}, {"🐻", 9}, {"no emoji", 9}};
  const auto texts = [&](const char* query) {
    std::vector<std::string> found;
    for (const auto index : whole().search(query, uses))
      found.push_back(whole().emoji(index).text);
    return found;
  };
  EXPECT_EQ(texts("heart")[0], "💔");
  EXPECT_EQ(texts("heart")[1], "❤️");
  EXPECT_NE(texts("ear")[0], "🐻") << "the middle of a word is hardly meant";
  EXPECT_EQ(texts("").front(), whole().emoji(0).text) << "a group keeps its order";
}

TEST(EmojiTable, LeavesOutWhatIsMalformed) {
  const EmojiTable table(
      "# group: One\n"
      "1F600 ; fully-qualified # 😀 E1.0 grinning face\n"
      "1F600 ; fully-qualified # 😀 E1.0 twice\n"
      "XYZ ; fully-qualified # x E1.0 no number\n"
      "110000 ; fully-qualified # x E1.0 beyond Unicode\n"
      "D800 ; fully-qualified # x E1.0 half a character\n"
      "1F601 ; unqualified # x E1.0 not whole\n"
      "1F602 fully-qualified 😂\n"
      "1F603 ; fully-qualified # 😃\n"
      "# group: Empty\n"
      "# group: Two\r\n"
      "1F44B ; fully-qualified # 👋 E0.6 waving hand\r\n"
      "1F44B 1F3FC ; fully-qualified # 👋🏼 E1.0 not the lightest\n"
      "1F44C 1F3FB ; fully-qualified # 👌🏻 E1.0 a tone without its base",
      std::vector<std::string>{"<ldml><annotation cp='😀'>smile | ↑↑↑</annotation>"
                               "<annotation cp='😀' type='tts'>Grinsen</annotation><annotation "
                               "cp='👋' type='tts'>Winken</annotation",
                               "no XML at all"});
  ASSERT_EQ(table.size(), 2U);
  EXPECT_EQ(table.name(0), "Grinsen");
  EXPECT_EQ(table.name(1), "waving hand") << "behind the fault";
  EXPECT_TRUE(table.emoji(1).light.empty());
  ASSERT_EQ(table.groups().size(), 2U);
  EXPECT_EQ(table.groups()[1].name, "Two");
  EXPECT_EQ(table.groups()[1].begin, 1U);
  EXPECT_TRUE(EmojiTable("", {}).isEmpty());
}

TEST(Emoji, TonesReplaceTheLightest) {
  const Emoji hand{"👋", "👋🏻"};
  EXPECT_EQ(hand.inTone(EmojiSkinTone::standard), "👋");
  EXPECT_EQ(hand.inTone(EmojiSkinTone::light), "👋🏻");
  EXPECT_EQ(hand.inTone(EmojiSkinTone::dark), "👋🏿");
  EXPECT_EQ(
      (Emoji{"🧑‍🤝‍🧑", "🧑🏻‍🤝‍🧑🏻"}.inTone(EmojiSkinTone::medium)),
      "🧑🏽‍🤝‍🧑🏽");
  EXPECT_EQ((Emoji{"🐈", ""}.inTone(EmojiSkinTone::dark)), "🐈");
  EXPECT_EQ(emojiKey("🕵🏽‍♂️"), emojiKey("🕵️‍♂️"));
}

TEST(EmojiHistory, NewestFirstEachOnceWithinTheLimit) {
  EmojiHistory record;
  for (const char* text : {"1️⃣", "2️⃣", "3️⃣", "4️⃣", "5️⃣", "2️⃣"})
    record.add({text, ""}, 4);
  ASSERT_EQ(record.recents.size(), 4U);
  EXPECT_EQ(record.recents[0].text, "2️⃣");
  EXPECT_EQ(record.recents[3].text, "3️⃣");
  record.add({"👋🏿", ""}, 24);
  record.add({"👋", "👋🏻"}, 24);
  EXPECT_EQ(record.recents[0], (Emoji{"👋", "👋🏻"})) << "one hand, whatever its tone";
  EXPECT_EQ(record.recents.size(), 5U);
  EXPECT_EQ(record.uses[0], (EmojiUse{"👋", 2}));
  EXPECT_EQ(record.uses[1].emoji, emojiKey("2️⃣")) << "the recents' limit drops no count";
  EXPECT_EQ(record.uses.size(), 6U);
  const auto before = record;
  for (const std::string& text : {std::string(), std::string(65, 'x'), std::string("\xff")})
    record.add({text, ""}, 24);
  EXPECT_EQ(record, before);
  for (int i = 0; i < 1000; ++i)
    record.add({i % 2 == 0 ? "🦊" : "🐈", ""}, 24);
  EXPECT_EQ(record.uses.size(), 2U) << "what was used once long ago is forgotten";
  EXPECT_LE(record.uses.front().count, EmojiHistory::mostCounted);
  record.uses.assign(500, {"🦊", -1});
  record.uses.resize(900, {"🐈", 2'000'000'000});
  record.repair();
  EXPECT_EQ(record.uses.size(), EmojiHistory::mostUses);
  EXPECT_EQ(record.uses.front().count, EmojiHistory::mostCounted);
}

} // namespace
} // namespace tavrin
