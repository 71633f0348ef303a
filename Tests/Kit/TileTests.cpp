#include "Tests/Kit/Pixels.h"

#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

QImage picture(const AnyView& view, const TileSize& size, double scale) {
  return rendered(view, {size.width(), size.height()}, scale);
}

TileContent running(const char* figure, double progress = 0.4) {
  TileContent content;
  content.border = TileBorder{progress, palette::red};
  content.figure = QString::fromUtf8(figure);
  content.widestFigure = QStringLiteral("88:88");
  content.caption = QStringLiteral("Focus");
  return content;
}

WideTileContent wide(const char* caption) {
  WideTileContent content;
  content.mark = symbol("timer").colour(palette::red);
  content.caption = QString::fromUtf8(caption);
  content.figure = QStringLiteral("24:59");
  content.actions = {{{"toggle"}, "pause.fill", QStringLiteral("Pause"), true},
                     {{"skip"}, "forward.end.fill", QStringLiteral("Skip")}};
  return content;
}

TEST(Tile, DrawsNothingOutsideTheBodyButItsShadow) {
  for (const double side : {48.0, 56.0, 64.0, 128.0})
    for (const double scale : {1.0, 1.5, 2.0, 3.0})
      for (const int span : {1, 2, 4}) {
        const TileSize size{side, span};
        const AnyView view =
            span == 1 ? tile(running("1:00:00"), size) : wideTile(wide("A very long name"), size);
        const QImage image = picture(view, size, scale);
        const QRectF body = size.bodyRect();
        const double shadow = 0.02 * side;
        const QRectF limit = body.adjusted(-shadow, -shadow, shadow, shadow);
        const QRectF pixels(limit.topLeft() * scale, limit.size() * scale);
        EXPECT_TRUE(pixels.toAlignedRect().contains(inkedRect(image))) << side << ' ' << scale;
        EXPECT_TRUE(QRectF(body.topLeft() * scale, body.size() * scale)
                        .toAlignedRect()
                        .contains(inkedRect(image, 100)))
            << side << ' ' << scale << ' ' << span;
      }
}

TEST(Tile, BorderIsTrackAtZeroAndAClosedRingAtOne) {
  const TileSize size{128, 1};
  const auto border = [](double progress) {
    TileContent content;
    content.border = TileBorder{progress, palette::red};
    return content;
  };
  const auto count = [&](double progress, const QColor& colour) {
    return countOf(picture(tile(border(progress), size), size, 1), colour);
  };
  EXPECT_EQ(count(0, palette::red), 0);
  EXPECT_EQ(count(-1, palette::red), 0);
  const int track = count(0, palette::track);
  EXPECT_GT(track, 1500);
  EXPECT_EQ(count(1, palette::track), 0);
  EXPECT_EQ(count(7, palette::red), count(1, palette::red));
  EXPECT_NEAR(count(1, palette::red), track, track / 20);
  EXPECT_GT(count(0.001, palette::red), 20);
}

TEST(Tile, BorderRunsClockwiseFromTheTop) {
  const TileSize size{128, 1};
  const QImage image = picture(tile(running("", 0.5), size), size, 1);
  const QRectF body = size.bodyRect();
  const double half = size.borderWidth() / 2;
  const auto at = [&](double x, double y) {
    return image.pixelColor(static_cast<int>(x), static_cast<int>(y));
  };
  const double middle = body.center().x();
  EXPECT_TRUE(isNear(at(middle + 15, body.top() + half), palette::red));
  EXPECT_TRUE(isNear(at(body.right() - half, body.center().y()), palette::red));
  EXPECT_TRUE(isNear(at(middle + 15, body.bottom() - half), palette::red));
  EXPECT_TRUE(isNear(at(middle - 15, body.bottom() - half), palette::track));
  EXPECT_TRUE(isNear(at(body.left() + half, body.center().y()), palette::track));
}

TEST(Tile, LevelLooksTheSameFromKeptStepsAsAtOnce) {
  const TileSize size{64, 1};
  ViewRenderer renderer;
  for (int second = 0; second <= 100; second += 7) {
    const AnyView view = tile(running("1:23", second / 100.0), size);
    renderer.render(view, {64, 64}, 2);
    EXPECT_EQ(renderer.image(), picture(view, size, 2)) << second;
  }
}

TEST(Tile, OnlyBelowTheDefaultSizeCaptionsGo) {
  const auto inkRows = [](double side, const char* caption) {
    TileContent content;
    content.figure = QStringLiteral("7");
    content.caption = QString::fromUtf8(caption);
    return picture(tile(content, {side, 1}), {side, 1}, 1);
  };
  EXPECT_EQ(inkRows(47, "Caption"), inkRows(47, ""));
  EXPECT_NE(inkRows(48, "Caption"), inkRows(48, ""));
  EXPECT_DOUBLE_EQ(TileSize({48, 1}).caption(), minimumCaptionSize);
  EXPECT_DOUBLE_EQ(TileSize({64, 1}).caption(), 9);
  for (const double side : {48.0, 56.0, 128.0})
    EXPECT_GE(TileSize({side, 1}).figure(), 9);
  // Small words are as strong as figures.
  EXPECT_EQ(TileSize({48, 1}).quietInk(), palette::figure());
  EXPECT_EQ(TileSize({64, 1}).quietInk(), palette::caption());
}

