#include "TavrinHost/Widgets/StarterSet.h"

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinCore/Text/Texts.h"

namespace tavrin {
namespace {

struct StarterWidget {
  std::string name;
  int span;
  DockWidget::Kind kind;
};

std::vector<StarterWidget> starterWidgets(Date now) {
  const Calendar calendar;
  const auto year = calendar.dateInterval(CalendarUnit::year, now);
  TimerSettings timer;
  timer.presets = {180, 300, 600, 1500, 3600};
  timer.tintHex = "#0A84FF";
  ClockSettings clock;
  clock.isAnalog = true;
  clock.showsSeconds = true;
  CountdownSettings newYear;
  newYear.target = year ? year->end : now + 30 * 86400.0;
  TimeProgressSettings progress;
  progress.scope = TimeProgressScope::day;
  NoteSettings note;
  note.text = translated("Click a tile to open its panel.");
  return {{translated("Focus"), 2, PomodoroSettings()},
          {translated("Timer"), 1, timer},
          {translated("Clock"), 1, clock},
          {translated("New Year"), 1, newYear},
          {translated("Today"), 1, progress},
          {translated("Note"), 2, note}};
}

} // namespace

void addStarterSet(WidgetStore& store, Date now) {
  for (const auto& starter : starterWidgets(now)) {
    auto widget = store.create(starter.name, starter.kind);
    widget.span = starter.span;
    store.update(widget);
    store.claimSlot(widget.id);
  }
}

void makeStarterSet(WidgetLibrary& library, Date now) {
  library.change([&](WidgetStore& store) {
    addStarterSet(store, now);
    return true;
  });
}

} // namespace tavrin
