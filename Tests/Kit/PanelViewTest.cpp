#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/Shape.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "Tests/Kit/PanelTestSupport.h"

#include <QFocusFrame>
#include <QImage>
#include <QMenu>
#include <QRadioButton>
#include <QToolTip>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using Kind = PanelButton::Kind;

struct SamplePanel : PanelView {
  SamplePanel() : PanelView({false, false, QColor("#0A84FF")}) {
    setTitle("Pomodoro");
    segments = new PanelSegments("Mode", {"Timer", "Stopwatch"});
    segments->setCurrent(0);
    segments->onChange = [this](int index) { said.push_back(index ? "stopwatch" : "timer"); };
    add(segments);
    stepper = new PanelStepper("Length", "%lld min", 1, 60);
    stepper->setNumber(25);
    stepper->onChange = [this](int value) { said.push_back(std::to_string(value)); };
    add(new PanelField("Custom", stepper));
    sound = new PanelSwitch("Sound");
    sound->onChange = [this](bool on) { said.push_back(on ? "on" : "off"); };
    add(sound);
    start = new PanelButton(Kind::prominent, "Start", [this] { said.push_back("start"); });
    reset = new PanelButton(Kind::quiet, "Reset", [this] { said.push_back("reset"); });
    addRow({start, reset});
    setEditButton("Edit Pomodoro…", [this] { said.push_back("edit"); });
  }
  std::vector<std::string> said;
  PanelSegments* segments;
  PanelStepper* stepper;
  PanelSwitch* sound;
  PanelButton* start;
  PanelButton* reset;
};

struct PanelViewTest : testing::Test {
  SamplePanel* panel = new SamplePanel;
  PanelStage stage{panel};
};

TEST_F(PanelViewTest, TabGoesThroughTheControlsInTheirOrderAndRound) {
  std::vector<std::string> order;
  panel->findChildren<QRadioButton*>().first()->setFocus();
  for (int i = 0; i < 7; ++i) {
    order.push_back(spokenName(QApplication::focusWidget()).toStdString());
    stage.press(Qt::Key_Tab);
  }
  EXPECT_THAT(order,
              ElementsAre("Timer", "Length", "Sound", "Start", "Reset", "Edit Pomodoro…", "Timer"));
}

TEST_F(PanelViewTest, ReturnPressesTheProminentButtonAndSpaceTheFocusedOne) {
  panel->reset->setFocus();
  stage.press(Qt::Key_Return);
  stage.press(Qt::Key_Space);
  panel->stepper->setFocus();
  stage.press(Qt::Key_Enter);
  EXPECT_THAT(panel->said, ElementsAre("start", "reset", "start"));
  panel->start->setEnabled(false);
  stage.press(Qt::Key_Return);
  panel->start->setEnabled(true);
  panel->start->hide();
  stage.press(Qt::Key_Return);
  EXPECT_EQ(panel->said.size(), 3u);
}

TEST_F(PanelViewTest, EscapeIsLeftToThePopover) {
  for (QWidget* widget :
       std::initializer_list<QWidget*>{panel->start, panel->sound, panel->stepper}) {
    widget->setFocus();
    stage.press(Qt::Key_Escape);
    EXPECT_FALSE(stage.wasEscapeTaken) << widget->metaObject()->className();
  }
}

TEST_F(PanelViewTest, OfSegmentsThoseWithRoomToSpareGiveWay) {
  const QStringList animals{"Katze", "Hund", "Fuchs", "Kaninchen", "Schildkröte"};
  PanelSegments row("Animal", animals);
  row.resize(288, row.sizeHint().height());
  row.show();
  for (const auto* segment : row.findChildren<QRadioButton*>())
    EXPECT_GE(segment->width(), segment->minimumSizeHint().width())
        << segment->text().toStdString();
  EXPECT_LE(row.minimumSizeHint().width(), row.width());
}

