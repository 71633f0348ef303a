#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Date now = Date::fromUnixSeconds(1'788'984'522);

ClipboardEntryPtr entry(ClipboardItem item, double ago = 0, bool isPinned = false) {
  item.id = UUID::random();
  item.capturedAt = {now - ago};
  item.isPinned = isPinned;
  return std::make_shared<const ClipboardEntry>(std::move(item));
}
ClipboardEntryPtr text(std::string_view words, double ago = 0, bool isPinned = false) {
  return entry(ClipboardItem::ofText(words), ago, isPinned);
}

TEST(ClipboardItem, KnowsWhatLooksSensitive) {
  const std::pair<const char*, bool> cases[] = {{"abcdefghijkl", false},
                                                {"aB3dE5gH7jK9", true},
                                                {"aB3dE5g", false},
                                                {"  aB3dE5gH \n", true},
                                                {"aB3dE 5gHj", false},
                                                {"aB3dE\n5gHj", false},
                                                {"ABCDEFGH12", false},
                                                {"abcdefg1!", true},
                                                {"ABCDefgh", false},
                                                {"https://a.example/x1", true},
                                                {"", false},
                                                {"Ünïcode1", true},
                                                {"12345678!", false},
                                                {"Passwort", false}};
  for (const auto& [words, isSensitive] : cases)
    EXPECT_EQ(ClipboardItem::looksSensitive(words), isSensitive) << words;
}

TEST(ClipboardItem, KnowsAddressesAndHostsOfThePublicInternet) {
  struct Case {
    const char* text;
    bool isURL;
    bool isFetchable;
  };
  const Case cases[] = {{"https://quellby.dev/guide", true, true},
                        {" http://quellby.dev:8080 ", true, true},
                        {"HTTPS://Quellby.DEV", true, true},
                        {"see https://quellby.dev", false, false},
                        {"ftp://quellby.dev", false, false},
                        {"https://", false, false},
                        {"http://localhost/x", true, false},
                        {"http://printer.local", true, false},
                        {"http://nas", true, false},
                        {"http://127.0.0.1/", true, false},
                        {"http://0x7f.1/", true, false},
                        {"http://[::1]/", true, false},
                        {"http://user@10.0.0.1/", true, false},
                        {"https://quellby.dev./", true, false},
                        {"just words", false, false}};
  for (const auto& [words, isURL, isFetchable] : cases) {
    EXPECT_EQ(ClipboardItem::looksLikeURL(words), isURL) << words;
    EXPECT_EQ(ClipboardItem::isFetchableHost(words), isFetchable) << words;
  }
}

