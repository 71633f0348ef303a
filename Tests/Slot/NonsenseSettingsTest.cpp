#include "Tests/Slot/SlotFixture.h"

#include <QPixmap>

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

} // namespace
} // namespace tavrin::test