TEST_F(PanelViewTest, SegmentsAreOneTabStopAndTheArrowsChoose) {
  panel->findChildren<QRadioButton*>().first()->setFocus();
  stage.press(Qt::Key_Right);
  EXPECT_EQ(panel->segments->current(), 1);
  stage.press(Qt::Key_Left);
  EXPECT_THAT(panel->said, ElementsAre("stopwatch", "timer"));
  panel->segments->setCurrent(-1);
  EXPECT_EQ(panel->segments->current(), -1);
  EXPECT_EQ(panel->said.size(), 2u);
}

TEST_F(PanelViewTest, StepperStepsTypesAndKeepsItsBounds) {
  panel->stepper->setFocus();
  stage.press(Qt::Key_Up);
  stage.press(Qt::Key_Down);
  EXPECT_THAT(panel->said, ElementsAre("26", "25"));
  EXPECT_EQ(panel->stepper->text(), "25 min");
  panel->stepper->setNumber(99);
  EXPECT_EQ(panel->stepper->value(), 60);
  const int side = panel->stepper->height();
  stage.click(panel->stepper, QPoint(side / 2, side / 2));
  EXPECT_EQ(panel->stepper->value(), 59);
  stage.click(panel->stepper, QPoint(panel->stepper->width() - side / 2, side / 2));
  EXPECT_EQ(panel->stepper->value(), 60);
}

TEST_F(PanelViewTest, ASwitchTurnsByAClickAnywhereOnItsRow) {
  stage.click(panel->sound, QPoint(panel->sound->width() / 2, 10));
  stage.click(panel->sound, QPoint(panel->sound->width() - 4, 10));
  panel->sound->setOn(true);
  EXPECT_THAT(panel->said, ElementsAre("on", "off"));
}

TEST_F(PanelViewTest, TheRingComesWithTheKeyboardAndGoesWithTheMouse) {
  const auto ring = [this]() -> QWidget* {
    for (auto* frame : stage.window().findChildren<QFocusFrame*>())
      if (frame->isVisible() && frame->widget())
        return frame->widget();
    return nullptr;
  };
  EXPECT_EQ(ring(), panel->start) << "on opening";
  stage.click(panel);
  panel->start->setFocus(Qt::OtherFocusReason);
  EXPECT_EQ(ring(), nullptr);
  stage.press(Qt::Key_Tab);
  EXPECT_EQ(ring(), panel->reset);
  stage.click(panel);
  EXPECT_EQ(ring(), nullptr);
}

TEST_F(PanelViewTest, TheFocusRingIsPaintedInTheAccent) {
  panel->start->setFocus(Qt::TabFocusReason);
  stage.press(Qt::Key_Tab);
  const QImage image = stage.window().grab().toImage();
  const QPoint edge = panel->reset->mapTo(&stage.window(), QPoint(panel->reset->width() / 2, -2));
  EXPECT_GE(contrast(image.pixelColor(edge), panel->colours().ground), 3);
}

TEST_F(PanelViewTest, TellsAssistiveTechnologyNamesAndRoles) {
  EXPECT_EQ(spokenName(panel), "Pomodoro");
  EXPECT_EQ(roleOf(panel), QAccessible::Dialog);
  EXPECT_EQ(roleOf(panel->segments), QAccessible::Grouping);
  EXPECT_EQ(spokenName(panel->segments), "Mode");
  EXPECT_EQ(roleOf(panel->findChildren<QRadioButton*>().first()), QAccessible::RadioButton);
  EXPECT_EQ(roleOf(panel->stepper), QAccessible::SpinBox);
  EXPECT_EQ(roleOf(panel->sound), QAccessible::CheckBox);
  EXPECT_EQ(roleOf(panel->start), QAccessible::Button);
  auto* icon = PanelButton::icon("trash", "Remove", {}, panel);
  EXPECT_EQ(spokenName(icon), "Remove");
  auto* odd = new PanelButton(Kind::quiet, "Bread & butter", {}, panel);
  EXPECT_EQ(spokenName(odd), "Bread & butter");
}

