#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "Tools/Gallery/Gallery.h"

#include "TavrinWidgetsUI/Runs/PomodoroPanelView.h"
#include "TavrinWidgetsUI/Runs/PomodoroViews.h"
#include "TavrinWidgetsUI/Runs/StopwatchPanelView.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"
#include "TavrinWidgetsUI/Runs/TimerPanelView.h"
#include "TavrinWidgetsUI/Runs/TimerViews.h"

#include <memory>

namespace tavrin {

namespace {

void add(GallerySheet& sheet, const char* name, int span,
         std::function<AnyView(const TileSize&)> view) {
  sheet.push_back({name, span, std::move(view)});
}

PomodoroRun pomodoro(PomodoroPhase phase, double elapsed, bool isRunning, int cycle) {
  PomodoroRun run = PomodoroRun::fresh(galleryNow);
  run.phase = phase;
  run.accumulated = isRunning ? 0 : elapsed;
  run.cycle = cycle;
  if (isRunning)
    run.startedAt = galleryNow - elapsed;
  return run;
}

TimerRun timer(TimerRun::Mode mode, double duration, double elapsed, bool isRunning) {
  TimerRun run{mode, duration, {}, isRunning ? 0 : elapsed};
  if (isRunning)
    run.startedAt = galleryNow - elapsed;
  return run;
}

StopwatchRun stopwatch(double elapsed, bool isRunning, std::vector<double> laps = {}) {
  StopwatchRun run{{}, isRunning ? 0 : elapsed, std::move(laps)};
  if (isRunning)
    run.startedAt = galleryNow - elapsed;
  return run;
}

void addPomodoros(GallerySheet& sheet) {
  const auto show = [&](const char* name, const PomodoroRun& run, PomodoroSettings settings = {}) {
    for (const int span : {1, 2, 3})
      add(sheet, name, span, [run, settings](const TileSize& size) {
        return size.isWide() ? pomodoroWideTile(run, settings, galleryNow, size, {})
                             : pomodoroTileIcon(run, settings, galleryNow, size);
      });
  };
  show("fresh", pomodoro(PomodoroPhase::focus, 0, false, 0));
  show("focus", pomodoro(PomodoroPhase::focus, 612, true, 1));
  show("paused", pomodoro(PomodoroPhase::focus, 612, false, 1));
  show("break", pomodoro(PomodoroPhase::shortBreak, 221, true, 3));
  show("long break", pomodoro(PomodoroPhase::longBreak, 30, true, 4));
  show("finished", pomodoro(PomodoroPhase::shortBreak, 300, false, 3));
  PomodoroSettings longest;
  longest.focus = 7200;
  longest.cyclesBeforeLongBreak = 8;
  show("two hours", pomodoro(PomodoroPhase::focus, 1, true, 5), longest);
}

void addTimers(GallerySheet& sheet) {
  const auto show = [&](const char* name, const TimerRun& run, const QColor& tint) {
    for (const int span : {1, 2, 3})
      add(sheet, name, span, [run, tint](const TileSize& size) {
        return size.isWide() ? timerWideTile(run, galleryNow, tint, size, {})
                             : timerTileIcon(run, galleryNow, tint, size);
      });
  };
  using Mode = TimerRun::Mode;
  show("timer fresh", timer(Mode::countdown, 1500, 0, false), palette::orange);
  show("running", timer(Mode::countdown, 1500, 431, true), palette::orange);
  show("paused", timer(Mode::countdown, 1500, 431, false), palette::orange);
  show("done", timer(Mode::countdown, 300, 300, false), palette::green);
  show("hours", timer(Mode::countdown, 7384, 12, true), palette::purple);
  show("stopwatch", timer(Mode::stopwatch, 1500, 42, true), palette::blue);
  show("sw paused", timer(Mode::stopwatch, 1500, 36122, false), QColor("#FF375F"));
}

void addStopwatches(GallerySheet& sheet) {
  const auto show = [&](const char* name, const StopwatchRun& run) {
    for (const int span : {1, 2, 3})
      add(sheet, name, span, [run](const TileSize& size) {
        return size.isWide() ? stopwatchWideTile(run, galleryNow, size, {})
                             : stopwatchTileIcon(run, galleryNow, size);
      });
  };
  show("watch fresh", stopwatch(0, false));
  show("running", stopwatch(67.4, true));
  show("laps", stopwatch(2488.2, true, {610.1, 1333, 2001.4}));
  show("paused", stopwatch(2488.2, false));
  show("hours", stopwatch(45296, true));
}

struct FixedClock final : Clock {
  Date now() const override { return galleryNow; }
};
FixedClock fixedClock;

DockWidget named(const char* name, DockWidget::Kind kind) {
  return {UUID(), name, 1, std::move(kind), 1};
}

GalleryPanel pomodoroPanel(const char* name, PomodoroRun run, int sessions,
                           const char* title = "Pomodoro", PomodoroSettings settings = {}) {
  run.sessionsToday = sessions;
  const auto model = std::make_shared<PomodoroModel>(fixedClock, named(title, settings), run);
  return {name, PomodoroPalette::tint(run.phase), [model](const PanelAppearance& look) {
            return new PomodoroPanelView(look, *model, [] {});
          }};
}

GalleryPanel timerPanel(const char* name, const TimerRun& run, TimerSettings settings = {}) {
  const auto model = std::make_shared<TimerModel>(fixedClock, named("Timer", settings), run);
  return {name, model->tint(),
          [model](const PanelAppearance& look) { return new TimerPanelView(look, *model, [] {}); }};
}

GalleryPanel stopwatchPanel(const char* name, const StopwatchRun& run) {
  const auto shown = std::make_shared<StopwatchRun>(run);
  return {name, stopwatchTint, [shown](const PanelAppearance& look) {
            return new StopwatchPanelView(
                look, {.name = [] { return QString("Stopwatch"); },
                       .run = [shown]() -> const StopwatchRun& { return *shown; },
                       .now = [] { return galleryNow; },
                       .toggle = [] {},
                       .lap = [] {},
                       .reset = [] {},
                       .edit = [] {}});
          }};
}

} // namespace

GallerySheet timersGallery() {
  GallerySheet sheet;
  addPomodoros(sheet);
  addTimers(sheet);
  addStopwatches(sheet);
  return sheet;
}

GalleryPanels timersPanels() {
  using Mode = TimerRun::Mode;
  PomodoroSettings longest;
  longest.focus = 7200;
  longest.cyclesBeforeLongBreak = 8;
  std::vector<double> laps;
  for (int lap = 1; lap <= 120; ++lap)
    laps.push_back(lap * 61.37);
  return {
      pomodoroPanel("fresh", pomodoro(PomodoroPhase::focus, 0, false, 0), 0),
      pomodoroPanel("running", pomodoro(PomodoroPhase::focus, 612, true, 1), 1),
      pomodoroPanel("paused", pomodoro(PomodoroPhase::focus, 612, false, 2), 99,
                    "Deep work on the long chapter about tides"),
      pomodoroPanel("break", pomodoro(PomodoroPhase::shortBreak, 221, true, 3), 3),
      pomodoroPanel("long break", pomodoro(PomodoroPhase::longBreak, 900, false, 4), 4),
      pomodoroPanel("two hours", pomodoro(PomodoroPhase::focus, 1, true, 5), 5, "Thesis", longest),
      timerPanel("fresh", timer(Mode::countdown, 1500, 0, false)),
      timerPanel("running", timer(Mode::countdown, 7384, 12, true), {.tintHex = "#BF5AF2"}),
      timerPanel("paused", timer(Mode::countdown, 1500, 431, false),
                 {.presets = {30, 60, 3600}, .tintHex = "#0A84FF"}),
      timerPanel("done", timer(Mode::countdown, 300, 300, false),
                 {.presets = std::vector<double>(23, 600), .tintHex = "#30D158"}),
      timerPanel("stopwatch", timer(Mode::stopwatch, 1500, 42, true), {.tintHex = "#FF375F"}),
      stopwatchPanel("fresh", stopwatch(0, false)),
      stopwatchPanel("running", stopwatch(67.43, true, {61.37})),
      stopwatchPanel("laps", stopwatch(7400.2, true, laps)),
      stopwatchPanel("paused", stopwatch(3725.4, false)),
  };
}

const GalleryEntry timersEntries[] = {{"timers", timersGallery}, {"timers-panels", timersPanels}};

} // namespace tavrin
