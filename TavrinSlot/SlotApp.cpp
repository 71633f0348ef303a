#include "TavrinSlot/SlotApp.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/DockTile.h"
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
#include "TavrinStorage/StoragePath.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

/// The kinds that one system-reading controller serves.
template <class S>
inline constexpr bool isSystemKind =
    std::is_same_v<S, BatterySettings> || std::is_same_v<S, ClockSettings> ||
    std::is_same_v<S, CountdownSettings> || std::is_same_v<S, TimeProgressSettings> ||
    std::is_same_v<S, ActivitySettings> || std::is_same_v<S, NetworkSettings> ||
    std::is_same_v<S, PetSettings> || std::is_same_v<S, StopwatchSettings>;

/// Which controller stands for which settings: only the types are used.
struct Controllers {
  template <class S>
  requires isSystemKind<S>
  static SystemWidgetController* of(const S&);
  static TimerWidgetController* of(const TimerSettings&);
  static PomodoroWidgetController* of(const PomodoroSettings&);
  static NoteWidgetController* of(const NoteSettings&);
  static ClaudeUsageWidgetController* of(const ClaudeUsageSettings&);
  static GitHubWidgetController* of(const GitHubSettings&);
  static WaterWidgetController* of(const WaterSettings&);
  static WeatherWidgetController* of(const WeatherSettings&);
  static CalendarWidgetController* of(const CalendarSettings&);
  static RemindersWidgetController* of(const ReminderSettings&);
  static KeyboardLockWidgetController* of(const KeyboardLockSettings&);
  static FanWidgetController* of(const FanSettings&);
  static ClipboardWidgetController* of(const ClipboardSettings&);
  static ColourWidgetController* of(const ColourPickerSettings&);
  static ScreenshotWidgetController* of(const ScreenshotSettings&);
  static FileRollWidgetController* of(const FilesSettings&);
  static ShelfWidgetController* of(const ShelfSettings&);
  static ConverterWidgetController* of(const ConverterSettings&);
  static EmojiWidgetController* of(const EmojiSettings&);
  static BookmarkWidgetController* of(const BookmarkSettings&);
  static CollectionWidgetController* of(const CollectionSettings&);
  static MusicWidgetController* of(const MusicSettings&);
  static ShortcutWidgetController* of(const ShortcutSettings&);
  static AirDropWidgetController* of(const AirDropSettings&);
};

bool isSystem(const DockWidget::Kind& kind) {
  return std::visit([]<class S>(const S&) { return isSystemKind<S>; },
                    static_cast<const DockWidget::KindVariant&>(kind));
}

} // namespace

SlotApp::SlotApp(Platform& platform)
    : platform_(platform), log_(platform.log(), "slot"),
      slot_(static_cast<int>(std::clamp(platform.mainBundle().integer("TavrinSlot").value_or(0),
                                        -1L, DockSlot::count + 1L))),
      panel_(platform.popover(), platform.dockGeometry()),
      tile_(platform.dockTile()), context_{platform, tile_, panel_, [this] { editWidget(); }} {
  tile_.onFormatChange = [this] {
    if (controller_)
      controller_->update(*widget_);
  };
}

SlotApp::~SlotApp() {
  widgetsChanged_.reset();
  panel_.setRootView(nullptr);
  controller_.reset();
}

void SlotApp::applicationDidFinishLaunching() {
  openStore();
  reload();
  widgetsChanged_ = platform_.notifications().observe(
      std::string(DockSlot::widgetsChangedNotification), [this](const auto&) { reload(); });
  const auto arguments = platform_.application().arguments();
  if (std::find(arguments.begin(), arguments.end(), "--background") == arguments.end() &&
      controller_)
    controller_->togglePanel();
}

bool SlotApp::applicationShouldHandleReopen(bool) {
  if (controller_)
    controller_->togglePanel();
  return false;
}

void SlotApp::applicationDidResignActive() {
  panel_.closeIfShown();
}

bool SlotApp::applicationOpenFiles(const std::vector<std::filesystem::path>& paths) {
  if (!widget_)
    return false;
  if (widget_->kind.get<ShelfSettings>() != nullptr) {
    if (auto* shelfWidget = dynamic_cast<ShelfWidgetController*>(controller_.get()))
      shelfWidget->write(shelf::adding(shelfWidget->settings(), paths));
    return true;
  }
  if (widget_->kind.get<AirDropSettings>() != nullptr) {
    if (auto* airDrop = dynamic_cast<AirDropWidgetController*>(controller_.get())) {
      std::vector<std::string> addresses;
      for (const auto& path : paths)
        addresses.push_back(fileURL(path.native()));
      airDrop->send(addresses);
    }
    return true;
  }
  return false;
}

void SlotApp::openStore() {
  try {
    store_ = std::make_unique<WidgetStore>(
        StoragePath(platform_.fileManager(), platform_.mainBundle()).widgetsFileURL());
  } catch (const std::exception& error) {
    log_.error(fmt::format("slot {}: {}", slot_, error.what()));
  }
}

void SlotApp::reload() {
  std::optional<DockWidget> found;
  if (store_) {
    try {
      store_->reload();
    } catch (const std::exception&) {
      // What was read last stays in use until the file can be read again.
    }
    found = store_->widget(slot_);
  }
  if (!found) {
    log_.info(fmt::format("slot {} has no widget; quitting", slot_));
    platform_.application().terminate();
    return;
  }
  const bool keepsController =
      controller_ != nullptr && widget_ && sameKind(widget_->kind, found->kind);
  widget_ = std::move(found);
  placeTile();
  if (!keepsController) {
    panel_.setRootView(nullptr);
    controller_.reset();
    controller_ = makeController(*widget_);
  }
  controller_->update(*widget_);
}

void SlotApp::placeTile() {
  DockTile::Place place{0, widget_->span, 0};
  for (const auto& [slot, neighbour] : store_->file().placedWidgets()) {
    if (slot < slot_)
      place.cellsBefore += neighbour->span;
    place.cellsInAll += neighbour->span;
  }
  platform_.dockTile().setPlace(place);
  if (std::exchange(place_, place) != place)
    panel_.followTile();
}

std::unique_ptr<WidgetController> SlotApp::makeController(const DockWidget& widget) {
  return std::visit(
      [&](const auto& settings) -> std::unique_ptr<WidgetController> {
        using Controller = std::remove_pointer_t<decltype(Controllers::of(settings))>;
        return std::make_unique<Controller>(context_, widget);
      },
      static_cast<const DockWidget::KindVariant&>(widget.kind));
}

bool SlotApp::sameKind(const std::optional<DockWidget::Kind>& before,
                       const DockWidget::Kind& after) {
  if (!before)
    return false;
  return before->index() == after.index() || (isSystem(*before) && isSystem(after));
}

void SlotApp::editWidget() {
  if (!widget_)
    return;
  panel_.closeIfShown();
  platform_.notifications().post(std::string(DockSlot::editWidgetNotification), widget_->id.text());
}

} // namespace tavrin