TEST_F(PanelViewTest, EveryControlIsAtLeast24High) {
  for (QWidget* child : panel->findChildren<QWidget*>())
    if (child->focusPolicy() & Qt::TabFocus && child->isVisible()) {
      EXPECT_GE(child->height(), 24) << spokenName(child).toStdString();
    }
}

TEST_F(PanelViewTest, ALongNameIsCutButSpokenWhole) {
  const QString name = QString("A name far longer than the panel ").repeated(4);
  panel->setTitle(name);
  panel->setState("Remaining");
  QApplication::processEvents();
  EXPECT_EQ(panel->width(), 280);
  EXPECT_EQ(spokenName(panel), name);
  for (auto* text : panel->findChildren<PanelText*>()) {
    if (text->text() == name) {
      EXPECT_TRUE(text->isElided());
      EXPECT_EQ(plainToolTip(text), name);
      EXPECT_EQ(QAccessible::queryAccessibleInterface(text)->text(QAccessible::Description), "");
    }
    if (text->text() == "Remaining") {
      EXPECT_FALSE(text->isElided());
    }
  }
}

TEST_F(PanelViewTest, NothingIsCutOrOverlapsWithTheLongestTexts) {
  panel->setEditButton("Edit Claude Code usage…", {});
  panel->start->setTitle("Resume");
  panel->add(new PanelText("Read from Claude Code's own files on this Mac. Nothing is sent "
                           "anywhere, and nothing is kept."));
  QApplication::processEvents();
  const auto children = panel->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  for (QWidget* a : children) {
    if (!a->isVisible() || qobject_cast<QFocusFrame*>(a))
      continue;
    EXPECT_TRUE(panel->rect().contains(a->geometry()));
    if (a->heightForWidth(a->width()) > 0) {
      EXPECT_GE(a->height(), a->heightForWidth(a->width()));
    }
    for (QWidget* b : children)
      if (a != b && b->isVisible() && !qobject_cast<QFocusFrame*>(b)) {
        EXPECT_FALSE(a->geometry().intersects(b->geometry()));
      }
  }
}

TEST_F(PanelViewTest, ABottomRowWithoutRoomShortensTheEditButtonBeforeItStandsInLines) {
  auto* undo = new PanelButton(Kind::faint, "Undo");
  auto* open = new PanelButton(Kind::faint, "Open folder");
  panel->addFooterButton(undo);
  panel->addFooterButton(open);
  PanelButton* edit = nullptr;
  for (auto* button : panel->findChildren<PanelButton*>())
    if (button->title().startsWith("Edit"))
      edit = button;
  const QString name = "Edit the Screenshots…";
  panel->setEditButton(name, {});
  const auto place = [](QWidget* button) { return button->mapTo(button->window(), QPoint(0, 0)); };
  const auto look = [&](const QString& title) {
    open->setTitle(title);
    QApplication::processEvents();
    EXPECT_EQ(spokenName(edit), name);
    EXPECT_GE(edit->width(), edit->widthOf(edit->shownTitle() != name));
    return place(edit).y() == place(open).y() && place(edit).y() == place(undo).y();
  };
  EXPECT_TRUE(look("Open folder"));
  EXPECT_EQ(edit->shownTitle(), "Edit…");
  EXPECT_EQ(plainToolTip(edit), name);
  EXPECT_FALSE(look("Open the folder of all screenshots"));
  EXPECT_EQ(edit->shownTitle(), name);
  open->hide();
  QApplication::processEvents();
  EXPECT_EQ(edit->shownTitle(), name);
  EXPECT_EQ(place(edit).y(), place(undo).y());
}