TEST(Tile, DropsTheMarkBeforeTheCaption) {
  TileContent content;
  content.figure = QStringLiteral("7");
  content.caption = QStringLiteral("days");
  const QImage without = picture(tile(content, {64, 1}), {64, 1}, 1);
  content.mark = rectangle().fill(palette::pink);
  content.markRatio = 0.7;
  EXPECT_EQ(picture(tile(content, {64, 1}), {64, 1}, 1), without);
  content.markRatio = 0.1;
  EXPECT_GT(countOf(picture(tile(content, {64, 1}), {64, 1}, 1), palette::pink), 20);
}

TEST(Tile, AnHourLongFigureLeavesCaptionAndMarkTheirRoom) {
  for (const double side : {64.0, 96.0, 128.0}) {
    const TileSize size{side, 1};
    TileContent content = running("1:59:59");
    content.widestFigure.clear();
    const QImage bare = picture(tile(content, size), size, 1);
    content.mark = rectangle().fill(palette::pink);
    content.markRatio = 0.08;
    content.isMarkBelow = true;
    EXPECT_GT(countOf(picture(tile(content, size), size, 1), palette::pink), 20) << side;
    content.mark = {};
    content.caption.clear();
    EXPECT_NE(picture(tile(content, size), size, 1), bare) << side;
  }
}

TEST(Tile, StatesDiffer) {
  std::vector<QImage> seen;
  for (const TileState state :
       {TileState::live, TileState::waiting, TileState::cannot, TileState::done}) {
    TileContent content;
    content.mark = symbol("calendar");
    content.state = state;
    seen.push_back(picture(tile(content, {48, 1}), {48, 1}, 1));
  }
  for (std::size_t i = 0; i < seen.size(); ++i)
    for (std::size_t k = 0; k < i; ++k)
      EXPECT_NE(seen[i], seen[k]) << i << ' ' << k;
}

TEST(Tile, AWarningLeavesHalfOfASmallMarkToSee) {
  const TileSize size{48, 1};
  constexpr int scale = 4;
  TileContent content;
  content.state = TileState::cannot;
  content.sentence = QStringLiteral("Not connected");
  content.mark = rectangle().fill(content.ground);
  const QImage bare = picture(tile(content, size), size, scale);
  content.mark = rectangle().fill(palette::pink);
  const QImage marked = picture(tile(content, size), size, scale);
  std::vector<int> seen;
  for (int y = 0; y < marked.height(); ++y) {
    int count = 0;
    for (int x = 0; x < marked.width(); ++x)
      count += marked.pixel(x, y) != bare.pixel(x, y) ? 1 : 0;
    if (count > 0)
      seen.push_back(count);
  }
  ASSERT_GT(seen.size(), 8U * scale);
  EXPECT_GT(*std::ranges::min_element(seen), *std::ranges::max_element(seen) / 2);
}

TEST(WideTile, KeepsItsActionsAndTheirPlaceInEverySpan) {
  for (const int span : {2, 3, 4}) {
    const TileSize size{48, span};
    ViewRenderer renderer;
    renderer.render(wideTile(wide("Grandmother's eightieth birthday"), size),
                    {size.width(), size.height()}, 1);
    ASSERT_EQ(renderer.buttons().size(), 2U) << span;
    EXPECT_EQ(renderer.buttons()[0].action.id, "toggle");
    for (const ViewButton& button : renderer.buttons()) {
      EXPECT_NEAR(button.rect.height(), 0.44 * size.body(), 0.01);
      EXPECT_TRUE(size.bodyRect().contains(button.rect));
    }
    EXPECT_FALSE(renderer.buttons()[0].rect.intersects(renderer.buttons()[1].rect));
  }
}

TEST(WideTile, WordsThatLeaveRoomForNothingElseStillBeginAtTheSameEdge) {
  const TileSize size{48, 2};
  WideTileContent content;
  content.middle = rectangle().fill(palette::pink).frame(60, 10);
  const auto startOf = [&] {
    const QImage image = picture(wideTile(content, size), size, 4);
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, image.height() / 2) == palette::pink)
        return x;
    return -1;
  };
  const int start = startOf();
  EXPECT_GT(start, 0);
  content.actions = {{{"toggle"}, "pause.fill", QStringLiteral("Pause"), true}};
  EXPECT_EQ(startOf(), start);
}

TEST(WideTile, SpansPitches) {
  const TileSize size{48, 3};
  EXPECT_DOUBLE_EQ(size.bodyWidth(), 2 * 51 + 0.805 * 48);
  EXPECT_DOUBLE_EQ(size.width(), 2 * 51 + 48);
}

TEST(Symbols, AllStayOnTheirGridAndDiffer) {
  std::vector<QPainterPath> seen;
  for (const std::string_view name : symbolNames()) {
    const QPainterPath path = symbolPath(name);
    EXPECT_FALSE(path.isEmpty()) << name;
    EXPECT_TRUE(QRectF(0, 0, 24, 24).contains(path.boundingRect())) << name;
    EXPECT_THAT(seen, testing::Not(testing::Contains(path))) << name;
    seen.push_back(path);
  }
  EXPECT_EQ(symbolPath("no such thing"), symbolPath("questionmark.square"));
  for (const std::string_view name : symbolNames())
    EXPECT_TRUE(hasSymbol(name)) << name;
}

} // namespace
} // namespace tavrin
