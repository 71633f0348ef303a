#include "TavrinSlot/Controllers/SystemWidget.h"

#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinSlot/Controllers/Runs/StoredRun.h"
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

/// How one kind of the group looks.
template <class S> struct SystemRow {
  AnyView (*tile)(const SystemWidgetController&, const S&, const TileSize&);
  PanelView* (*panel)(SystemWidgetController&, const PanelAppearance&);
  QColor (*tint)(const S&);
};

struct SystemRows {
  using Self = SystemWidgetController;

  /// The panels that show the model and nothing else.
  template <class View> static PanelView* panel(Self& self, const PanelAppearance& appearance) {
    return new View(appearance, *self.model_, self.context().onEdit);
  }
  static PanelView* networkPanel(Self& self, const PanelAppearance& appearance) {
    return new NetworkPanelView(
        appearance, *self.model_,
        [&self](const auto& interface) { self.chooseInterface(interface); }, self.context().onEdit);
  }
  static PanelView* stopwatchPanel(Self& self, const PanelAppearance& appearance) {
    return new StopwatchPanelView(
        appearance, {.name = [&self] { return QString::fromStdString(self.widget().name); },
                     .run = [&self]() -> const StopwatchRun& { return self.model_->stopwatch(); },
                     .now = [&self] { return self.model_->now(); },
                     .toggle = self.actions_.toggle,
                     .lap = self.actions_.lap,
                     .reset = self.actions_.reset,
                     .edit = self.context().onEdit});
  }
  static PanelView* petPanel(Self& self, const PanelAppearance& appearance) {
    return new PetPanelView(
        appearance, {.model = *self.model_,
                     .stroke = [&self] { self.model_->strokePet(); },
                     .change = [&self](const PetSettings& settings) { self.save(settings); },
                     .edit = self.context().onEdit});
  }

  static AnyView battery(const Self& self, const BatterySettings& settings, const TileSize& size) {
    const auto& reading = self.model_->battery();
    return size.isWide() ? batteryWideTile(reading, settings, size)
                         : batteryTileIcon(reading, settings, size);
  }
  static AnyView activity(const Self& self, const ActivitySettings& settings,
                          const TileSize& size) {
    const auto& reading = self.model_->activity();
    return size.isWide() ? activityWideTile(reading, settings, size)
                         : activityTileIcon(reading, settings, size);
  }
  static AnyView network(const Self& self, const NetworkSettings& settings, const TileSize& size) {
    const NetworkTrace trace{self.model_->network(), self.model_->networkHistory()};
    return size.isWide() ? networkWideTile(trace, settings, size)
                         : networkTileIcon(trace, settings, size);
  }
  static AnyView clock(const Self& self, const ClockSettings&, const TileSize& size) {
    const auto reading = self.model_->clock();
    return size.isWide() ? clockWideTile(reading, size) : clockTileIcon(reading, size);
  }
  static AnyView countdown(const Self& self, const CountdownSettings& settings,
                           const TileSize& size) {
    const auto& name = self.widget().name;
    const Date now = self.model_->now();
    return size.isWide() ? countdownWideTile(name, settings, now, size)
                         : countdownTileIcon(name, settings, now, size);
  }
  static AnyView timeProgress(const Self& self, const TimeProgressSettings& settings,
                              const TileSize& size) {
    const auto reading =
        TimeProgressReading::at(self.model_->now(), settings.scope, self.model_->calendar());
    return size.isWide() ? timeProgressWideTile(reading, size)
                         : timeProgressTileIcon(reading, size);
  }
  static AnyView stopwatch(const Self& self, const StopwatchSettings&, const TileSize& size) {
    const auto& run = self.model_->stopwatch();
    const Date now = self.model_->now();
    return size.isWide() ? stopwatchWideTile(run, now, size, self.actions_)
                         : stopwatchTileIcon(run, now, size);
  }
  static AnyView pet(const Self& self, const PetSettings& settings, const TileSize& size) {
    return petTile(settings, self.model_->pet().pose(), self.model_->pet().sky(), size);
  }