TEST(PanelViewSize, IsToldWhenItChangesAndOnlyThen) {
  // As in the popover, whose window lays nothing out by itself.
  QWidget window;
  auto* panel = new SamplePanel;
  panel->setParent(&window);
  int calls = 0;
  panel->onFittingSizeChange = [&] {
    ++calls;
    panel->resize(panel->fittingSize());
  };
  window.show();
  QApplication::processEvents();
  calls = 0;
  auto* extra = new PanelText("One more line");
  panel->add(extra);
  QApplication::processEvents();
  EXPECT_EQ(calls, 1);
  panel->setTitle("Another name");
  QApplication::processEvents();
  EXPECT_EQ(calls, 1);
  const int before = panel->fittingSize().height();
  extra->hide();
  QApplication::processEvents();
  EXPECT_EQ(calls, 2);
  EXPECT_LT(panel->fittingSize().height(), before);
}

TEST_F(PanelViewTest, IsMirroredWhereTextRunsFromRightToLeft) {
  EXPECT_LT(panel->start->x(), panel->reset->x());
  panel->setLayoutDirection(Qt::RightToLeft);
  QApplication::processEvents();
  EXPECT_GT(panel->start->x(), panel->reset->x());
  const int side = panel->stepper->height();
  stage.click(panel->stepper, QPoint(side / 2, side / 2));
  EXPECT_EQ(panel->stepper->value(), 26);
}

TEST_F(PanelViewTest, AnotherAppearanceReachesEveryChild) {
  panel->setAppearance({true, false, QColor("#FF453A")});
  const PanelPalette dark = PanelPalette::make({true, false, QColor("#FF453A")});
  EXPECT_EQ(PanelPalette::from(panel->stepper->palette()), dark);
  EXPECT_EQ(PanelPalette::from(panel->sound->palette()), dark);
}

TEST(PanelWidths, AreThoseOfTheThreeKinds) {
  for (const auto& [width, points] :
       {std::pair{PanelView::Width::controls, 280}, std::pair{PanelView::Width::lists, 320},
        std::pair{PanelView::Width::grids, 360}}) {
    PanelView panel({}, width);
    EXPECT_EQ(panel.fittingSize().width(), points);
  }
}

TEST(PanelFigure, DoesNotMoveAsItCounts) {
  PanelFigure figure(44, "88:88");
  figure.setName("Time left");
  figure.setText("1:11");
  const QSize size = figure.sizeHint();
  EXPECT_GE(size.height(), 40);
  for (const char* text : {"0:00", "24:07", "19:58", "9:59"}) {
    figure.setText(text);
    EXPECT_EQ(figure.sizeHint(), size) << text;
  }
  EXPECT_EQ(spokenName(&figure), "Time left, 9:59");
}

TEST(PanelSearchField, EscapeClearsFirstThenBelongsToThePopover) {
  auto* panel = new PanelView({});
  auto* field = new PanelSearchField("Search");
  auto* list = new PanelList("Results");
  list->setRows({{.title = "Hamburg"}});
  panel->add(field);
  panel->add(list);
  field->setList(list);
  std::vector<QString> heard;
  field->onChange = [&](const QString& text) { heard.push_back(text); };
  PanelStage stage(panel);
  field->setFocus();
  stage.press(Qt::Key_H, "h");
  stage.press(Qt::Key_Escape);
  EXPECT_TRUE(stage.wasEscapeTaken);
  stage.press(Qt::Key_Escape);
  EXPECT_FALSE(stage.wasEscapeTaken);
  EXPECT_THAT(heard, ElementsAre("h", ""));
  stage.press(Qt::Key_Down);
  EXPECT_EQ(QApplication::focusWidget(), list);
  EXPECT_EQ(list->currentRow(), 0);
}

