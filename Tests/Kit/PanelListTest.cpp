#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "Tests/Kit/PanelTestSupport.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QScrollBar>
#include <QToolTip>
#include <gmock/gmock.h>
#include <set>

namespace tavrin {
namespace {

using testing::ElementsAre;

std::vector<PanelRow> rows(int count) {
  std::vector<PanelRow> all;
  for (int i = 0; i < count; ++i)
    all.push_back({.id = QString::number(i),
                   .title = "Row " + QString::number(i),
                   .trailing = "4",
                   .unit = "ml",
                   .actions = {{"pin", "Pin"}, {"trash", "Remove"}}});
  return all;
}

struct PanelListTest : testing::Test {
  PanelView* panel = new PanelView({}, PanelView::Width::lists);
  PanelList* list = new PanelList("Items");
  std::vector<std::string> said;
  std::unique_ptr<PanelStage> stage;

  void show(int count) {
    list->setRows(rows(count));
    list->onOpen = [this](int row) { said.push_back("open " + std::to_string(row)); };
    list->onAction = [this](int row, int action) {
      said.push_back("action " + std::to_string(row) + "." + std::to_string(action));
    };
    list->onRemove = [this](int row) { said.push_back("remove " + std::to_string(row)); };
    panel->add(list);
    stage = std::make_unique<PanelStage>(panel);
  }
  QRect rect(int row) { return list->visualRect(list->model()->index(row, 0)); }
};

TEST_F(PanelListTest, IsWorkedByTheKeyboardAlone) {
  show(5);
  list->setFocus(Qt::TabFocusReason);
  stage->press(Qt::Key_Return);
  stage->press(Qt::Key_Down);
  stage->press(Qt::Key_Space);
  stage->press(Qt::Key_Right);
  stage->press(Qt::Key_Right);
  stage->press(Qt::Key_Right);
  stage->press(Qt::Key_Return);
  stage->press(Qt::Key_Left);
  stage->press(Qt::Key_Left);
  stage->press(Qt::Key_Return);
  stage->press(Qt::Key_End);
  stage->press(Qt::Key_Delete);
  EXPECT_THAT(said, ElementsAre("open 0", "open 1", "action 1.1", "open 1", "remove 4"));
}

TEST_F(PanelListTest, ARowsWholeWidthCanBeClickedAndItsButtonsApart) {
  show(3);
  const QRect row = rect(1);
  EXPECT_EQ(row.width(), 304);
  stage->click(list->viewport(), row.topLeft() + QPoint(1, 1));
  stage->click(list->viewport(), QPoint(row.right() - 60, row.center().y()));
  stage->click(list->viewport(), QPoint(row.right() - 8, row.center().y()));
  stage->click(list->viewport(), QPoint(row.right() - 32, row.center().y()));
  EXPECT_THAT(said, ElementsAre("open 1", "open 1", "action 1.1", "action 1.0"));
}

TEST_F(PanelListTest, AReleaseElsewhereOpensNothing) {
  show(3);
  QMouseEvent down(QEvent::MouseButtonPress, QPointF(rect(0).center()),
                   list->viewport()->mapToGlobal(QPointF(rect(0).center())), Qt::LeftButton,
                   Qt::LeftButton, {});
  QApplication::sendEvent(list->viewport(), &down);
  QMouseEvent up(QEvent::MouseButtonRelease, QPointF(rect(2).center()),
                 list->viewport()->mapToGlobal(QPointF(rect(2).center())), Qt::LeftButton, {}, {});
  QApplication::sendEvent(list->viewport(), &up);
  EXPECT_TRUE(said.empty());
}

TEST_F(PanelListTest, DisabledAndReadOnlyRowsDoNotOpen) {
  show(2);
  auto changed = rows(2);
  changed[0].isEnabled = false;
  list->setRows(changed);
  stage->click(list->viewport(), rect(0).center());
  list->setReadOnly(true);
  stage->click(list->viewport(), rect(1).center());
  EXPECT_TRUE(said.empty());
  EXPECT_EQ(list->focusPolicy(), Qt::NoFocus);
}

TEST_F(PanelListTest, TheCurrentRowStaysWithItsIdWhenRowsComeAndGo) {
  show(5);
  list->setCurrentRow(3);
  auto changed = rows(5);
  changed.erase(changed.begin());
  list->setRows(changed);
  EXPECT_EQ(list->row(list->currentRow()).id, "3");
  changed.erase(changed.begin() + 2);
  list->setRows(changed);
  EXPECT_EQ(list->currentRow(), 2);
}

TEST_F(PanelListTest, ThePanelsSizeIsRightBeforeTheLayoutsRequestHasRun) {
  show(100);
  for (const int count : {3, 12, 1}) {
    list->setRows(rows(count));
    const QSize atOnce = panel->fittingSize();
    QApplication::processEvents();
    EXPECT_EQ(atOnce, panel->fittingSize()) << count;
  }
  // Also of what stands in a part that has a layout of its own.
  auto* part = new QWidget;
  auto* words = new PanelText("One line");
  (new QVBoxLayout(part))->addWidget(words);
  panel->add(part);
  QApplication::processEvents();
  const int low = panel->fittingSize().height();
  words->setWords(QString("many words ").repeated(60));
  EXPECT_GT(panel->fittingSize().height(), low);
}

TEST_F(PanelListTest, ThePanelStopsAt560AndTheListScrolls) {
  show(5);
  const int low = panel->fittingSize().height();
  EXPECT_EQ(list->height(), 5 * 36);
  list->setRows(rows(100));
  QApplication::processEvents();
  EXPECT_GT(panel->fittingSize().height(), low);
  EXPECT_EQ(panel->fittingSize().height(), 560);
  EXPECT_LT(list->height(), 560);
  EXPECT_GT(list->verticalScrollBar()->maximum(), 0);
  list->setMaximumVisibleRows(4);
  QApplication::processEvents();
  EXPECT_EQ(list->height(), 4 * 36);
}

TEST_F(PanelListTest, RowsWithSubtitlesAreTall) {
  show(2);
  auto changed = rows(2);
  changed[1].subtitle = "Yesterday";
  list->setRows(changed);
  QApplication::processEvents();
  EXPECT_EQ(rect(0).height(), 44);
}

TEST_F(PanelListTest, SpeaksItsRowsWithTheirNumbers) {
  show(3);
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(list);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Items");
  EXPECT_EQ(spoken->role(), QAccessible::List);
  ASSERT_EQ(spoken->childCount(), 3);
  EXPECT_EQ(spoken->child(1)->text(QAccessible::Name), "Row 1, 4 ml");
}

// One that keeps what it is in a window with pages and other controls.
TEST_F(PanelListTest, ARowHasTheFocusWhileItsListHasAndShowsWhileItsPageDoes) {
  auto* other = new PanelButton(PanelButton::Kind::quiet, "Other", [] {});
  panel->add(other);
  show(30);
  list->setMaximumVisibleRows(4);
  QApplication::processEvents();
  auto* spoken = QAccessible::queryAccessibleInterface(list);
  const auto state = [&](int row) { return spoken->child(row)->state(); };
  list->setFocus(Qt::TabFocusReason);
  list->setCurrentRow(1);
  EXPECT_TRUE(spoken->state().focused);
  EXPECT_TRUE(state(1).focused);
  EXPECT_FALSE(state(0).focused);
  EXPECT_EQ(spoken->focusChild(), spoken->child(1));
  EXPECT_FALSE(state(0).invisible);
  EXPECT_TRUE(state(20).invisible) << "it is scrolled away";
  other->setFocus(Qt::TabFocusReason);
  EXPECT_FALSE(state(1).focused);
  EXPECT_EQ(spoken->focusChild(), nullptr);
  list->hide();
  EXPECT_TRUE(state(0).invisible);
  EXPECT_TRUE(state(1).invisible);
  list->show();
  // A press is as a click, also where the row is another one by then.
  auto* second = spoken->child(1);
  EXPECT_EQ(spoken->indexOfChild(second), 1);
  second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  QApplication::processEvents();
  EXPECT_THAT(said, ElementsAre("open 1"));
  spoken->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  list->setRows(rows(1));
  QApplication::processEvents();
  EXPECT_THAT(said, ElementsAre("open 1"));
  ASSERT_EQ(spoken->childCount(), 1);
  EXPECT_EQ(spoken->child(0)->text(QAccessible::Name), "Row 0, 4 ml");
  EXPECT_EQ(spoken->child(1), nullptr);
  auto changed = rows(1);
  changed[0].isEnabled = false;
  list->setRows(changed);
  EXPECT_TRUE(state(0).disabled);
  EXPECT_TRUE(spoken->child(0)->actionInterface()->actionNames().isEmpty());
}

TEST_F(PanelListTest, OfFiveThousandRowsOnlyTheVisibleAreMade) {
  show(0);
  std::set<int> made;
  list->setRows(5000, [&](int index) {
    made.insert(index);
    return PanelRow{.title = "Row " + QString::number(index)};
  });
  QApplication::processEvents();
  panel->grab();
  EXPECT_LT(made.size(), 80u);
  list->setFocus(Qt::TabFocusReason);
  stage->press(Qt::Key_End);
  panel->grab();
  EXPECT_EQ(list->currentRow(), 4999);
  EXPECT_TRUE(made.contains(4999));
  EXPECT_LT(made.size(), 160u);
}

TEST_F(PanelListTest, StatesLookDifferent) {
  show(1);
  const auto look = [this] { return list->grab().toImage(); };
  list->clearFocus();
  std::vector<QImage> looks{look()};
  auto changed = rows(1);
  changed[0].isChecked = true;
  list->setRows(changed);
  looks.push_back(look());
  list->setRows(rows(1));
  list->setFocus(Qt::TabFocusReason);
  stage->press(Qt::Key_Up);
  looks.push_back(look());
  stage->press(Qt::Key_Right);
  looks.push_back(look());
  changed[0].isChecked = false;
  changed[0].isEnabled = false;
  list->setRows(changed);
  looks.push_back(look());
  for (std::size_t i = 0; i < looks.size(); ++i)
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_NE(looks[i], looks[j]) << i << ' ' << j;
}

TEST_F(PanelListTest, SpaceAndCopyingHaveTheirOwnMeaningWhereTheyAreGivenOne) {
  show(2);
  list->onSpace = [this](int row) { said.push_back("look " + std::to_string(row)); };
  list->onCopy = [this](int row) { said.push_back("copy " + std::to_string(row)); };
  list->setFocus(Qt::TabFocusReason);
  stage->press(Qt::Key_Space);
  stage->press(Qt::Key_C, {}, Qt::ControlModifier);
  stage->press(Qt::Key_Return);
  EXPECT_THAT(said, ElementsAre("look 0", "copy 0", "open 0"));
}

TEST_F(PanelListTest, APointerThatLeavesItsPressDragsAndOpensNothing) {
  show(3);
  list->onDrag = [this](int row) {
    said.push_back("drag " + std::to_string(row));
    return std::vector<std::filesystem::path>();
  };
  const auto send = [&](QEvent::Type type, QPoint at, Qt::MouseButton button) {
    QMouseEvent event(type, QPointF(at), list->viewport()->mapToGlobal(QPointF(at)), button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(list->viewport(), &event);
  };
  const QPoint start = rect(1).center();
  send(QEvent::MouseButtonPress, start, Qt::LeftButton);
  send(QEvent::MouseMove, start + QPoint(2, 0), Qt::NoButton);
  EXPECT_TRUE(said.empty());
  send(QEvent::MouseMove, start + QPoint(30, 0), Qt::NoButton);
  send(QEvent::MouseMove, start + QPoint(60, 0), Qt::NoButton);
  send(QEvent::MouseButtonRelease, start, Qt::LeftButton);
  EXPECT_THAT(said, ElementsAre("drag 1"));
  // Its buttons are pressed, not dragged.
  said.clear();
  const QPoint button(rect(1).right() - 8, rect(1).center().y());
  send(QEvent::MouseButtonPress, button, Qt::LeftButton);
  send(QEvent::MouseMove, button - QPoint(40, 0), Qt::NoButton);
  send(QEvent::MouseButtonRelease, button - QPoint(40, 0), Qt::LeftButton);
  EXPECT_TRUE(said.empty());
}

TEST(PanelGrid, WhereADoubleClickOpensAClickChooses) {
  auto* panel = new PanelView({}, PanelView::Width::grids);
  auto* grid = new PanelGrid("Pictures", 3);
  grid->setCells({{.name = "a"}, {.name = "b"}, {.name = "c"}});
  std::vector<std::string> said;
  const auto say = [&](const char* what) {
    return [&said, what](int index) {
      said.push_back(std::string(what).append(std::to_string(index)));
    };
  };
  grid->setOpensOnDoubleClick(true);
  grid->onOpen = say("open ");
  grid->onCurrentChange = say("choose ");
  grid->onRemove = say("remove ");
  grid->onCopy = say("copy ");
  panel->add(grid);
  PanelStage stage(panel);
  const QPoint second = grid->visualRect(grid->model()->index(1, 0)).center();
  stage.click(grid->viewport(), second);
  QMouseEvent twice(QEvent::MouseButtonDblClick, QPointF(second),
                    grid->viewport()->mapToGlobal(QPointF(second)), Qt::LeftButton, Qt::LeftButton,
                    {});
  QApplication::sendEvent(grid->viewport(), &twice);
  grid->setFocus(Qt::TabFocusReason);
  stage.press(Qt::Key_Right);
  stage.press(Qt::Key_C, {}, Qt::ControlModifier);
  stage.press(Qt::Key_Delete);
  stage.press(Qt::Key_Return);
  EXPECT_THAT(said, ElementsAre("choose 0", "choose 1", "open 1", "choose 2", "copy 2", "remove 2",
                                "open 2"));
  // Cells that changed are told as such: the current one stays.
  grid->setCells({{.name = "a"}, {.name = "B"}, {.name = "c"}});
  EXPECT_EQ(grid->currentCell(), 2);
  EXPECT_EQ(grid->cell(1).name, "B");
}

TEST(PanelGrid, ArrowsMoveBetweenSquaresThatFillTheWidth) {
  auto* panel = new PanelView({}, PanelView::Width::grids);
  auto* grid = new PanelGrid("Colours", 8);
  std::vector<PanelCell> cells;
  for (int i = 0; i < 20; ++i)
    cells.push_back({.name = "Cell " + QString::number(i), .colour = QColor("#30D158")});
  grid->setCells(cells);
  std::vector<int> opened;
  grid->onOpen = [&](int index) { opened.push_back(index); };
  panel->add(grid);
  PanelStage stage(panel);
  const QRect first = grid->visualRect(grid->model()->index(0, 0));
  EXPECT_EQ(first.width(), first.height());
  EXPECT_EQ(grid->visualRect(grid->model()->index(7, 0)).top(), first.top());
  EXPECT_GT(grid->visualRect(grid->model()->index(8, 0)).top(), first.top());
  EXPECT_EQ(grid->height(), 3 * first.height());
  grid->setFocus(Qt::TabFocusReason);
  stage.press(Qt::Key_Return);
  stage.press(Qt::Key_Right);
  stage.press(Qt::Key_Down);
  stage.press(Qt::Key_Space);
  stage.click(grid->viewport(), grid->visualRect(grid->model()->index(19, 0)).center());
  EXPECT_THAT(opened, ElementsAre(0, 9, 19));
  auto* spoken = QAccessible::queryAccessibleInterface(grid)->child(9);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Cell 9");
  spoken->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  QApplication::processEvents();
  EXPECT_THAT(opened, ElementsAre(0, 9, 19, 9));
}

TEST(PanelGrid, ANameThatIsCutIsToldByATooltip) {
  auto* panel = new PanelView({}, PanelView::Width::grids);
  auto* grid = new PanelGrid("Apps", 4);
  const QString cut = "Interplanetary telecommunications administration";
  grid->setCells({{.name = "Mail", .caption = "Mail"},
                  {.name = cut, .caption = cut},
                  {.name = "Web, not installed", .caption = "Web"}});
  panel->add(grid);
  PanelStage stage(panel);
  const auto toolTip = [&](int cell) {
    const QPoint at = grid->visualRect(grid->model()->index(cell, 0)).center();
    QHelpEvent help(QEvent::ToolTip, at, grid->viewport()->mapToGlobal(at));
    QApplication::sendEvent(grid->viewport(), &help);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
  };
  EXPECT_TRUE(toolTip(0).isEmpty()) << "it stands there whole";
  EXPECT_EQ(toolTip(1), cut);
  EXPECT_EQ(toolTip(2), "Web, not installed");
}

TEST_F(PanelListTest, ARowsOwnMenuTakesThePlaceOfItsActions) {
  show(3);
  list->onMenu = [this](int row, QPoint) { said.push_back("menu " + std::to_string(row)); };
  const QPoint at = rect(1).center();
  const QPoint global = list->viewport()->mapToGlobal(at);
  QContextMenuEvent byMouse(QContextMenuEvent::Mouse, at, global);
  QApplication::sendEvent(list->viewport(), &byMouse);
  list->setCurrentRow(2);
  QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(list->viewport(), &byKey);
  EXPECT_THAT(said, ElementsAre("menu 1", "menu 2"));
  EXPECT_EQ(list->findChild<QMenu*>(), nullptr);
}

TEST_F(PanelListTest, WhatTakesTheWordsPlaceBeginsWhereTheyDo) {
  list->setRows({{.title = "Name", .symbol = "folder.fill"}});
  panel->add(list);
  stage = std::make_unique<PanelStage>(panel);
  const auto inkInFrontOf = [&](Qt::LayoutDirection direction) {
    list->setLayoutDirection(direction);
    QApplication::processEvents();
    const QRect words = list->wordsRect(0);
    EXPECT_TRUE(rect(0).contains(words));
    EXPECT_EQ(direction == Qt::LeftToRight ? words.right() : words.left(),
              direction == Qt::LeftToRight ? rect(0).right() : rect(0).left());
    // Between the mark and the words nothing is painted.
    const QImage picture = list->viewport()->grab().toImage();
    const int edge = direction == Qt::LeftToRight ? words.left() - 3 : words.right() + 3;
    std::set<QRgb> colours;
    // Without the focus ring.
    for (int y = words.top() + 6; y <= words.bottom() - 6; ++y)
      colours.insert(picture.pixel(edge, y));
    return colours.size();
  };
  EXPECT_EQ(inkInFrontOf(Qt::LeftToRight), 1U);
  EXPECT_EQ(inkInFrontOf(Qt::RightToLeft), 1U);
}

} // namespace
} // namespace tavrin
