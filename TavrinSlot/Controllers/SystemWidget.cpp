#include "TavrinSlot/Controllers/SystemWidget.h"

#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Controllers/Runs/StoredRun.h"
#include "TavrinSlot/DockPanelPresenter.h"
#include "TavrinSlot/DockTileRenderer.h"
#include "TavrinWidgetsUI/Runs/StopwatchPanelView.h"
#include "TavrinWidgetsUI/Runs/StopwatchViews.h"
#include "TavrinWidgetsUI/System/ActivityViews.h"
#include "TavrinWidgetsUI/System/BatteryViews.h"
#include "TavrinWidgetsUI/System/ClockPanelView.h"
#include "TavrinWidgetsUI/System/ClockViews.h"
#include "TavrinWidgetsUI/System/CountdownPanelView.h"
#include "TavrinWidgetsUI/System/CountdownViews.h"
#include "TavrinWidgetsUI/System/NetworkViews.h"
#include "TavrinWidgetsUI/System/PetPanelView.h"
#include "TavrinWidgetsUI/System/PetViews.h"
#include "TavrinWidgetsUI/System/SystemPanelViews.h"
#include "TavrinWidgetsUI/System/TimeProgressPanelView.h"
#include "TavrinWidgetsUI/System/TimeProgressViews.h"

