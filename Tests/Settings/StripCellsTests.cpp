#include "TavrinSettings/Gallery/KindSearch.h"
#include "TavrinSettings/Strip/StripCells.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

using testing::ElementsAre;

TEST(StripCellsTest, TwelveFitIntoTheNarrowestWindowAndManyWideOnesTakeRows) {
  for (const double width : {580.0, 640.0, 900.0, 2000.0}) {
    for (const auto& spans : {std::vector<int>{}, std::vector<int>{1, 2, 1},
                              std::vector<int>(12, 1), std::vector<int>(12, 4)}) {
      const auto laid = StripCells::of(spans, 12 - static_cast<int>(spans.size()), width);
      ASSERT_GT(laid.rects.size(), spans.size() - (spans.size() == 12 ? 1 : 0));
      ASSERT_LE(laid.rects.size(), 12u);
      double bottom = 0;
      for (std::size_t i = 0; i < laid.rects.size(); ++i) {
        EXPECT_LE(laid.rects[i].right(), width + 0.5);
        bottom = std::max(bottom, laid.rects[i].bottom());
        for (std::size_t j = 0; j < i; ++j)
          EXPECT_FALSE(laid.rects[i].intersects(laid.rects[j]));
      }
      EXPECT_LE(bottom, laid.height);
      if (spans.size() != 12 || spans.front() == 1) {
        EXPECT_EQ(laid.height, StripCells::largestSide) << "nothing below it moves";
      }
    }
  }
}

TEST(StripCellsTest, APointIsAPlaceBetweenTilesAlsoInLaterRows) {
  const auto row = StripCells::of({1, 1, 1}, 9, 900);
  const double y = row.side / 2;
  EXPECT_EQ(row.placeAt({-50, y}, 3), 0u);
  EXPECT_EQ(row.placeAt({row.rects[0].center().x() + 1, y}, 3), 1u);
  EXPECT_EQ(row.placeAt({row.rects[2].center().x() - 1, y}, 3), 2u);
  EXPECT_EQ(row.placeAt({890, y}, 3), 3u);
  for (const double beside : {-20.0, row.height + 20})
    EXPECT_EQ(row.placeAt({row.rects[1].center().x() + 1, beside}, 3), 2u);
  const auto rows = StripCells::of(std::vector<int>(6, 4), 0, 580);
  EXPECT_GT(rows.rects[3].top(), rows.rects[1].bottom());
  EXPECT_EQ(rows.placeAt(rows.rects[3].center() + QPointF(1, 0), 6), 4u);
}

TEST(StripCellsTest, ARightEdgeIsAWidthWithinTheKindsLimits) {
  const auto laid = StripCells::of({1, 1}, 10, 900);
  const auto& tile = laid.rects[0];
  EXPECT_EQ(laid.spanAt(tile, tile.right(), 4), 1);
  EXPECT_EQ(laid.spanAt(tile, laid.rects[1].right(), 4), 2);
  EXPECT_EQ(laid.spanAt(tile, 5000, 3), 3);
  EXPECT_EQ(laid.spanAt(tile, -10, 3), 1);
}

std::vector<std::string> keysFor(std::string_view words) {
  std::vector<std::string> keys;
  for (const auto* kind : kindsMatching(words))
    keys.emplace_back(kind->key);
  return keys;
}

TEST(KindSearchTest, KindsAreFoundByNamePurposeAndOtherWords) {
  EXPECT_EQ(keysFor("").size(), allKinds().size());
  EXPECT_THAT(keysFor("clo"), ElementsAre("clock"));
  EXPECT_THAT(keysFor("TIMER"), ElementsAre("timer"));
  EXPECT_THAT(keysFor("time zone"), ElementsAre("clock"));
  EXPECT_THAT(keysFor("únits"), ElementsAre("converter")) << "accents aside";
  EXPECT_THAT(keysFor("tomato"), ElementsAre("pomodoro"));
  EXPECT_THAT(keysFor("claude usage"), ElementsAre("claudeUsage"));
  EXPECT_THAT(keysFor("no such thing"), ElementsAre());
  EXPECT_EQ(keysFor("time progress").front(), "timeProgress");
  EXPECT_EQ(keysFor("note").front(), "note") << "what begins so comes first";
}

TEST(KindSearchTest, EveryKindSaysWhatItIsFor) {
  for (const auto& kind : allKinds()) {
    EXPECT_TRUE(kind.purpose.ends_with('.')) << kind.key;
    EXPECT_FALSE(kind.words.empty()) << kind.key;
    EXPECT_THAT(keysFor(kind.title), testing::Contains(std::string(kind.key)));
  }
}

} // namespace
} // namespace tavrin
