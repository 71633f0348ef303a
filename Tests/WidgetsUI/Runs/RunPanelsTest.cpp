#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Runs/PomodoroPanelView.h"
#include "TavrinWidgetsUI/Runs/StopwatchPanelView.h"
#include "TavrinWidgetsUI/Runs/TimerPanelView.h"
#include "Tests/Kit/PanelTestSupport.h"
#include "Tests/Support/ManualRunLoop.h"

#include <QLabel>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;

/// The titles of the buttons that can be seen, as Tab goes through them; those that cannot be
/// pressed in brackets.
std::vector<std::string> buttons(const QWidget& panel) {
  std::vector<std::string> titles;
  QWidget* next = panel.nextInFocusChain();
  for (; next != &panel; next = next->nextInFocusChain())
    if (dynamic_cast<PanelButton*>(next) && next->isVisible())
      titles.push_back((next->isEnabled() ? QString("%1") : QString("(%1)"))
                           .arg(spokenName(next))
                           .toStdString());
  return titles;
}

PanelButton* button(const QWidget& panel, const QString& title) {
  for (auto* found : panel.findChildren<PanelButton*>())
    if (spokenName(found) == title)
      return found;
  return nullptr;
}

struct StopwatchPanelTest : testing::Test {
  ManualClock clock{{800'000'000}};
  StopwatchRun run;
  int edits = 0;
  StopwatchPanelView* panel =
      new StopwatchPanelView({}, {.name = [] { return QString("Laps of the lake"); },
                                  .run = [this]() -> const StopwatchRun& { return run; },
                                  .now = [this] { return clock.now(); },
                                  .toggle = [this] { change([this] { run.toggle(clock.now()); }); },
                                  .lap = [this] { change([this] { run.lap(clock.now()); }); },
                                  .reset = [this] { change([this] { run.reset(); }); },
                                  .edit = [this] { ++edits; }});
  PanelStage stage{panel};

  void change(const std::function<void()>& what) {
    what();
    panel->refresh();
    QApplication::processEvents();
  }
  void pass(double seconds) {
    change([&] { clock.advance(seconds); });
  }
  PanelFigure* figure() const {
    for (auto* child : panel->findChildren<QWidget*>())
      if (auto* found = dynamic_cast<PanelFigure*>(child))
        return found;
    return nullptr;
  }
  PanelList& laps() const {
    for (auto* child : panel->findChildren<QWidget*>())
      if (auto* found = dynamic_cast<PanelList*>(child))
        return *found;
    throw std::logic_error("no list");
  }
};

TEST_F(StopwatchPanelTest, CountsInTenthsWithLaps) {
  EXPECT_EQ(panel->title(), "Laps of the lake");
  EXPECT_EQ(figure()->text(), "00:00.0");
  EXPECT_THAT(buttons(*panel), ElementsAre("Start", "(Lap)", "(Reset)", "Edit Stopwatch…"));
  EXPECT_FALSE(laps().isVisible());
  const int empty = panel->fittingSize().height();

  stage.press(Qt::Key_Return);
  ASSERT_TRUE(run.isRunning());
  pass(65.4);
  EXPECT_EQ(figure()->text(), "01:05.4");
  stage.click(button(*panel, "Lap"));
  pass(10);
  stage.click(button(*panel, "Lap"));
  EXPECT_THAT(buttons(*panel), ElementsAre("Pause", "Lap", "Reset", "Edit Stopwatch…"));
  ASSERT_EQ(laps().count(), 2);
  EXPECT_EQ(laps().row(0).title, "2") << "the latest on top";
  EXPECT_EQ(laps().row(0).trailing, "00:10.0");
  EXPECT_TRUE(laps().row(0).unit.endsWith("01:15.4"));
  EXPECT_EQ(laps().row(1).trailing, "01:05.4");
  EXPECT_GT(panel->fittingSize().height(), empty);

  stage.press(Qt::Key_Return);
  EXPECT_FALSE(run.isRunning());
  EXPECT_THAT(buttons(*panel), ElementsAre("Start", "(Lap)", "Reset", "Edit Stopwatch…"));
  stage.click(button(*panel, "Reset"));
  EXPECT_EQ(figure()->text(), "00:00.0");
  EXPECT_FALSE(laps().isVisible());
  stage.click(button(*panel, "Edit Stopwatch…"));
  EXPECT_EQ(edits, 1);
}

TEST_F(StopwatchPanelTest, ManyLapsScrollAndStayWhereTheyAre) {
  run.start(clock.now());
  for (int lap = 0; lap < 1000; ++lap) {
    clock.advance(3.7);
    run.lap(clock.now());
  }
  pass(0.1);
  EXPECT_LE(panel->fittingSize().height(), 560);
  EXPECT_EQ(laps().count(), 1000);
  laps().setCurrentRow(400);
  pass(0.1);
  EXPECT_EQ(laps().currentRow(), 400) << "time going on leaves the list alone";
  EXPECT_EQ(laps().row(999).title, "1");
}