namespace tavrin {
namespace {

std::string stopwatchKey(const UUID& id) {
  return "dev.quellby.tavrin.stopwatch." + id.text();
}

StopwatchRun storedStopwatch(const UserDefaults& defaults, const UUID& id) {
  return storedRun(defaults, stopwatchKey(id), StopwatchRun{});
}

} // namespace

SystemWidgetController::SystemWidgetController(const SlotContext& context, const DockWidget& widget)
    : BasicWidgetController(context, widget),
      model_({platform().clock(), platform().runLoop(), platform().workspace(),
              platform().hostStatistics(), platform().powerSources(),
              platform().connectedDevices()},
             widget, storedStopwatch(platform().userDefaults(), widget.id)),
      actions_{[this] { model_.toggleStopwatch(); }, [this] { model_.lapStopwatch(); },
               [this] { model_.resetStopwatch(); }} {
  model_.isPanelShown = [this] { return this->context().panel.isShown(); };
  model_.isTileShown = [this] { return platform().dockTile().isVisible(); };
  platform().dockTile().onVisibilityChange = [this] { lookAgain(); };
  motionChanged_ = platform().workspace().observeAppearance([this] { lookAgain(); });
  model_.onStopwatchChange = [this] {
    platform().userDefaults().set(stopwatchKey(model_.widget().id), encode(model_.stopwatch()));
  };
  model_.onChange = [this] { refresh(); };
  model_.onDevicesChange = [this] { refreshPanel(); };
  model_.start();
  renderTile();
}

SystemWidgetController::~SystemWidgetController() {
  platform().dockTile().onVisibilityChange = nullptr;
}

void SystemWidgetController::lookAgain() {
  if (widget().kind.get<PetSettings>())
    model_.sightChanged();
}

void SystemWidgetController::togglePanel() {
  BasicWidgetController::togglePanel();
  model_.panelChanged();
  // Whoever clicks a pet strokes it.
  if (context().panel.isShown())
    model_.strokePet();
}

void SystemWidgetController::panelWillOpen() {
  model_.panelChanged();
  if (widget().kind.get<BatterySettings>())
    model_.refreshDevices();
}

void SystemWidgetController::chooseInterface(const std::optional<std::string>& interface) {
  const auto* current = widget().kind.get<NetworkSettings>();
  if (current == nullptr || current->interface == interface)
    return;
  NetworkSettings settings = *current;
  settings.interface = interface;
  save(settings);
}

void SystemWidgetController::widgetChanged() {
  const TileSize size = context().tile.size();
  model_.setPetRoom(petRoom(petCanvas({size.bodyWidth(), size.body()}).pixels.width()));
  const bool isOtherKind = widget().kind.index() != model_.widget().kind.index();
  const bool isOtherWidget = widget().id != model_.widget().id;
  model_.setWidget(widget());
  if (isOtherWidget)
    model_.setStopwatch(storedStopwatch(platform().userDefaults(), widget().id));
  if (isOtherKind)
    discardPanelView();
}

AnyView SystemWidgetController::tileView(const TileSize& size) const {
  const auto& kind = model_.widget().kind;
  const auto& name = model_.widget().name;
  if (const auto* settings = kind.get<BatterySettings>())
    return size.isWide() ? batteryWideTile(model_.battery(), *settings, size)
                         : batteryTileIcon(model_.battery(), *settings, size);
  if (const auto* settings = kind.get<ActivitySettings>())
    return size.isWide() ? activityWideTile(model_.activity(), *settings, size)
                         : activityTileIcon(model_.activity(), *settings, size);
  if (const auto* settings = kind.get<NetworkSettings>()) {
    const NetworkTrace trace{model_.network(), model_.networkHistory()};
    return size.isWide() ? networkWideTile(trace, *settings, size)
                         : networkTileIcon(trace, *settings, size);
  }
  if (kind.get<ClockSettings>())
    return size.isWide() ? clockWideTile(model_.clock(), size)
                         : clockTileIcon(model_.clock(), size);
  if (const auto* settings = kind.get<CountdownSettings>())
    return size.isWide() ? countdownWideTile(name, *settings, model_.now(), size)
                         : countdownTileIcon(name, *settings, model_.now(), size);
  if (const auto* settings = kind.get<TimeProgressSettings>()) {
    const auto reading = TimeProgressReading::at(model_.now(), settings->scope, model_.calendar());
    return size.isWide() ? timeProgressWideTile(reading, size)
                         : timeProgressTileIcon(reading, size);
  }
  if (kind.get<StopwatchSettings>())
    return size.isWide() ? stopwatchWideTile(model_.stopwatch(), model_.now(), size, actions_)
                         : stopwatchTileIcon(model_.stopwatch(), model_.now(), size);
  return petTile(*kind.get<PetSettings>(), model_.pet().pose(), model_.pet().sky(), size);
}

PanelView* SystemWidgetController::makePanelView(const PanelAppearance& appearance) {
  const auto& kind = model_.widget().kind;
  const auto edit = context().onEdit;
  if (kind.get<BatterySettings>())
    return new BatteryPanelView(appearance, model_, edit);
  if (kind.get<ActivitySettings>())
    return new ActivityPanelView(appearance, model_, edit);
  if (kind.get<NetworkSettings>())
    return new NetworkPanelView(
        appearance, model_, [this](const auto& interface) { chooseInterface(interface); }, edit);
  if (kind.get<ClockSettings>())
    return new ClockPanelView(appearance, model_, edit);
  if (kind.get<CountdownSettings>())
    return new CountdownPanelView(appearance, model_, edit);
  if (kind.get<TimeProgressSettings>())
    return new TimeProgressPanelView(appearance, model_, edit);
  if (kind.get<StopwatchSettings>())
    return new StopwatchPanelView(
        appearance, {.name = [this] { return QString::fromStdString(model_.widget().name); },
                     .run = [this]() -> const StopwatchRun& { return model_.stopwatch(); },
                     .now = [this] { return model_.now(); },
                     .toggle = actions_.toggle,
                     .lap = actions_.lap,
                     .reset = actions_.reset,
                     .edit = edit});
  return new PetPanelView(appearance,
                          {.model = model_,
                           .stroke = [this] { model_.strokePet(); },
                           .change = [this](const PetSettings& settings) { save(settings); },
                           .edit = edit});
}

QColor SystemWidgetController::tint() const {
  const auto& kind = model_.widget().kind;
  if (const auto* settings = kind.get<TimeProgressSettings>())
    return timeProgressTint(settings->scope);
  if (kind.get<BatterySettings>())
    return palette::green;
  if (kind.get<ActivitySettings>())
    return cpuTint;
  return kind.get<CountdownSettings>()   ? countdownAccent
         : kind.get<ClockSettings>()     ? clockTint
         : kind.get<StopwatchSettings>() ? stopwatchTint
         : kind.get<PetSettings>()       ? petTint
                                         : palette::blue;
}

} // namespace tavrin
