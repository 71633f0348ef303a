#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

constexpr double dayLength = 86'400;
/// A timer that fires so little early counts as on time.
constexpr double earliness = 0.02;

} // namespace

SystemWidgetModel::SystemWidgetModel(const Services& services, DockWidget widget,
                                     StopwatchRun stopwatch)
    : clock_(services.clock), runLoop_(services.runLoop), workspace_(services.workspace),
      readings_(services.host, services.power), widget_(std::move(widget)), now_(clock_.now()),
      battery_(readings_, services.devices), activity_(readings_), network_(readings_),
      stopwatch_(std::move(stopwatch)), pet_(widget_.id, readings_),
      savesEnergy_(workspace_.isLowPowerMode()) {
  battery_.onPowerChange = [this] {
    if (sample(clock_.now()) && onChange)
      onChange();
  };
  battery_.onDevicesChange = [this] {
    if (onDevicesChange)
      onDevicesChange();
  };
  chooseSampler();
}

void SystemWidgetModel::start() {
  stop();
  isStarted_ = true;
  observations_.push_back(workspace_.observeWake([this] { timeJumped(); }));
  observations_.push_back(workspace_.observeClockChange([this] {
    network_.forgetBaseline();
    timeJumped();
  }));
  observations_.push_back(workspace_.observeDayChange([this] { timeJumped(); }));
  observations_.push_back(
      workspace_.observeLowPowerMode([this] { setSavesEnergy(workspace_.isLowPowerMode()); }));
  battery_.setWatching(sampler_ == &battery_);
  sample(clock_.now());
  updateTicker();
}

void SystemWidgetModel::stop() {
  isStarted_ = false;
  battery_.setWatching(false);
  timer_.reset();
  observations_.clear();
}

bool SystemWidgetModel::chooseSampler() {
  const auto* const before = std::exchange(sampler_, nullptr);
  bool isOtherMeasure = false;
  for (auto* sampler : samplers_)
    if (const auto taken = sampler->take(widget_.kind)) {
      sampler_ = sampler;
      isOtherMeasure = *taken;
    }
  if (sampler_ == before)
    return isOtherMeasure;
  activity_.forget();
  network_.forget();
  return true;
}

void SystemWidgetModel::setWidget(const DockWidget& widget) {
  widget_ = widget;
  const bool isOtherMeasure = chooseSampler();
  battery_.setWatching(isStarted_ && sampler_ == &battery_);
  if (isOtherMeasure || sampler_ == nullptr || !sampler_->isRate())
    sample(clock_.now());
  updateTicker();
}

void SystemWidgetModel::strokePet() {
  if (sampler_ != &pet_)
    return;
  pet_.pet.stroke();
  sightChanged();
}

void SystemWidgetModel::sightChanged() {
  const bool differs = sample(clock_.now());
  updateTicker();
  if (differs && onChange)
    onChange();
}

void SystemWidgetModel::toggleStopwatch() {
  const Date now = clock_.now();
  stopwatch_.run.toggle(now);
  stopwatchChanged(now);
}

void SystemWidgetModel::lapStopwatch() {
  const Date now = clock_.now();
  stopwatch_.run.lap(now);
  stopwatchChanged(now);
}

void SystemWidgetModel::resetStopwatch() {
  stopwatch_.run.reset();
  stopwatchChanged(clock_.now());
}

void SystemWidgetModel::stopwatchChanged(Date now) {
  sample(now);
  updateTicker();
  if (onStopwatchChange)
    onStopwatchChange();
  if (onChange)
    onChange();
}

SampleMoment SystemWidgetModel::moment() const {
  return {now_,        calendar_,    showsPanel(),
          isInSight(), savesEnergy_, workspace_.prefersReducedMotion()};
}

double SystemWidgetModel::interval() const {
  return sampler_ != nullptr ? sampler_->interval(moment()) : moment().paced(SystemSampler::minute);
}

void SystemWidgetModel::setSavesEnergy(bool savesEnergy) {
  if (savesEnergy == savesEnergy_)
    return;
  savesEnergy_ = savesEnergy;
  if (isStarted_)
    start();
}

void SystemWidgetModel::panelChanged() {
  if (sampler_ != nullptr && sampler_->isRate())
    return;
  sample(clock_.now());
  updateTicker();
}

bool SystemWidgetModel::sample(Date now) {
  const Date before = std::exchange(now_, now);
  return sampler_ != nullptr && sampler_->read(moment(), before);
}

void SystemWidgetModel::updateTicker() {
  timer_.reset();
  if (!isStarted_ || sampler_ == nullptr)
    return;
  const auto next = sampler_->next(moment());
  if (!next)
    return;
  due_ = *next;
  // A date beyond all sense, or a clock that was set, is looked at again within a day.
  const double delay = std::min(std::max(next->since(now_), 0.001), dayLength);
  timer_ = runLoop_.after(delay, [this] { tick(); });
}

void SystemWidgetModel::tick() {
  const Date now = clock_.now();
  const double early = due_.since(now);
  const bool differs = sample(early > 0 && early < earliness ? due_ : now);
  updateTicker();
  if (differs && onChange)
    onChange();
}

void SystemWidgetModel::timeJumped() {
  calendar_ = Calendar();
  clockFace_.forget();
  sample(clock_.now());
  updateTicker();
  if (onChange)
    onChange();
}

} // namespace tavrin