struct TimerPanelTest : testing::Test {
  ManualClock clock{{800'000'000}};
  TimerModel model{clock, DockWidget(UUID(), "Tea", 1, TimerSettings{}, 1), TimerRun{}};
  TimerPanelView* panel = new TimerPanelView({}, model, [] {});
  PanelStage stage{panel};

  void SetUp() override {
    model.onChange = [this] { panel->refresh(); };
  }
};

TEST_F(TimerPanelTest, OffersLengthsToCountdownsOnly) {
  EXPECT_THAT(buttons(*panel),
              ElementsAre("5m", "10m", "15m", "25m", "45m", "Start the custom length", "Start",
                          "(Reset)", "Edit Timer…"));
  model.setWidget({UUID(), "Tea", 1, TimerSettings{.presets = {60, 120}}, 1});
  panel->refresh();
  EXPECT_THAT(buttons(*panel), ElementsAre("1m", "2m", "Start the custom length", "Start",
                                           "(Reset)", "Edit Timer…"));
  const int tall = panel->fittingSize().height();
  model.setMode(TimerRun::Mode::stopwatch);
  QApplication::processEvents();
  EXPECT_THAT(buttons(*panel), ElementsAre("Start", "(Reset)", "Edit Timer…"));
  EXPECT_LT(panel->fittingSize().height(), tall);
  model.toggle();
  EXPECT_THAT(buttons(*panel), ElementsAre("Pause", "Reset", "Edit Timer…"));
}

TEST_F(TimerPanelTest, StartsTheCustomLength) {
  PanelStepper* stepper = nullptr;
  for (auto* child : panel->findChildren<QSpinBox*>())
    stepper = dynamic_cast<PanelStepper*>(child);
  ASSERT_NE(stepper, nullptr);
  EXPECT_EQ(stepper->text(), "25 min");
  stepper->setValue(7);
  EXPECT_EQ(stepper->text(), "7 min");
  model.toggle();
  EXPECT_EQ(stepper->value(), 7) << "the choice outlives a refresh";
  stage.click(button(*panel, "Start the custom length"));
  EXPECT_EQ(model.run(), (TimerRun{TimerRun::Mode::countdown, 420, clock.now(), 0}));
}

TEST_F(TimerPanelTest, AnyNumberOfPresetsFits) {
  for (const std::size_t count : {std::size_t(0), std::size_t(1), std::size_t(6), std::size_t(15),
                                  std::size_t(16), std::size_t(5000)}) {
    model.setWidget(
        {UUID(), "Tea", 1, TimerSettings{.presets = std::vector<double>(count, 5940)}, 1});
    panel->refresh();
    QApplication::processEvents();
    EXPECT_LE(panel->fittingSize().height(), 560) << count;
    for (auto* found : panel->findChildren<PanelButton*>()) {
      if (found->title() == "99m") {
        EXPECT_GE(found->width(), 36) << count;
      }
    }
  }
}

TEST(PomodoroPanel, FollowsTheRun) {
  ManualClock clock({800'000'000});
  PomodoroModel model(clock, DockWidget(UUID(), "Thesis", 1, PomodoroSettings{}, 1),
                      PomodoroRun::fresh(clock.now()));
  auto* panel = new PomodoroPanelView({}, model, [] {});
  model.onChange = [&] { panel->refresh(); };
  PanelStage stage(panel);
  EXPECT_EQ(panel->title(), "Thesis");
  EXPECT_THAT(buttons(*panel),
              ElementsAre("Start", "Skip", "(Reset)", "Edit Pomodoro…", "(Reset All)"));
  stage.press(Qt::Key_Return);
  EXPECT_THAT(buttons(*panel),
              ElementsAre("Pause", "Skip", "Reset", "Edit Pomodoro…", "Reset All"));
  clock.advance(60);
  stage.press(Qt::Key_Return);
  EXPECT_EQ(model.run().accumulated, 60);
  EXPECT_THAT(buttons(*panel),
              ElementsAre("Resume", "Skip", "Reset", "Edit Pomodoro…", "Reset All"));
  const auto says = [&](const QString& words) {
    for (auto* label : panel->findChildren<QLabel*>())
      if (label->text() == words)
        return true;
    return false;
  };
  EXPECT_TRUE(says("0 sessions today"));
  model.finish(clock.now());
  EXPECT_TRUE(says("1 session today"));
}

} // namespace
} // namespace tavrin::test
