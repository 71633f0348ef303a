#include "TavrinSlot/Controllers/WaterWidget.h"

#include "TavrinPlatform/DockTile.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Water/WaterPanelView.h"

namespace tavrin {
namespace {

constexpr double clockInterval = 60;
/// Seconds for which further changes wait after one was shown.
constexpr double burstInterval = 0.1;

} // namespace

void WaterWidgetController::start() {
  observe();
  openStore();
  calendar_ = Calendar();
  tank_.emplace(platform().runLoop());
  renderedDay_ = WaterLog::key(platform().clock().now(), calendar_);
  tick();
  tank_->onFrame = [this] { refresh(); };
  clock_ = platform().runLoop().repeat(clockInterval, [this] { tick(); });
}

void WaterWidgetController::stop() {
  clock_.reset();
  burst_.reset();
  isBurst_ = false;
  observations_.clear();
  tank_.reset();
  store_.reset();
}

void WaterWidgetController::openStore() {
  try {
    store_ = std::make_unique<WaterStore>(
        StoragePath(platform().fileManager(), platform().mainBundle()).waterFileURL(),
        platform().notifications());
  } catch (const std::exception& error) {
    Log(platform().log(), "slot").error(error.what());
  }
}

void WaterWidgetController::observe() {
  observations_.push_back(platform().notifications().observe(
      WaterStore::changedNotification, [this](const auto&) { logChangedSoon(); }));
  auto& workspace = platform().workspace();
  const auto timeJumped = [this] {
    calendar_ = Calendar();
    logChanged();
  };
  observations_.push_back(workspace.observeWake(timeJumped));
  observations_.push_back(workspace.observeDayChange(timeJumped));
  observations_.push_back(workspace.observeClockChange(timeJumped));
}

void WaterWidgetController::logChangedSoon() {
  if (burst_) {
    isBurst_ = true;
    return;
  }
  burst_ = platform().runLoop().after(burstInterval, [this] {
    const auto ended = std::move(burst_);
    if (std::exchange(isBurst_, false))
      logChangedSoon();
  });
  logChanged();
}

void WaterWidgetController::logChanged() {
  try {
    if (store_)
      store_->reload();
    else
      openStore();
  } catch (const std::exception&) {
    // What was read last stays.
  }
  renderedDay_ = WaterLog::key(platform().clock().now(), calendar_);
  const WaterTank tank = waterTankOf(reading());
  if (animates())
    tank_->pour(tank.level, tank.isDone);
  else
    tank_->settle(tank.level, tank.isDone);
  refresh();
}

void WaterWidgetController::tick() {
  if (WaterLog::key(platform().clock().now(), calendar_) != renderedDay_) {
    logChanged();
    return;
  }
  const WaterTank tank = waterTankOf(reading());
  tank_->settle(tank.level, tank.isDone);
  refresh();
}

bool WaterWidgetController::animates() const {
  return !platform().workspace().prefersReducedMotion() &&
         (platform().dockTile().isVisible() || context().panel.isShown());
}

void WaterWidgetController::drink() {
  change([this](WaterStore& store, Date now) { store.add(reading().settings.glass, now); });
}

void WaterWidgetController::undo() {
  change([this](WaterStore& store, Date now) { store.remove(reading().settings.glass, now); });
}

template <class Change> void WaterWidgetController::change(const Change& change) {
  if (!store_)
    openStore();
  if (!store_)
    return;
  try {
    change(*store_, platform().clock().now());
  } catch (const std::exception& error) {
    Log(platform().log(), "slot").error(error.what());
  }
}

WaterReading WaterWidgetController::reading() const {
  return WaterReading::of(store_ ? store_->log() : WaterLog{}, settings(), platform().clock().now(),
                          calendar_);
}

void WaterWidgetController::widgetChanged() {
  const WaterTank tank = waterTankOf(reading());
  tank_->settle(tank.level, tank.isDone);
}

AnyView WaterWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? waterWideTile(reading(), tank_->tank(), size, drink_)
                       : waterTileIcon(reading(), tank_->tank(), size);
}

PanelView* WaterWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new WaterPanelView(
      appearance, {[this] { return widget().name; }, [this] { return reading(); },
                   [this] { return tank_->tank(); }, drink_, [this] { undo(); }, context().onEdit});
}

} // namespace tavrin
