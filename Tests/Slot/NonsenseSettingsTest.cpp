#include "Tests/Slot/SlotFixture.h"
#include "Tests/Support/BrokenDocuments.h"

#include <QPixmap>
#include <fstream>

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

/// Values that no editor writes, each in turn for each setting of each kind.
std::vector<std::pair<const char*, std::string>> worstValues() {
  std::string deep(100, '[');
  deep += std::string(100, ']');
  return {{"null", "null"},
          {"zero", "0"},
          {"negative", "-1"},
          {"an integer's least", "-2147483648"},
          {"an integer's most", "2147483647"},
          {"beyond integers", "9223372036854775808"},
          {"vast", "1e308"},
          {"vast and negative", "-1e308"},
          {"beyond numbers", "1e400"},
          {"a switch", "true"},
          {"no text", R"("")"},
          {"marks", R"("\u202e\u0000<b>%1")"},
          {"a long text", '"' + longText + '"'},
          {"no list", "[]"},
          {"a list of nothing", "[null]"},
          {"a list of texts", R"(["","a"])"},
          {"a list of vast numbers", "[1e308,-1e308,0]"},
          {"no record", "{}"},
          {"a deep list", deep}};
}

/// The slot shows what it can read, and where it cannot it ends and leaves the file as it is.
TEST_F(SlotTest, EverySettingOfEveryKindAtItsWorst) {
  const auto widgetsFile = folder_ / "widgets.json";
  for (const auto& info : allKinds()) {
    const auto kind = *freshKind(info.key, platform_.fakeClock.now());
    for (const auto& field : describeSettings(kind)) {
      for (const auto& [name, value] : worstValues()) {
        SCOPED_TRACE(std::string(info.key) + "." + field.key + ": " + name);
        auto entry = encode(DockWidget(UUID::random(), "A widget", 3, kind, 1));
        auto& payload = entry.object()->at("kind").object()->begin()->second;
        auto& settings = payload.member("_0") != nullptr ? payload.object()->at("_0") : payload;
        (*settings.object())[field.key] = JSONValue::parse(value);
        const auto text = R"({"version":1,"widgets":[)" + entry.compact() + "]}";
        std::ofstream(widgetsFile) << text;
        platform_.fakeApplication.terminations = 0;
        SlotApp app(platform_);
        app.applicationDidFinishLaunching();
        EXPECT_EQ(platform_.fakeApplication.terminations, app.widget() ? 0 : 1);
        app.applicationShouldHandleReopen(false);
        EXPECT_EQ(platform_.fakePopover.shown, app.widget().has_value());
        platform_.loop.advance(2);
        platform_.fakePopover.close();
        std::ifstream kept(widgetsFile);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), text);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EverySpan, NonsenseSettings, testing::Values(1, 2, 4));

/// A kind and settings that use every line of its table.
constexpr std::pair<const char*, const char*> fullSettings[] = {
    {"collection", R"({"apps":[{"path":"/a.desktop","displayName":"A","bundleIdentifier":"a",
      "tile":"eA=="}],"layout":"grid"})"},
    {"music", R"({"player":"vlc","showsCover":true,"showsArtist":true,"showsProgress":true})"},
    {"shortcut", R"({"title":"T","command":"true","desktopAction":"a/b","workingFolder":"/",
      "symbolName":"bolt.fill","colorHex":"#5E5CE6","timeLimit":60,"showsOutput":true})"},
    {"airdrop", "{}"},
    {"pet", R"({"species":"cat","followsProcessorLoad":true,"sleepsAtNight":true})"},
    {"bookmarks", R"({"bookmarks":[{"title":"T","url":"a.example"}],"showsIcons":false,
      "folders":[{"title":"F","bookmarks":[{"title":"T","url":"b.example"}]}]})"},
    {"emoji", R"({"skinTone":"dark","recentsLimit":24})"},
    {"screenshots", R"({"folder":"/x","limit":20})"},
    {"files", R"({"folders":["/x"],"limit":20,"marksUnseen":true,"seenUntil":700000000})"},
    {"shelf", R"({"paths":["/a","/b"]})"},
    {"converter", R"({"category":"length","from":"km","to":"mi","value":1})"}};

class WrongSettings : public SlotTest,
                      public testing::WithParamInterface<std::pair<const char*, const char*>> {
protected:
  JSONValue entry(const JSONValue& settings) const {
    const bool isPlain = GetParam().first == std::string_view("collection") ||
                         GetParam().first == std::string_view("airdrop");
    const JSONValue payload = isPlain ? settings : JSONValue(JSONValue::Object{{"_0", settings}});
    return JSONValue::Object{{"id", id_.text()},
                             {"name", "Mine"},
                             {"slot", 3},
                             {"span", 2},
                             {"kind", JSONValue::Object{{GetParam().first, payload}}}};
  }
  void writeEntries(const JSONValue& entry) {
    writeJSONFile(
        folder_ / "widgets.json",
        JSONValue::Object{{"version", 1}, {"widgets", JSONValue::Array{entry, encode(other_)}}});
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
  const std::vector<JSONValue> values{
      nullptr,
      true,
      -7.5,
      -1,
      0,
      1'000'000'000,
      std::numeric_limits<std::int64_t>::max(),
      1e308,
      "",
      "wrong",
      longText,
      marks,
      JSONValue::Array{},
      JSONValue::Array{nullptr, 1, "x"},
      JSONValue::Array(3000, "/long"),
      JSONValue::Object{},
      JSONValue::Object{{"a", JSONValue::Array{JSONValue::Object{{"b", nullptr}}}}}};
  int shown = 0;
  int kept = 0;
  const auto check = [&](const JSONValue& settings) {
    SCOPED_TRACE(settings.compact().substr(0, 300));
    const JSONValue written = entry(settings);
    writeEntries(written);
    platform_.tile.displays = 0;
    platform_.fakeApplication.terminations = 0;
    app_ = std::make_unique<SlotApp>(platform_);
    app_->applicationDidFinishLaunching();
    const bool isShown = platform_.tile.displays > 0;
    EXPECT_EQ(platform_.fakeApplication.terminations, isShown ? 0 : 1);
    if (isShown) {
      click();
      ASSERT_NE(panel(), nullptr);
      EXPECT_FALSE(panel()->grab().isNull());
      platform_.loop.runBackground();
      click();
    }
    app_.reset();
    const JSONValue left = afterAnotherWrote();
    if (isShown)
      EXPECT_EQ(encode(decode<DockWidget>(left)), encode(decode<DockWidget>(written)));
    else
      EXPECT_EQ(left, written);
    ++(isShown ? shown : kept);
  };
  breakEachNode(JSONValue::parse(GetParam().second), check, values);
  EXPECT_GE(shown, 2);
  EXPECT_GE(kept, GetParam().first == std::string_view("airdrop") ? 0 : 10);
}

INSTANTIATE_TEST_SUITE_P(EveryKind, WrongSettings, testing::ValuesIn(fullSettings),
                         [](const auto& info) { return std::string(info.param.first); });

} // namespace
} // namespace tavrin::test
