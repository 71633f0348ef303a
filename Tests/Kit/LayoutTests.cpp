#include "Tests/Kit/Pixels.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

using testing::ElementsAre;

AnyView block(double width, double height) {
  return rectangle().fill(palette::red).frame(width, height);
}

AnyView named(const AnyView& view, const char* name) {
  return view.accessibility(QString::fromUtf8(name));
}

/// Where the named parts of a view come to lie.
std::vector<QRectF> places(const AnyView& view, const QSizeF& room) {
  ViewRenderer renderer;
  renderer.render(view, room, 1);
  std::vector<QRectF> result;
  for (const AccessibleElement& element : renderer.elements())
    result.push_back(element.rect);
  return result;
}

TEST(Measure, FollowsEachModifier) {
  struct Case {
    const char* what;
    AnyView view;
    QSizeF offer;
    QSizeF expected;
  };
  const QSizeF room(100, 60);
  const Case cases[] = {
      {"empty", {}, room, {0, 0}},
      {"form takes the room", rectangle(), room, {100, 60}},
      {"circle the largest square", circle(), room, {60, 60}},
      {"ring likewise", ring(0.5), room, {60, 60}},
      {"fixed frame", rectangle().frame(10, 20), room, {10, 20}},
      {"frame larger than the room", rectangle().frame(200, 20), room, {200, 20}},
      {"maximum width of a form", rectangle().frame({.maxWidth = 30}), room, {30, 60}},
      {"minimum width of a small content", block(5, 5).frame({.minWidth = 30}), room, {30, 5}},
      {"fill", block(5, 5).fill(), room, {100, 60}},
      {"fill with a content too large", block(500, 500).fill(), room, {100, 60}},
      {"padding", block(5, 5).padding(1, 2), room, {7, 9}},
      {"quarter turn", block(5, 9).quarterTurns(1), room, {9, 5}},
      {"half turn", block(5, 9).quarterTurns(2), room, {5, 9}},
      {"rotation keeps the room", block(5, 9).rotation(90), room, {5, 9}},
      {"overlay keeps the room", block(5, 9).overlay(block(50, 50)), room, {5, 9}},
      {"row", hstack({block(10, 5), block(20, 8)}).spacing(3), room, {33, 8}},
      {"column", vstack({block(10, 5), block(20, 8)}).spacing(3), room, {20, 16}},
      {"no gap beside an empty view",
       hstack({block(10, 5), {}, block(20, 8)}).spacing(3),
       room,
       {33, 8}},
      {"layers", zstack({block(10, 30), block(20, 8)}), room, {20, 30}},
      {"row with a spacer", hstack({block(10, 5), spacer()}), room, {100, 5}},
      {"no symbol beyond the room", symbol("plus"), room, {60, 60}},
      {"sized symbol", symbol("plus").size(12), room, {12, 12}},
  };
  ViewPainter painter;
  for (const Case& c : cases)
    EXPECT_EQ(painter.measure(c.view, c.offer), c.expected) << c.what;
}

TEST(Stack, GivesRigidViewsTheirRoomAndSharesTheRest) {
  const AnyView row =
      hstack({named(rectangle(), "a"), named(block(20, 10), "b"), named(rectangle(), "c")})
          .spacing(5);
  EXPECT_THAT(places(row, {100, 40}),
              ElementsAre(QRectF(0, 0, 35, 40), QRectF(40, 15, 20, 10), QRectF(65, 0, 35, 40)));
}

TEST(Stack, SpacersGetWhatNobodyElseWants) {
  const AnyView row = hstack({named(text("a long caption indeed").size(10), "text"), spacer(),
                              named(block(20, 10), "end")});
  const auto at = places(row, {400, 40});
  ViewPainter painter;
  EXPECT_EQ(at[0].width(),
            painter.measure(text("a long caption indeed").size(10), {400, 40}).width());
  EXPECT_EQ(at[1].right(), 400);
}

TEST(Stack, AlignsAcrossItsAxis) {
  const auto top = [](Alignment alignment) {
    return places(hstack({named(block(10, 10), "a"), block(10, 30)}).align(alignment), {20, 30})[0]
        .top();
  };
  EXPECT_EQ(top(Alignment::top), 0);
  EXPECT_EQ(top(Alignment::centre), 10);
  EXPECT_EQ(top(Alignment::bottom), 20);
}

