#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "Tests/Slot/SlotFixture.h"
#include "Tests/Support/BrokenDocuments.h"

#include <QPixmap>
#include <map>

namespace tavrin::test {
namespace {

const std::string longText(5000, 'W');
const std::string lines = "one\ntwo\r\n\tthree\x01";
const std::string marks = "\u202E\u200F\u0301\U0010FFFF<b>&amp;%1";

class NonsenseSettings : public SlotTest, public testing::WithParamInterface<int> {};

/// Whatever the settings say, tile and panel are drawn at every span and nothing is written.
TEST_P(NonsenseSettings, AreShownAsFarAsTheyGo) {
  using enum ConverterCategory;
  std::vector<DockWidget::Kind> kinds{
      ConverterSettings{length, "", "", 1e308},
      ConverterSettings{temperature, longText, lines, -1e308},
      ConverterSettings{angle, "km", marks, 1e-308},
      ConverterSettings{data, "bit", "bit", -0.0},
      EmojiSettings{EmojiSkinTone::dark, -5},
      EmojiSettings{EmojiSkinTone::light, 2'000'000'000},
      PetSettings{PetSpecies::turtle, true, false},
  };
  BookmarkSettings bookmarks;
  for (const std::string& text : {std::string(), longText, lines, marks})
    bookmarks.bookmarks.push_back({text, text});
  bookmarks.folders = {{"", {}}, {longText, bookmarks.bookmarks}, {lines, {{"", "a.example"}}}};
  kinds.emplace_back(bookmarks);
  for (int i = 0; i < 2000; ++i)
    bookmarks.bookmarks.push_back({"", "https://site" + std::to_string(i) + ".example"});
  bookmarks.showsIcons = false;
  kinds.emplace_back(bookmarks);
  for (const auto& kind : kinds) {
    SCOPED_TRACE(kind.key());
    start(kind, GetParam());
    EXPECT_GT(platform_.tile.displays, 0);
    click();
    ASSERT_NE(panel(), nullptr);
    panel()->show();
    platform_.loop.runBackground();
    platform_.loop.advance(5);
    EXPECT_FALSE(panel()->grab().isNull());
    click();
    EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 0);
    EXPECT_EQ(platform_.fakeApplication.terminations, 0);
    app_.reset();
  }
}

INSTANTIATE_TEST_SUITE_P(EverySpan, NonsenseSettings, testing::Values(1, 2, 4));

/// Settings that use every line of their table, where the fresh ones do not.
const std::map<std::string_view, const char*> fullSettings = {
    {"collection", R"({"apps":[{"path":"/a.desktop","displayName":"A","bundleIdentifier":"a",
      "tile":"eA=="}],"layout":"grid"})"},
    {"bookmarks", R"({"bookmarks":[{"title":"T","url":"a.example"}],"showsIcons":false,
      "folders":[{"title":"F","bookmarks":[{"title":"T","url":"b.example"}]}]})"},
    {"files", R"({"folders":["/x"],"limit":20,"marksUnseen":true,"seenUntil":700000000})"},
    {"shelf", R"({"paths":["/a","/b"]})"}};

/// Values that no editor writes.
std::vector<JSONValue> worstValues() {
  std::vector<JSONValue> values;
  for (const char* text :
       {"null", "true", "0", "-1", "-7.5", "2147483647", "9223372036854775808", "1e308", "-1e308",
        "1e400", R"("")", R"("wrong")", R"("\u202e\u0000<b>%1")", "[]", R"([null,1,"x"])",
        "[1e308,-1e308,0]", "{}", R"({"a":[{"b":null}]})"})
    values.push_back(JSONValue::parse(text));
  values.emplace_back(longText);
  values.emplace_back(JSONValue::Array(3000, "/long"));
  values.push_back(JSONValue::parse(std::string(100, '[') + std::string(100, ']')));
  return values;
}

class WrongSettings : public SlotTest, public testing::WithParamInterface<std::string> {
protected:
  /// A widget's entry, and where in it the settings stand.
  JSONValue entry_;
  JSONValue& settings() {
    auto& payload = entry_.object()->at("kind").object()->begin()->second;
    return payload.member("_0") != nullptr ? payload.object()->at("_0") : payload;
  }
  void makeEntry() {
    const auto kind = *freshKind(GetParam(), platform_.fakeClock.now());
    entry_ = encode(DockWidget(id_, "Mine", 3, kind, 2));
    if (const auto full = fullSettings.find(GetParam()); full != fullSettings.end())
      settings() = JSONValue::parse(full->second);
    for (const auto& field : describeSettings(kind))
      settings().object()->try_emplace(field.key, nullptr);
  }
  void writeEntry() {
    writeJSONFile(
        folder_ / "widgets.json",
        JSONValue::Object{{"version", 1}, {"widgets", JSONValue::Array{entry_, encode(other_)}}});
  }
  /// What another process leaves of the entry when it changes its own widget.
  JSONValue afterAnotherWrote() {
    const auto file = folder_ / "widgets.json";
    WidgetStore store(file);
    store.update(other_);
    const auto document = JSONValue::parse(readFile(file).value());
    for (const auto& widget : *document.member("widgets")->array())
      if (*widget.member("id") == JSONValue(id_.text()))
        return widget;
    return {};
  }
  DockWidget other_{UUID::random(), "Other", 4, ClockSettings{}, 1};
};

/// A tile stands for what can be read, and what cannot stays in the file as it was written.
TEST_P(WrongSettings, LoseNothing) {
  makeEntry();
  int shown = 0;
  const auto check = [&](const JSONValue& changed) {
    SCOPED_TRACE(changed.compact().substr(0, 300));
    settings() = changed;
    writeEntry();
    platform_.tile.displays = 0;
    platform_.fakeApplication.terminations = 0;
    app_ = std::make_unique<SlotApp>(platform_);
    app_->applicationDidFinishLaunching();
    const bool isShown = platform_.tile.displays > 0;
    EXPECT_EQ(platform_.fakeApplication.terminations, isShown ? 0 : 1);
    if (isShown) {
      click();
      ASSERT_NE(panel(), nullptr);
      platform_.loop.runBackground();
      platform_.loop.advance(2);
      platform_.fakePopover.close();
    }
    app_.reset();
    const JSONValue left = afterAnotherWrote();
    if (isShown)
      EXPECT_EQ(encode(decode<DockWidget>(left)), encode(decode<DockWidget>(entry_)));
    else
      EXPECT_EQ(left, entry_);
    shown += isShown ? 1 : 0;
  };
  const JSONValue whole = settings();
  breakEachNode(whole, check, worstValues());
  EXPECT_GT(shown, 0);
}

std::vector<std::string> everyKind() {
  std::vector<std::string> keys;
  for (const auto& kind : allKinds())
    keys.emplace_back(kind.key);
  return keys;
}

INSTANTIATE_TEST_SUITE_P(EveryKind, WrongSettings, testing::ValuesIn(everyKind()),
                         [](const auto& info) { return info.param; });

} // namespace
} // namespace tavrin::test
