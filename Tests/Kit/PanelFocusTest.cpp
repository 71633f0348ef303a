#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "Tests/Kit/PanelTestSupport.h"

#include <QSlider>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

using ButtonKind = PanelButton::Kind;

std::string focusedName(const PanelStage& stage) {
  QWidget* focus = const_cast<PanelStage&>(stage).window().focusWidget();
  return focus == nullptr ? "nobody" : spokenName(focus).toStdString();
}

TEST(PanelFocusOnOpening, GoesToTheFirstListFieldOrProminentButton) {
  auto* panel = new PanelView({});
  auto* slider = new QSlider(Qt::Horizontal);
  slider->setAccessibleName("Position");
  panel->setEditButton("Edit", [] {});
  panel->add(slider);
  panel->add(new PanelButton(ButtonKind::quiet, "Before"));
  panel->add(new PanelButton(ButtonKind::prominent, "Play"));
  PanelStage stage(panel);
  EXPECT_EQ(focusedName(stage), "Play");
  EXPECT_TRUE(stage.window().testAttribute(Qt::WA_KeyboardFocusChange));
}

TEST(PanelFocusOnOpening, AListBeginsWithItsNewestRowEachTime) {
  auto* panel = new PanelView({});
  auto* list = new PanelList("Files");
  list->setRows(
      {{.id = "new", .title = "New"}, {.id = "b", .title = "B"}, {.id = "c", .title = "C"}});
  panel->add(list);
  panel->add(new PanelButton(ButtonKind::prominent, "Copy"));
  PanelStage stage(panel);
  EXPECT_EQ(focusedName(stage), "Files");
  EXPECT_EQ(list->currentRow(), 0);
  stage.press(Qt::Key_Down);
  stage.press(Qt::Key_Down);
  EXPECT_EQ(list->currentRow(), 2);
  stage.window().hide();
  stage.window().show();
  QApplication::processEvents();
  EXPECT_EQ(list->currentRow(), 0);
}

TEST(PanelFocusOnOpening, FollowsWhatThePanelShowsUntilTheUserDoesSomething) {
  auto* panel = new PanelView({});
  auto* empty = new PanelEmptyState("music.note", "Nothing is playing");
  auto* play = new PanelButton(ButtonKind::prominent, "Play");
  auto* other = new PanelButton(ButtonKind::prominent, "Other");
  panel->add(empty);
  panel->setEditButton("Edit", [] {});
  panel->add(play);
  panel->add(other);
  play->hide();
  other->hide();
  PanelStage stage(panel);
  EXPECT_EQ(focusedName(stage), "Edit");
  other->show();
  QApplication::processEvents();
  EXPECT_EQ(focusedName(stage), "Other");
  play->show();
  QApplication::processEvents();
  EXPECT_EQ(focusedName(stage), "Play");
  stage.press(Qt::Key_Tab);
  EXPECT_EQ(focusedName(stage), "Other");
  other->setTitle("Other");
  QApplication::processEvents();
  EXPECT_EQ(focusedName(stage), "Other") << "the user went there";
  other->hide();
  QApplication::processEvents();
  EXPECT_EQ(focusedName(stage), "Play") << "what had it is gone";
}

TEST(PanelFocusOnOpening, TheBottomRowIsLastWhateverWasAddedLater) {
  auto* panel = new PanelView({});
  panel->setEditButton("Edit", [] {});
  auto* empty = new PanelEmptyState("person", "Signed out");
  panel->add(empty);
  empty->setStep("Try Again", [] {});
  PanelStage stage(panel);
  EXPECT_EQ(focusedName(stage), "Try Again");
  stage.press(Qt::Key_Tab);
  EXPECT_EQ(focusedName(stage), "Edit");
}

TEST(PanelFocusOnOpening, WhatReturnMeansIsMarkedWhileOneTypes) {
  auto* panel = new PanelView({}, PanelView::Width::grids);
  auto* field = new PanelSearchField("Search");
  auto* grid = new PanelGrid("Emoji", 4);
  grid->setCells({{.name = "a", .text = "a"}, {.name = "b", .text = "b"}});
  field->setList(grid);
  panel->add(field);
  panel->add(grid);
  PanelStage stage(panel);
  EXPECT_EQ(focusedName(stage), "Search");
  const auto groundOf = [&](int cell) {
    const QRect place = grid->visualRect(grid->model()->index(cell, 0));
    return grid->grab().toImage().pixelColor(place.left() + 6, place.center().y()).rgb();
  };
  EXPECT_EQ(groundOf(0), panel->colours().rowSelected.rgb());
  EXPECT_NE(groundOf(1), panel->colours().rowSelected.rgb());
  stage.press(Qt::Key_Down);
  EXPECT_EQ(grid->currentCell(), 0);
  EXPECT_EQ(focusedName(stage), "Emoji");
}

