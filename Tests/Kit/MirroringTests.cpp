#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QApplication>
#include <QImage>
#include <algorithm>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

/// The interface from right to left while it lives.
struct RightToLeft {
  RightToLeft() { QApplication::setLayoutDirection(Qt::RightToLeft); }
  ~RightToLeft() { QApplication::setLayoutDirection(Qt::LeftToRight); }
};

AnyView square(const QColor& colour) {
  return rectangle().fill(colour).frame(10, 10);
}

/// Where on a strip of 40 by 10 points that colour begins, -1 for nowhere.
int startOf(const QColor& colour, const AnyView& view) {
  ViewRenderer renderer;
  renderer.render(view, {40, 10}, 1);
  for (int x = 0; x < 40; ++x)
    if (renderer.image().pixelColor(x, 5) == colour)
      return x;
  return -1;
}

TEST(Mirroring, RowsAlignmentsPaddingsAndTextsRunTheOtherWay) {
  const QColor red(255, 0, 0);
  const QColor blue(0, 0, 255);
  const AnyView row = hstack({square(red), square(blue)}).fillWidth();
  const AnyView padded = square(red).padding({4, 0, 0, 0}).fillWidth();
  EXPECT_EQ(startOf(red, row), 0);
  EXPECT_EQ(startOf(blue, row), 10);
  EXPECT_EQ(startOf(red, padded), 4);
  const RightToLeft mirrored;
  EXPECT_EQ(startOf(red, row), 30);
  EXPECT_EQ(startOf(blue, row), 20);
  EXPECT_EQ(startOf(red, padded), 26);
  const QColor white(255, 255, 255);
  EXPECT_GT(startOf(white, text("I").colour(white).frame(40, 10, Alignment::leading)), 20);
}

TEST(Mirroring, LevelsGrowAndMarksStandTheOtherWay) {
  const QColor red(255, 0, 0);
  const AnyView level = bar(0.5).tint(red).track({}).frame(40, 10);
  const AnyView moved = square(red).offset(5, 0).frame(40, 10);
  EXPECT_EQ(startOf(red, moved), 20);
  EXPECT_LT(startOf(red, level), 5);
  const RightToLeft mirrored;
  EXPECT_EQ(startOf(red, moved), 10);
  EXPECT_GE(startOf(red, level), 20);
}

TEST(Mirroring, ClocksAndWhatPlaysStayAsTheyAre) {
  const QColor red(255, 0, 0);
  const RightToLeft mirrored;
  const AnyView row = hstack({square(red), square(QColor(0, 0, 255))}).fillWidth();
  EXPECT_EQ(startOf(red, row.unmirrored()), 0);
  EXPECT_EQ(startOf(red, hstack({row.unmirrored().frame(20, 10), square(red)})), 5)
      << "what stands beside it is mirrored";
}

TEST(Mirroring, AWideTilesButtonsAreClickedWhereTheyStand) {
  WideTileContent content;
  content.figure = "25:00";
  content.actions = {{.action = {"play", [] {}}, .symbol = "play.fill", .label = "Play"}};
  const TileSize size{64, 3};
  const auto place = [&] {
    ViewRenderer renderer;
    renderer.render(wideTile(content, size), {size.width(), size.height()}, 1);
    return renderer.buttons().at(0).rect.center().x();
  };
  const double right = place();
  const RightToLeft mirrored;
  EXPECT_NEAR(place(), size.width() - right, 1);
}

/// The first and the last column that is inked in each of the lines of a widget's picture.
std::vector<std::pair<int, int>> inkedLines(QWidget& widget) {
  const QImage image = widget.grab().toImage();
  std::vector<std::pair<int, int>> lines;
  bool isBetween = true;
  for (int y = 0; y < image.height(); ++y) {
    int first = -1;
    int last = -1;
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, y).lightness() < 128) {
        first = first < 0 ? x : first;
        last = x;
      }
    if (first >= 0 && isBetween)
      lines.emplace_back(first, last);
    if (first >= 0)
      lines.back() = {std::min(lines.back().first, first), std::max(lines.back().second, last)};
    isBetween = first < 0;
  }
  return lines;
}

TEST(Mirroring, TheLinesOfWordsAndPromptsBeginAtTheRight) {
  const RightToLeft mirrored;
  PanelText words(QString::fromUtf8("ששששש ששששש ששששש ששששש ששששש ששששש"));
  words.setPalette(PanelPalette::make({}).palette());
  words.setFixedWidth(120);
  words.resize(120, words.heightForWidth(120) + 8);
  const auto lines = inkedLines(words);
  ASSERT_GT(lines.size(), 1U);
  for (const auto& [first, last] : lines)
    EXPECT_NEAR(last, lines.back().second, 1) << "a line that is broken, and the last one";
  const auto pictureOf = [](const QString& prompt) {
    PanelTextEdit edit("Note", prompt);
    edit.setPalette(PanelPalette::make({}).palette());
    edit.setPaper(Qt::white);
    edit.resize(200, 100);
    return edit.grab().toImage();
  };
  const QImage empty = pictureOf("Prompt");
  const QImage bare = pictureOf("");
  int left = 200;
  for (int y = 4; y < 30; ++y)
    for (int x = 0; x < 200; ++x)
      if (empty.pixel(x, y) != bare.pixel(x, y))
        left = std::min(left, x);
  EXPECT_GT(left, 100) << "the prompt stands at the right";
  EXPECT_LT(left, 180);
}

} // namespace
} // namespace tavrin
