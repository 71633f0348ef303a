#include "TavrinSlot/ControllerTable.h"

#include "TavrinCore/Widgets/KindTable.h"
#include "TavrinSlot/Controllers/AirDropWidget.h"
#include "TavrinSlot/Controllers/BookmarkWidget.h"
#include "TavrinSlot/Controllers/CalendarWidget.h"
#include "TavrinSlot/Controllers/ClaudeUsageWidget.h"
#include "TavrinSlot/Controllers/ClipboardWidget.h"
#include "TavrinSlot/Controllers/CollectionWidget.h"
#include "TavrinSlot/Controllers/ColourWidget.h"
#include "TavrinSlot/Controllers/ConverterWidget.h"
#include "TavrinSlot/Controllers/EmojiWidget.h"
#include "TavrinSlot/Controllers/FanWidget.h"
#include "TavrinSlot/Controllers/Files/FileRollWidget.h"
#include "TavrinSlot/Controllers/Files/ScreenshotWidget.h"
#include "TavrinSlot/Controllers/Files/ShelfWidget.h"
#include "TavrinSlot/Controllers/GitHubWidget.h"
#include "TavrinSlot/Controllers/KeyboardLockWidget.h"
#include "TavrinSlot/Controllers/MusicWidget.h"
#include "TavrinSlot/Controllers/NoteWidget.h"
#include "TavrinSlot/Controllers/Runs/PomodoroWidget.h"
#include "TavrinSlot/Controllers/Runs/TimerWidget.h"
#include "TavrinSlot/Controllers/ShortcutWidget.h"
#include "TavrinSlot/Controllers/SystemWidget.h"
#include "TavrinSlot/Controllers/WaterWidget.h"
#include "TavrinSlot/Controllers/WeatherWidget.h"

#include <array>
#include <tuple>

namespace tavrin {
namespace {

template <class Settings, class Controller> struct Row {};

/// Which controller shows which kind.
constexpr std::tuple controllerTable{
    Row<CollectionSettings, CollectionWidgetController>{},
    Row<TimerSettings, TimerWidgetController>{},
    Row<PomodoroSettings, PomodoroWidgetController>{},
    Row<MusicSettings, MusicWidgetController>{},
    Row<CalendarSettings, CalendarWidgetController>{},
    Row<BatterySettings, SystemWidgetController>{},
    Row<ClockSettings, SystemWidgetController>{},
    Row<StopwatchSettings, SystemWidgetController>{},
    Row<CountdownSettings, SystemWidgetController>{},
    Row<TimeProgressSettings, SystemWidgetController>{},
    Row<ActivitySettings, SystemWidgetController>{},
    Row<NetworkSettings, SystemWidgetController>{},
    Row<NoteSettings, NoteWidgetController>{},
    Row<ReminderSettings, RemindersWidgetController>{},
    Row<ShortcutSettings, ShortcutWidgetController>{},
    Row<AirDropSettings, AirDropWidgetController>{},
    Row<WeatherSettings, WeatherWidgetController>{},
    Row<ClaudeUsageSettings, ClaudeUsageWidgetController>{},
    Row<GitHubSettings, GitHubWidgetController>{},
    Row<PetSettings, SystemWidgetController>{},
    Row<ColourPickerSettings, ColourWidgetController>{},
    Row<ClipboardSettings, ClipboardWidgetController>{},
    Row<BookmarkSettings, BookmarkWidgetController>{},
    Row<EmojiSettings, EmojiWidgetController>{},
    Row<ScreenshotSettings, ScreenshotWidgetController>{},
    Row<FilesSettings, FileRollWidgetController>{},
    Row<ShelfSettings, ShelfWidgetController>{},
    Row<WaterSettings, WaterWidgetController>{},
    Row<ConverterSettings, ConverterWidgetController>{},
    Row<FanSettings, FanWidgetController>{},
    Row<KeyboardLockSettings, KeyboardLockWidgetController>{},
};

using Maker = std::unique_ptr<WidgetController> (*)(const SlotContext&, const DockWidget&);

template <class Controller>
std::unique_ptr<WidgetController> make(const SlotContext& context, const DockWidget& widget) {
  return std::make_unique<Controller>(context, widget);
}

template <class... Settings, class... Controllers>
constexpr auto makersOf(const std::tuple<Row<Settings, Controllers>...>&) {
  static_assert(std::is_same_v<KindList<Settings...>, AllKinds>,
                "the tables of kinds and of controllers list the same kinds in the same order");
  return std::array<Maker, sizeof...(Controllers)>{make<Controllers>...};
}

constexpr auto makers = makersOf(controllerTable);

} // namespace

std::unique_ptr<WidgetController> makeController(const SlotContext& context,
                                                 const DockWidget& widget) {
  return makers[widget.kind.index()](context, widget);
}

bool shareController(const DockWidget::Kind& one, const DockWidget::Kind& other) {
  return makers[one.index()] == makers[other.index()];
}

} // namespace tavrin
