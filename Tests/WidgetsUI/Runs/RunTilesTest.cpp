#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "TavrinWidgetsUI/Runs/PomodoroViews.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"
#include "TavrinWidgetsUI/Runs/TimerPanelView.h"
#include "TavrinWidgetsUI/Runs/TimerViews.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

using Mode = TimerRun::Mode;
constexpr Date now{800'000'000};

std::vector<AccessibleElement> elements(const AnyView& view, const TileSize& size) {
  ViewRenderer renderer;
  renderer.render(view, {size.width(), size.height()}, 1);
  return renderer.elements();
}

PomodoroRun pomodoro(PomodoroPhase phase, int cycle, double elapsed = 0, bool isRunning = false) {
  auto run = PomodoroRun::fresh(now);
  run.phase = phase;
  run.cycle = cycle;
  run.accumulated = elapsed;
  if (isRunning)
    run.startedAt = now;
  return run;
}

TEST(PomodoroTexts, SessionsAndTheButton) {
  EXPECT_EQ(pomodoroSessionsText(0), "0 sessions today");
  EXPECT_EQ(pomodoroSessionsText(1), "1 session today");
  EXPECT_EQ(pomodoroSessionsText(99), "99 sessions today");
  EXPECT_EQ(pomodoroToggleTitle(pomodoro(PomodoroPhase::focus, 0)), "Start");
  EXPECT_EQ(pomodoroToggleTitle(pomodoro(PomodoroPhase::focus, 0, 1)), "Resume");
  EXPECT_EQ(pomodoroToggleTitle(pomodoro(PomodoroPhase::focus, 0, 0, true)), "Pause");
}

TEST(PomodoroWideTile, Caption) {
  struct Case {
    PomodoroPhase phase;
    int cycle;
    int cycles;
    const char* caption;
  };
  const TileSize size{64, 3};
  for (const auto& [phase, cycle, cycles, caption] :
       {Case{PomodoroPhase::focus, 0, 4, "Focus 1/4"},
        Case{PomodoroPhase::focus, 3, 4, "Focus 4/4"},
        Case{PomodoroPhase::focus, 9, 4, "Focus 4/4"},
        Case{PomodoroPhase::focus, 1, 0, "Focus 2/2"},
        Case{PomodoroPhase::focus, 5, 8, "Focus 6/8"},
        Case{PomodoroPhase::shortBreak, 2, 4, "Break"},
        Case{PomodoroPhase::longBreak, 4, 4, "Long Break"}}) {
    PomodoroSettings settings;
    settings.cyclesBeforeLongBreak = cycles;
    const auto spoken =
        elements(pomodoroWideTile(pomodoro(phase, cycle), settings, now, size, {}), size);
    EXPECT_THAT(spoken, testing::Contains(testing::Field(&AccessibleElement::label, caption)));
    for (const char* button : {"Start", "Skip"})
      EXPECT_THAT(spoken, testing::Contains(testing::Field(&AccessibleElement::label, button)));
  }
}

TEST(PomodoroDots, FollowTheRound) {
  struct Case {
    PomodoroPhase phase;
    int cycle;
    int cycles;
    PomodoroDots dots;
  };
  for (const auto& [phase, cycle, cycles, expected] :
       {Case{PomodoroPhase::focus, 0, 4, {0, 4, true}},
        Case{PomodoroPhase::shortBreak, 3, 4, {3, 4, false}},
        Case{PomodoroPhase::longBreak, 4, 4, {4, 4, false}},
        Case{PomodoroPhase::focus, -7, 1, {0, 2, true}},
        Case{PomodoroPhase::focus, 70, 4, {4, 4, true}},
        Case{PomodoroPhase::focus, 1000, 2000, {6, 12, true}},
        Case{PomodoroPhase::focus, 2'000'000'000, 2'147'483'647, {11, 12, true}}}) {
    PomodoroSettings settings;
    settings.cyclesBeforeLongBreak = cycles;
    const auto dots = PomodoroDots::of(pomodoro(phase, cycle), settings);
    EXPECT_EQ(dots.done, expected.done) << cycle;
    EXPECT_EQ(dots.total, expected.total) << cycle;
    EXPECT_EQ(dots.hasCurrent, expected.hasCurrent) << cycle;
  }
}