  static inline const std::tuple table{
      SystemRow<BatterySettings>{battery, panel<BatteryPanelView>,
                                 [](const auto&) { return palette::green; }},
      SystemRow<ActivitySettings>{activity, panel<ActivityPanelView>,
                                  [](const auto&) { return cpuTint; }},
      SystemRow<NetworkSettings>{network, networkPanel, [](const auto&) { return palette::blue; }},
      SystemRow<ClockSettings>{clock, panel<ClockPanelView>, [](const auto&) { return clockTint; }},
      SystemRow<CountdownSettings>{countdown, panel<CountdownPanelView>,
                                   [](const auto&) { return countdownAccent; }},
      SystemRow<TimeProgressSettings>{
          timeProgress, panel<TimeProgressPanelView>,
          [](const auto& settings) { return timeProgressTint(settings.scope); }},
      SystemRow<StopwatchSettings>{stopwatch, stopwatchPanel,
                                   [](const auto&) { return stopwatchTint; }},
      SystemRow<PetSettings>{pet, petPanel, [](const auto&) { return petTint; }},
  };

  /// `use(row, settings)` for the record's kind, which is of the group.
  template <class Use> static auto visit(const DockWidget& widget, const Use& use) {
    std::optional<decltype(use(std::get<0>(table), BatterySettings()))> result;
    const auto tryRow = [&]<class S>(const SystemRow<S>& row) {
      if (const auto* settings = widget.kind.get<S>())
        result.emplace(use(row, *settings));
      return result.has_value();
    };
    std::apply([&](const auto&... rows) { static_cast<void>((tryRow(rows) || ...)); }, table);
    if (!result)
      throw std::logic_error("a record of another kind");
    return std::move(*result);
  }
};

bool SystemWidgetController::serves(const DockWidget::Kind& kind) const {
  return std::apply(
      [&]<class... S>(const SystemRow<S>&...) { return ((kind.get<S>() != nullptr) || ...); },
      SystemRows::table);
}

void SystemWidgetController::start() {
  model_.emplace(SystemWidgetModel::Services{platform().clock(), platform().runLoop(),
                                             platform().workspace(), platform().hostStatistics(),
                                             platform().powerSources(),
                                             platform().connectedDevices()},
                 widget(), storedStopwatch(platform().userDefaults(), widget().id));
  model_->isPanelShown = [this] { return context().panel.isShown(); };
  model_->isTileShown = [this] { return platform().dockTile().isVisible(); };
  platform().dockTile().onVisibilityChange = [this] { lookAgain(); };
  motionChanged_ = platform().workspace().observeAppearance([this] { lookAgain(); });
  model_->onStopwatchChange = [this] {
    storeRun(platform().userDefaults(), stopwatchKey(widget().id), model_->stopwatch());
  };
  model_->onChange = [this] { refresh(); };
  model_->onDevicesChange = [this] { refreshPanel(); };
  formatChanged();
  model_->start();
}

void SystemWidgetController::stop() {
  platform().dockTile().onVisibilityChange = nullptr;
  motionChanged_.reset();
  model_.reset();
}

void SystemWidgetController::lookAgain() {
  if (widget().kind.get<PetSettings>())
    model_->sightChanged();
}

void SystemWidgetController::togglePanel() {
  BasicWidgetController::togglePanel();
  if (!model_)
    return;
  model_->panelChanged();
  // Whoever clicks a pet strokes it.
  if (context().panel.isShown())
    model_->strokePet();
}

void SystemWidgetController::panelWillOpen() {
  model_->panelChanged();
  if (widget().kind.get<BatterySettings>())
    model_->refreshDevices();
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
  const bool isOtherKind = widget().kind.index() != model_->widget().kind.index();
  model_->setWidget(widget());
  if (!isOtherKind)
    return;
  discardPanelView();
  if (context().panel.isShown())
    panelWillOpen();
}

void SystemWidgetController::formatChanged() {
  const TileSize size = context().tile.size();
  model_->setPetRoom(petRoom(petCanvas({size.bodyWidth(), size.body()}).pixels.width()));
}

AnyView SystemWidgetController::tileView(const TileSize& size) {
  return SystemRows::visit(widget(), [&](const auto& row, const auto& settings) {
    return row.tile(*this, settings, size);
  });
}

PanelView* SystemWidgetController::makePanelView(const PanelAppearance& appearance) {
  return SystemRows::visit(
      widget(), [&](const auto& row, const auto&) { return row.panel(*this, appearance); });
}

QColor SystemWidgetController::tint() const {
  return SystemRows::visit(
      widget(), [](const auto& row, const auto& settings) { return row.tint(settings); });
}

} // namespace tavrin