TEST(PanelFocusLater, GoesBackToWhatComesBackUntilTheUserDoesSomething) {
  auto* panel = new PanelView({}, PanelView::Width::lists);
  auto* list = new PanelList("Files");
  list->setRows({{.title = "Only"}});
  panel->add(list);
  panel->setEditButton("Edit Files", [] {});
  PanelStage stage(panel);
  const auto show = [&](bool shows) {
    list->setRows(shows ? std::vector<PanelRow>{{.title = "Only"}} : std::vector<PanelRow>{});
    list->setVisible(shows);
    QApplication::processEvents();
  };
  stage.press(Qt::Key_Delete);
  show(false);
  EXPECT_EQ(focusedName(stage), "Edit Files");
  stage.press(Qt::Key_Control, {}, Qt::ControlModifier);
  show(true);
  EXPECT_EQ(focusedName(stage), "Files") << "a shortcut has brought it back";
  EXPECT_EQ(list->currentRow(), 0);
  show(false);
  stage.press(Qt::Key_A, "a");
  show(true);
  EXPECT_EQ(focusedName(stage), "Edit Files") << "the user went on elsewhere";
}

TEST(PanelHeight, IsKeptWhileOneSearches) {
  auto* panel = new PanelView({}, PanelView::Width::lists);
  auto* field = new PanelSearchField("Search");
  auto* list = new PanelList("Apps");
  const auto show = [&](int count) {
    std::vector<PanelRow> rows(static_cast<std::size_t>(count), PanelRow{.title = "App"});
    list->setRows(std::move(rows));
    QApplication::processEvents();
  };
  show(7);
  panel->add(field);
  panel->add(list);
  PanelStage stage(panel);
  const int whole = panel->fittingSize().height();
  field->setText("x");
  show(1);
  EXPECT_EQ(panel->fittingSize().height(), whole);
  show(9);
  const int longer = panel->fittingSize().height();
  EXPECT_GT(longer, whole);
  show(0);
  EXPECT_EQ(panel->fittingSize().height(), longer);
  field->clear();
  EXPECT_LT(panel->fittingSize().height(), whole);
}

/// Whoever holds the panel took a size from it in between: the next one is told, though it is the
/// one that was told before.
TEST(PanelHeight, IsToldWheneverItIsNotWhatTheHolderHas) {
  PanelView panel({});
  auto* extra = new PanelText("More\nwords\nthan\nbefore");
  panel.add(extra);
  panel.show();
  QSize held = panel.sizeHint();
  panel.onFittingSizeChange = [&] { held = panel.sizeHint(); };
  QApplication::processEvents();
  const QSize small = panel.fittingSize();
  extra->setWords("One\nmore\nline\nof\nwords");
  panel.layout()->activate();
  held = panel.sizeHint();
  ASSERT_NE(held, small);
  extra->setWords("More\nwords\nthan\nbefore");
  QApplication::processEvents();
  EXPECT_EQ(held, small);
}

TEST(PanelTextScale, MakesTextsRowsBoxesAndPanelsLarger) {
  const auto sizes = [] {
    PanelView panel({});
    PanelSwitch on("Sound");
    QCheckBox box("Count weekends");
    PanelList list("Rows");
    list.setRows({{.title = "A", .subtitle = "b"}});
    panel.add(&box);
    box.ensurePolished();
    return std::vector<int>{panelFont(PanelTextStyle::body).pixelSize(), panel.minimumWidth(),
                            list.rowHeight(), on.sizeHint().height(),
                            box.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &box)};
  };
  const auto usual = sizes();
  ASSERT_TRUE(setPanelTextScale(1.5));
  EXPECT_FALSE(setPanelTextScale(1.51)) << "less than a step";
  const auto large = sizes();
  setPanelTextScale(1);
  for (std::size_t i = 0; i < usual.size(); ++i)
    EXPECT_NEAR(large[i], usual[i] * 1.5, 1) << i;
}

TEST(PanelPaint, AFilesExtensionStaysAndWordsTakeTheLinesThereAre) {
  QImage image(120, 40, QImage::Format_ARGB32_Premultiplied);
  const auto painted = [&](const auto& paint) {
    image.fill(Qt::white);
    QPainter painter(&image);
    paint(painter);
    painter.end();
    return image;
  };
  const QFont font = panelFont(PanelTextStyle::caption);
  const auto end = [](const QImage& from) { return from.copy(90, 0, 30, 40); };
  const auto line = [&](const QString& name, Qt::TextElideMode mode) {
    return painted([&](QPainter& painter) {
      panelPaint::line(painter, name, {0, 0, 120, 20}, font, Qt::black, Qt::AlignLeading, mode);
    });
  };
  const QString a = "a very long name of a scanned document.pdf";
  const QString b = "a very long name of a scanned document.txt";
  EXPECT_EQ(line(a, Qt::ElideRight), line(b, Qt::ElideRight)) << "one cannot tell them";
  EXPECT_NE(end(line(a, Qt::ElideMiddle)), end(line(b, Qt::ElideMiddle)));
  const auto words = painted([&](QPainter& painter) {
    panelPaint::lines(painter, "Document Viewer", {0, 0, 60, 40}, font, Qt::black);
  });
  const QImage below = words.copy(0, 20, 60, 20);
  QImage blank(60, 20, QImage::Format_ARGB32_Premultiplied);
  blank.fill(Qt::white);
  EXPECT_NE(below, blank) << "a second line";
}

} // namespace
} // namespace tavrin