TEST(PanelSearchField, KeepsTheKeysForUndoingOnlyWhileThereIsTypingToUndo) {
  PanelStyle::install();
  PanelSearchField field("Search");
  field.ensurePolished();
  const auto takes = [&](int key) {
    QKeyEvent event(QEvent::ShortcutOverride, key, Qt::ControlModifier);
    event.ignore();
    QApplication::sendEvent(&field, &event);
    return event.isAccepted();
  };
  EXPECT_FALSE(takes(Qt::Key_Z));
  field.insert("cat");
  EXPECT_TRUE(takes(Qt::Key_Z));
  field.undo();
  EXPECT_FALSE(takes(Qt::Key_Z));
  EXPECT_TRUE(takes(Qt::Key_A)) << "every other key is the line's";
  field.redo();
  field.forgetTyping();
  EXPECT_EQ(field.text(), "cat");
  EXPECT_FALSE(takes(Qt::Key_Z));
  field.insert("s");
  field.reset();
  EXPECT_EQ(field.text(), "");
  EXPECT_FALSE(takes(Qt::Key_Z));
}

TEST(ViewWidget, OnePressesItsButtonByReturnTooAndAssistiveTechnologySeesAButton) {
  auto* panel = new PanelView({});
  auto* cover = new ViewWidget({40, 40});
  int presses = 0;
  int others = 0;
  panel->add(cover);
  panel->add(new PanelButton(PanelButton::Kind::prominent, "Pause", [&] { ++others; }));
  PanelStage stage(panel);
  EXPECT_EQ(roleOf(cover), QAccessible::Graphic);
  cover->setView(
      rectangle().fill(palette::red).button({"raise", [&] { ++presses; }}, "Show Player"));
  QApplication::processEvents();
  cover->grab();
  EXPECT_EQ(roleOf(cover), QAccessible::Button);
  auto* actions = QAccessible::queryAccessibleInterface(cover)->actionInterface();
  ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
  actions->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(presses, 1);
  cover->setFocus(Qt::TabFocusReason);
  for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
    stage.press(key);
  EXPECT_EQ(presses, 4);
  EXPECT_EQ(others, 0);
}

TEST(PanelStyle, ToolTipsKeepTheirLookWhenThePanelsComes) {
  QApplication::setStyle("fusion");
  PanelStyle::dressToolTips({.dark = true});
  const QFont font = panelFont(PanelTextStyle::caption);
  for (int panels = 0; panels < 2; ++panels) {
    EXPECT_EQ(QToolTip::font().family(), font.family()) << panels;
    EXPECT_EQ(QToolTip::font().pixelSize(), font.pixelSize()) << panels;
    EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase),
              PanelPalette::make({.dark = true}).field)
        << panels;
    PanelView panel({});
  }
  PanelStyle::dressToolTips({});
}

TEST(PanelStyle, MenusAreCutToTheirCornersWhereNobodyMixesWindows) {
  const auto maskOf = [](bool mixes) {
    PanelStyle::install();
    PanelStyle::setMixesWindows([mixes] { return mixes; });
    QMenu menu;
    menu.addAction("One");
    menu.popup({});
    QApplication::processEvents();
    const QRegion mask = menu.mask();
    EXPECT_TRUE(mixes || mask.contains(menu.rect().center()));
    PanelStyle::setMixesWindows(nullptr);
    return mask;
  };
  EXPECT_TRUE(maskOf(true).isEmpty());
  const QRegion cut = maskOf(false);
  EXPECT_FALSE(cut.contains(QPoint(0, 0)));
  EXPECT_TRUE(cut.contains(QPoint(0, 12)));
}

TEST(PanelTextEdit, TabMovesOnAndPaperKeepsContrast) {
  PanelTextEdit note("Note", "Click to write a note");
  EXPECT_TRUE(note.tabChangesFocus());
  for (const char* paper : {"#FBBF24", "#000000", "#FFFFFF", "#4C1D95"}) {
    note.setPaper(QColor(paper));
    EXPECT_GE(contrast(note.palette().color(QPalette::Text), QColor(paper)), 4.5) << paper;
    EXPECT_GE(contrast(note.palette().color(QPalette::PlaceholderText), QColor(paper)), 4.5)
        << paper;
  }
  int calls = 0;
  note.onChange = [&](const QString&) { ++calls; };
  note.setText("a");
  EXPECT_EQ(calls, 0);
  note.insertPlainText("b");
  EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace tavrin