TEST(FirstFitting, TakesTheFirstThatCanDoWithTheRoom) {
  const AnyView choice = firstFitting(
      {named(block(50, 10), "wide"), named(block(20, 10), "small"), named(block(10, 10), "least")});
  const auto chosen = [&](double width) {
    ViewRenderer renderer;
    renderer.render(choice, {width, 10}, 1);
    return renderer.elements().front().label.toStdString();
  };
  EXPECT_EQ(chosen(50), "wide");
  EXPECT_EQ(chosen(49), "small");
  EXPECT_EQ(chosen(5), "least");
}

TEST(Equality, IsStructural) {
  const auto view = [](const char* figure, const QColor& tint, const char* action) {
    return AnyView(hstack({text(figure).size(12), ring(0.3).tint(tint)})
                       .padding(3)
                       .button({action, [] {}}, QStringLiteral("Start")));
  };
  const AnyView one = view("1", palette::red, "go");
  EXPECT_EQ(one, view("1", palette::red, "go"));
  EXPECT_NE(one, view("2", palette::red, "go"));
  EXPECT_NE(one, view("1", palette::blue, "go"));
  EXPECT_NE(one, view("1", palette::red, "stop"));
  EXPECT_NE(one, AnyView());
  EXPECT_NE(AnyView(rectangle()), AnyView(text("")));
  EXPECT_EQ(AnyView(), AnyView());

  const auto dial = [](int key) {
    return canvas(key, [](QPainter&, const QRectF&, const int&) {});
  };
  EXPECT_EQ(dial(1), dial(1));
  EXPECT_NE(dial(1), dial(2));
}

TEST(Renderer, PaintsOnlyWhatChanged) {
  ViewRenderer renderer;
  const auto view = [](double progress) { return AnyView(ring(progress)); };
  EXPECT_TRUE(renderer.render(view(0.5), {40, 40}, 1));
  EXPECT_FALSE(renderer.render(view(0.5), {40, 40}, 1));
  EXPECT_TRUE(renderer.render(view(0.6), {40, 40}, 1));
  EXPECT_TRUE(renderer.render(view(0.6), {40, 40}, 2));
  EXPECT_EQ(renderer.image().size(), QSize(80, 80));
  EXPECT_TRUE(renderer.render(view(0.6), {48, 40}, 2));
  EXPECT_EQ(renderer.image().size(), QSize(96, 80));
}

TEST(Renderer, FindsTheUppermostButton) {
  ViewRenderer renderer;
  const AnyView view =
      zstack({rectangle().button({"all"}, QStringLiteral("All")),
              block(10, 10).button({"corner"}, QStringLiteral("Corner")).padding({30, 0, 0, 20})})
          .align(Alignment::topLeading);
  renderer.render(view, {40, 30}, 2);
  const auto at = [&](double x, double y) {
    const ViewAction* action = renderer.buttonAt({x, y});
    return action ? action->id : "none";
  };
  EXPECT_EQ(at(35, 5), "corner");
  EXPECT_EQ(at(5, 5), "all");
  EXPECT_EQ(at(41, 5), "none");
  EXPECT_THAT(
      renderer.elements(),
      ElementsAre(AccessibleElement{QStringLiteral("All"), {}, QRectF(0, 0, 40, 30), true},
                  AccessibleElement{QStringLiteral("Corner"), {}, QRectF(30, 0, 10, 10), true}));
}

TEST(Renderer, KeptLayersKeepTheirButtonsAndPixels) {
  ViewRenderer renderer;
  const AnyView still = zstack({circle().fill(palette::green), symbol("plus").padding(4)})
                            .button({"add"}, QStringLiteral("Add"))
                            .frame(20, 20);
  const auto view = [&](const AnyView& part, double turn) {
    return AnyView(hstack({part, ring(turn).frame(20, 20)}));
  };
  for (const double turn : {0.1, 0.2, 0.3}) {
    renderer.render(view(still.cached(), turn), {41, 21}, 2);
    EXPECT_EQ(renderer.image(), rendered(view(still, turn), {41, 21}, 2)) << turn;
    ASSERT_NE(renderer.buttonAt({5, 10}), nullptr) << turn;
    EXPECT_EQ(renderer.buttonAt({5, 10})->id, "add");
  }
}

TEST(Layout, WhatReachesOverItsFrameIsKeptWhole) {
  const QColor red(255, 0, 0);
  const AnyView reaching = rectangle().fill(red).frame(8, 8).offset(0, 2);
  const auto shown = [](const AnyView& view) {
    return inkedRect(rendered(view.frame({.maxWidth = 20, .maxHeight = 20}), {20, 20}, 2));
  };
  EXPECT_EQ(shown(reaching.cached()), shown(reaching));
}

} // namespace
} // namespace tavrin