TEST(TimerTexts, StateAndButton) {
  struct Case {
    TimerRun run;
    const char* state;
    const char* button;
  };
  const Date earlier = now - 60;
  for (const auto& [run, state, button] :
       {Case{{Mode::countdown, 300, {}, 0}, "Remaining", "Start"},
        Case{{Mode::countdown, 300, earlier, 0}, "Running", "Pause"},
        Case{{Mode::countdown, 300, {}, 60}, "Paused", "Resume"},
        Case{{Mode::countdown, 300, {}, 300}, "Done", "Start"},
        Case{{Mode::countdown, 0, {}, 0}, "Done", "Start"},
        Case{{Mode::stopwatch, 300, {}, 0}, "Paused", "Start"},
        Case{{Mode::stopwatch, 300, earlier, 900}, "Running", "Pause"},
        Case{{Mode::stopwatch, 300, {}, 900}, "Paused", "Resume"}}) {
    EXPECT_EQ(timerStateWord(run, now), state);
    EXPECT_EQ(timerToggleTitle(run, now), button) << state;
    const TileSize size{64, 1};
    const auto spoken = elements(timerTileIcon(run, now, palette::orange, size), size);
    ASSERT_EQ(spoken.size(), 1U);
    EXPECT_EQ(spoken[0].label, timerModeTitle(run.mode));
    EXPECT_EQ(spoken[0].value, timerTimeText(run, now) + ", " + state);
  }
  for (const auto& [seconds, title] : {std::pair{300.0, "5m"},
                                       {2700.0, "45m"},
                                       {90.0, "1m"},
                                       {30.0, "30s"},
                                       {0.0, "0m"},
                                       {7200.0, "120m"}})
    EXPECT_EQ(timerPresetTitle(seconds), title);
}

/// Every tile of the family, in states with short and long texts.
std::vector<AnyView> allTiles(const TileSize& size) {
  std::vector<AnyView> views;
  for (const double length : {0.0, 59.0, 1500.0, 7200.0, 86'400.0, 1e300})
    for (const auto phase : allCases<PomodoroPhase>()) {
      const PomodoroSettings settings{length, length, length, length > 1e4 ? 500 : 8};
      const auto run = pomodoro(phase, 3, 0, length > 1000);
      views.push_back(size.isWide() ? pomodoroWideTile(run, settings, now, size, {})
                                    : pomodoroTileIcon(run, settings, now, size));
    }
  for (const double elapsed : {0.0, 65.4, 3725.4, 86'400.0, 360'000.0, -50.0, 1e300}) {
    for (const auto mode : allCases<Mode>()) {
      const TimerRun run{mode, 1e9, {}, elapsed};
      views.push_back(size.isWide() ? timerWideTile(run, now, palette::orange, size, {})
                                    : timerTileIcon(run, now, palette::orange, size));
    }
    const StopwatchRun run{{}, elapsed, std::vector<double>(elapsed > 100 ? 1234 : 0)};
    views.push_back(size.isWide() ? stopwatchWideTile(run, now, size, {})
                                  : stopwatchTileIcon(run, now, size));
  }
  return views;
}

TEST(RunTiles, NothingLeavesTheBodyNorLiesOnAnother) {
  for (const double side : {48.0, 64.0, 128.0})
    for (const int span : {1, 2, 3}) {
      const TileSize size{side, span};
      const QRectF body = size.bodyRect();
      int number = 0;
      for (const AnyView& view : allTiles(size)) {
        ++number;
        ViewRenderer renderer;
        ASSERT_TRUE(renderer.render(view, {size.width(), size.height()}, 1));
        const QImage& image = renderer.image();
        for (const QPoint corner : {QPoint(0, 0), QPoint(image.width() - 1, image.height() - 1)})
          EXPECT_EQ(qAlpha(image.pixel(corner)), 0) << side << " " << span << " " << number;
        for (std::size_t i = 0; i < renderer.buttons().size(); ++i) {
          EXPECT_TRUE(body.contains(renderer.buttons()[i].rect)) << number;
          for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(renderer.buttons()[i].rect.intersects(renderer.buttons()[j].rect));
        }
      }
    }
}

TEST(RunTiles, AreEqualUntilWhatTheyShowDiffers) {
  const TileSize size{64, 1};
  const StopwatchRun watch{now, 0, {}};
  const auto at = [&](double seconds) { return stopwatchTileIcon(watch, now + seconds, size); };
  EXPECT_EQ(at(3.1), at(3.9)) << "nothing to draw within a second";
  EXPECT_NE(at(3.9), at(4.0));
  EXPECT_NE(at(3), at(63)) << "the hand is back, the minute is not";
  StopwatchRun paused = watch;
  paused.pause(now + 3);
  EXPECT_NE(stopwatchTileIcon(paused, now + 3, size), at(3));
  const auto focus = pomodoro(PomodoroPhase::focus, 0, 60);
  auto goingOn = focus;
  goingOn.startedAt = now;
  EXPECT_NE(pomodoroTileIcon(focus, {}, now, size), pomodoroTileIcon(goingOn, {}, now, size));
}

} // namespace
} // namespace tavrin
