#include "TavrinSlot/Controllers/Runs/RunWidgetController.h"

#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"

namespace tavrin {
namespace {

constexpr double tickInterval = 0.25;
/// This process is there to ring, so the notice is taken back just before the end; two ticks, so
/// that a late one does not miss it.
constexpr double noticeMargin = 2 * tickInterval;

} // namespace

RunWidgetController::RunWidgetController(const SlotContext& context, DockWidget widget,
                                         const std::string& name, const std::string& event)
    : BasicWidgetController(context, std::move(widget)),
      endNotification_(platform().userNotifications(), platform().clock(),
                       platform().mainBundle().identifier().value_or(name) + "." + event) {}

void RunWidgetController::start() {
  auto& workspace = platform().workspace();
  observations_.push_back(workspace.observeClockChange([this] { timeJumped(); }));
  observations_.push_back(workspace.observeDayChange([this] { timeJumped(); }));
  observations_.push_back(workspace.observeWake([this] { timeJumped(); }));
}

void RunWidgetController::stop() {
  userCame();
  ticker_.reset();
  observations_.clear();
  lastShown_.reset();
}

void RunWidgetController::timeJumped() {
  readClock();
  scheduleEndNotification();
  renderTile(false);
  refreshPanel();
}

void RunWidgetController::runChanged() {
  userCame();
  saveRun();
  scheduleEndNotification();
  follow(TickSchedule(tickInterval, !isRunning()));
  renderTile(true);
  refreshPanel();
}

void RunWidgetController::scheduleEndNotification() {
  const End next = end();
  endNotification_.schedule(next.date, widget().name, next.notice);
}

void RunWidgetController::follow(const TickSchedule& schedule) {
  if (schedule.isPaused())
    ticker_.reset();
  else if (!ticker_)
    ticker_ = platform().runLoop().repeat(schedule.interval(), [this] { tick(); });
}

void RunWidgetController::tick() {
  readClock();
  if (finishIfOver())
    return;
  if (const auto date = end().date; date && date->since(platform().clock().now()) <= noticeMargin)
    endNotification_.withdraw();
  renderTile(false);
}

void RunWidgetController::renderTile(bool force) {
  if (!force && lastShown_ == shown())
    return;
  BasicWidgetController::renderTile();
  if (!force)
    refreshPanel();
}

void RunWidgetController::ring(const std::string& sound) {
  platform().sounds().play(sound);
  platform().application().requestUserAttention();
  asksForAttention_ = true;
}

void RunWidgetController::userCame() {
  if (asksForAttention_)
    platform().application().cancelUserAttention();
  asksForAttention_ = false;
}

void RunWidgetController::panelWillOpen() {
  userCame();
  readClock();
}

} // namespace tavrin