TEST(ClipboardItem, KeepsTheBeginningOfALongTextAndOnlyText) {
  std::string longest;
  for (int i = 0; i < 300'000; ++i)
    longest += "é";
  const auto item = ClipboardItem::ofText(longest);
  EXPECT_EQ(item.byteSize, 400'000);
  EXPECT_EQ(item.text->size(), 400'000U);
  EXPECT_EQ(ClipboardItem::ofText("a\xFF\xC3(b").text, "a\xEF\xBF\xBD\xEF\xBF\xBD(b");
  EXPECT_EQ(ClipboardItem::ofText("\n  one\t two \n three").previewLine(), "one two three");
  EXPECT_EQ(ClipboardItem::ofFile("file:///a/b%20%C3%A9.txt", 3).previewLine(), "b é.txt");
  EXPECT_EQ(ClipboardItem::ofImage(std::nullopt, 3'100'000).previewLine(), "Image, 3.1 MB");
}

std::vector<std::string> words(const ClipboardList& list) {
  std::vector<std::string> all;
  for (const auto& each : list)
    all.push_back(each->item.previewLine());
  return all;
}

TEST(ClipboardBoard, FindsTextsAndFileNamesInEitherCase) {
  const ClipboardList list{text("Alpha beta"), text("Grüße, ÆRØ"), text("ab aB aBc"),
                           entry(ClipboardItem::ofFile("file:///alpha/Plan%20B.pdf", 1)),
                           entry(ClipboardItem::ofImage(std::nullopt, 7))};
  const std::pair<const char*, std::vector<std::string>> cases[] = {{"  ", words(list)},
                                                                    {"ALPHA", {"Alpha beta"}},
                                                                    {"ærø", {"Grüße, ÆRØ"}},
                                                                    {"GRÜ", {"Grüße, ÆRØ"}},
                                                                    {"abc", {"ab aB aBc"}},
                                                                    {"plan b", {"Plan B.pdf"}},
                                                                    {"image", {}},
                                                                    {"betas", {}},
                                                                    {" beta ", {"Alpha beta"}}};
  for (const auto& [query, found] : cases)
    EXPECT_EQ(words(ClipboardBoard::search(query, list)), found) << query;
}

TEST(ClipboardBoard, KeepsPinnedOnesAndTheNewestOfTheRest) {
  ClipboardSettings settings;
  ClipboardList list;
  for (int i = 0; i < 201; ++i)
    list.push_back(text(std::to_string(i), i));
  for (int i = 0; i < 5; ++i)
    list.push_back(text("pinned", 1e9, true));
  const auto kept = ClipboardBoard::retained(list, settings, now);
  ASSERT_EQ(kept.size(), 200U);
  EXPECT_EQ(kept[194]->item.previewLine(), "194");
  EXPECT_EQ(kept[195]->item.previewLine(), "pinned");

  settings.historyLimit = 3;
  EXPECT_EQ(ClipboardBoard::retained(list, settings, now).size(), 5U);
  settings = {};
  settings.retentionDays = 1;
  EXPECT_THAT(
      words(ClipboardBoard::retained(
          {text("new", 86'400), text("old", 86'401), text("kept", 86'401, true)}, settings, now)),
      ElementsAre("new", "kept"));
}

TEST(ClipboardCoding, KeepsEveryFieldAndWritesDatesAsText) {
  ClipboardItem item = ClipboardItem::ofImage(Data{{0, 255, 128, 7}}, 4);
  item.sourceAppBundleID = "org.example.App";
  item.sourceAppName = "App \"x\"\n";
  item.ogTitle = "Tïtle";
  item.ogImageData = Data{{1}};
  item.ogFetchedAt = ISO8601Date{now};
  const ClipboardList list{entry(item, 0, true), text("two"),
                           entry(ClipboardItem::ofFile("file:///x", 0))};
  const std::string json = encodeClipboard(list);
  EXPECT_EQ(JSONValue::parse(json).array()->front(), encode(list.front()->item))
      << "the same as the record's own coding";
  EXPECT_NE(json.find("\"capturedAt\":\"2026-09-09T20:08:42Z\""), std::string::npos) << json;
  const auto again = decodeClipboard(json);
  ASSERT_EQ(again.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ(again[i]->item, list[i]->item);
  EXPECT_THAT(decodeClipboard("[]"), IsEmpty());
}

TEST(ClipboardCoding, ReadsOtherWritersSpellings) {
  const std::string start = R"([ {"id":"3F2504E0-4F89-41D3-9A0C-0305E82C3301","kind":"text",)"
                            R"("capturedAt":"2026-09-09T20:08:42Z","isPinned":false,)"
                            R"("byteSize":4,"isSensitive":false)";
  const auto read = [&](const std::string& members) {
    std::string json = start + members + "} ]";
    const auto plain = decodeClipboard(json);
    json.reserve(json.size() + 64);
    EXPECT_EQ(decodeClipboard(json).at(0)->item, plain.at(0)->item);
    return plain.at(0)->item;
  };
  EXPECT_EQ(read(R"(,"text":"a\"\u00e9\n\ud83d\ude00 \/")").text, "a\"\u00e9\n\U0001F600 /");
  EXPECT_EQ(read(R"(,"text":null)").text, std::nullopt);
  EXPECT_EQ(read(R"(,"imageData" : "AP+A\/w==" )").imageData, (Data{{0, 255, 128, 255}}));
  EXPECT_EQ(read(R"(,"ogImageData":"\u0041A==")").ogImageData, (Data{{0}}));
  EXPECT_EQ(read(R"(,"imageData":"","unknown":{"a":[1,"x"]})").imageData, Data{});
  for (const char* wrong :
       {R"(,"imageData":"A")", R"(,"imageData":"AA=A")", R"(,"imageData":"A\n==")"})
    EXPECT_THROW(read(wrong), CodingError) << wrong;
}

TEST(Data, Base64OfEveryLength) {
  Data data;
  for (int length = 0; length < 3'200; ++length) {
    const std::string text = data.base64();
    EXPECT_EQ(text.size(), (data.bytes.size() + 2) / 3 * 4);
    ASSERT_EQ(Data::fromBase64(text), data) << length;
    data.bytes.push_back(static_cast<std::uint8_t>(length * 7 + length / 256));
  }
  EXPECT_EQ(Data::fromText("Tavrin's dock").base64(), "VGF2cmluJ3MgZG9jaw==");
  const std::string good = data.base64();
  for (std::size_t i = 0; i + 2 < good.size(); i += 7)
    for (const char wrong : {'-', '=', '\n', '\0', '\x80'}) {
      std::string bad = good;
      bad[i] = wrong;
      EXPECT_FALSE(Data::fromBase64(bad)) << i;
    }
}

TEST(ClipboardCoding, RefusesWhatIsNoHistory) {
  for (const char* json : {"", "{}", "[1]", "[{}]", "[] []", "[{\"id\":3}]", "null"})
    EXPECT_THROW(decodeClipboard(json), std::runtime_error) << json;
}

} // namespace
} // namespace tavrin
