#include "TavrinSlot/SlotApp.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinSlot/AirDropWidget.h"
#include "TavrinSlot/BookmarkWidget.h"
#include "TavrinSlot/CalendarWidget.h"
#include "TavrinSlot/ClaudeUsageWidget.h"
#include "TavrinSlot/ClipboardWidget.h"
#include "TavrinSlot/CollectionWidget.h"
#include "TavrinSlot/ColourWidget.h"
#include "TavrinSlot/ConverterWidget.h"
#include "TavrinSlot/EmojiWidget.h"
#include "TavrinSlot/FanWidget.h"
#include "TavrinSlot/FileRollWidget.h"
#include "TavrinSlot/GitHubWidget.h"
#include "TavrinSlot/KeyboardLockWidget.h"
#include "TavrinSlot/MusicWidget.h"
#include "TavrinSlot/NoteWidget.h"
#include "TavrinSlot/PomodoroWidget.h"
#include "TavrinSlot/ScreenshotWidget.h"
#include "TavrinSlot/ShelfWidget.h"
#include "TavrinSlot/ShortcutWidget.h"
#include "TavrinSlot/SystemWidget.h"
#include "TavrinSlot/TimerWidget.h"
#include "TavrinSlot/WaterWidget.h"
#include "TavrinSlot/WeatherWidget.h"
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
template <class S>
requires isSystemKind<S> SystemWidgetController* controllerOf(const S&);
TimerWidgetController* controllerOf(const TimerSettings&);
PomodoroWidgetController* controllerOf(const PomodoroSettings&);
NoteWidgetController* controllerOf(const NoteSettings&);
ClaudeUsageWidgetController* controllerOf(const ClaudeUsageSettings&);
GitHubWidgetController* controllerOf(const GitHubSettings&);
WaterWidgetController* controllerOf(const WaterSettings&);
WeatherWidgetController* controllerOf(const WeatherSettings&);
CalendarWidgetController* controllerOf(const CalendarSettings&);
RemindersWidgetController* controllerOf(const ReminderSettings&);
KeyboardLockWidgetController* controllerOf(const KeyboardLockSettings&);
FanWidgetController* controllerOf(const FanSettings&);
ClipboardWidgetController* controllerOf(const ClipboardSettings&);
ColourWidgetController* controllerOf(const ColourPickerSettings&);
ScreenshotWidgetController* controllerOf(const ScreenshotSettings&);
FileRollWidgetController* controllerOf(const FilesSettings&);
ShelfWidgetController* controllerOf(const ShelfSettings&);
ConverterWidgetController* controllerOf(const ConverterSettings&);
EmojiWidgetController* controllerOf(const EmojiSettings&);
BookmarkWidgetController* controllerOf(const BookmarkSettings&);
CollectionWidgetController* controllerOf(const CollectionSettings&);
MusicWidgetController* controllerOf(const MusicSettings&);
ShortcutWidgetController* controllerOf(const ShortcutSettings&);
AirDropWidgetController* controllerOf(const AirDropSettings&);

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
}

std::unique_ptr<WidgetController> SlotApp::makeController(const DockWidget& widget) {
  return std::visit(
      [&](const auto& settings) -> std::unique_ptr<WidgetController> {
        using Controller = std::remove_pointer_t<decltype(controllerOf(settings))>;
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
