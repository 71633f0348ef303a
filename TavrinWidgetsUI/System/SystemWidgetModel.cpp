#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

#include "TavrinCore/Kinds/System/Countdown.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr double energySavingInterval = 3;
constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = 86'400;
/// The pace of a clock's hands that do not show seconds.
constexpr double glide = 15;
/// A timer that fires so little early counts as on time.
constexpr double earliness = 0.02;

template <class... F> struct Overloaded : F... { using F::operator()...; };

/// The first moment after `now` that is a multiple of `step` away from `origin`.
Date nextOnGrid(Date origin, double step, Date now) {
  const Date next = origin + (std::floor(now.since(origin) / step) + 1) * step;
  return next > now ? next : now + step;
}

/// Which cell of the grid `date` is in.
double cell(double step, Date date) {
  return std::floor(date.secondsSinceReferenceDate / step);
}

double clockStep(const ClockSettings& settings) {
  return settings.showsSeconds ? 1 : settings.isAnalog ? glide : minute;
}

/// Appends a reading; the oldest go once there are too many. Whether the line through all of them
/// moves at the next sample.
template <class Reading>
bool remember(std::vector<Reading>& history, const Reading& past, const Reading& now) {
  history.push_back(past);
  if (history.size() > SystemWidgetModel::historyLength)
    history.erase(history.begin(),
                  history.end() - static_cast<long>(SystemWidgetModel::historyLength));
  return std::any_of(history.begin(), history.end(),
                     [&](const Reading& reading) { return reading != now; });
}

} // namespace

/// How one kind is kept current.
struct SystemWidgetModel::Sampling {
  /// When to sample again; no value when nothing changes by itself.
  std::optional<Date> (*next)(const SystemWidgetModel&);
  /// Takes the reading, `now_` being the time already; whether it differs from the one at `before`.
  bool (*read)(SystemWidgetModel&, Date before);
  /// A rate between two samples: one taken out of turn would measure next to nothing.
  bool isRate = false;
};

/// Its own pace is no faster than it is drawn, and it holds still to save energy.
bool SystemWidgetModel::readPet() {
  return pet_.advance(now_, *widget_.kind.get<PetSettings>(), calendar_, readings_,
                      savesEnergy_ || workspace_.prefersReducedMotion());
}

void SystemWidgetModel::strokePet() {
  if (!widget_.kind.get<PetSettings>())
    return;
  pet_.stroke();
  sightChanged();
}

void SystemWidgetModel::sightChanged() {
  const bool differs = sample(clock_.now());
  updateTicker();
  if (differs && onChange)
    onChange();
}

/// A kind without a line has no reading: nothing is sampled, and no timer runs.
const SystemWidgetModel::Sampling* SystemWidgetModel::sampling(const DockWidget::Kind& kind) {
  using Model = SystemWidgetModel;
  static constexpr Sampling clock{[](const Model& model) -> std::optional<Date> {
                                    return nextOnGrid({}, model.interval(), model.now_);
                                  },
                                  [](Model& model, Date before) {
                                    const double step =
                                        clockStep(*model.widget_.kind.get<ClockSettings>());
                                    return cell(step, before) != cell(step, model.now_);
                                  }};
  static constexpr Sampling countdown{nextCountdownChange, [](Model&, Date) { return true; }};
  static constexpr Sampling timeProgress{[](const Model& model) -> std::optional<Date> {
                                           return nextOnGrid({}, model.interval(), model.now_);
                                         },
                                         [](Model&, Date) { return true; }};
  static constexpr Sampling stopwatch{
      [](const Model& model) -> std::optional<Date> {
        const auto& run = model.stopwatch_;
        if (!run.isRunning())
          return std::nullopt;
        return nextOnGrid(*run.startedAt - run.accumulated, model.interval(), model.now_);
      },
      [](Model& model, Date) { return model.stopwatch_.isRunning(); }};

  static constexpr auto afterInterval = [](const Model& model) -> std::optional<Date> {
    return model.now_ + model.interval();
  };
  static constexpr Sampling battery{afterInterval, [](Model& model, Date) {
                                      const auto reading = model.readings_.battery();
                                      return std::exchange(model.battery_, reading) != reading;
                                    }};
  static constexpr Sampling activity{afterInterval,
                                     [](Model& model, Date) { return model.readActivity(); }, true};
  static constexpr Sampling network{afterInterval,
                                    [](Model& model, Date) { return model.readNetwork(); }, true};

  static constexpr Sampling pet{[](const Model& model) -> std::optional<Date> {
                                  if (!model.isInSight())
                                    return std::nullopt;
                                  return model.pet_.next();
                                },
                                [](Model& model, Date) { return model.readPet(); }};

  if (kind.get<BatterySettings>())
    return &battery;
  if (kind.get<PetSettings>())
    return &pet;
  if (kind.get<ActivitySettings>())
    return &activity;
  if (kind.get<NetworkSettings>())
    return &network;
  if (kind.get<ClockSettings>())
    return &clock;
  if (kind.get<CountdownSettings>())
    return &countdown;
  if (kind.get<TimeProgressSettings>())
    return &timeProgress;
  if (kind.get<StopwatchSettings>())
    return &stopwatch;
  return nullptr;
}

/// Days and hours change with the hour, hours and less with the second.
std::optional<Date> SystemWidgetModel::nextCountdownChange(const SystemWidgetModel& model) {
  const auto& settings = *model.widget_.kind.get<CountdownSettings>();
  const double left = Countdown::interval(settings, model.now_);
  if (left <= 0 && !settings.countsUpAfter)
    return std::nullopt;
  const bool showsDays = std::abs(left) > day;
  if (!showsDays || model.showsPanel())
    return nextOnGrid(settings.target, model.paced(1), model.now_);
  // What is left is rounded up: 4 hours are shown until a second less than that is left.
  return nextOnGrid(left > 0 ? settings.target + 1 : settings.target, hour, model.now_);
}

bool SystemWidgetModel::readActivity() {
  const auto ticks = readings_.cpuTicks();
  const ActivityReading reading{lastTicks_ ? ticks.usage(*lastTicks_) : 0, readings_.memoryUsage()};
  const bool isMoving = lastTicks_ && remember(activityHistory_, activity_, reading);
  // Ticks that could not be read are no baseline.
  lastTicks_ = ticks.total > 0 ? std::optional(ticks) : std::nullopt;
  return std::exchange(activity_, reading) != reading || (isMoving && showsPanel());
}

bool SystemWidgetModel::readNetwork() {
  constexpr double shortestElapsed = 0.001;
  const auto totals = readings_.networkTotals(widget_.kind.get<NetworkSettings>()->interface);
  const auto last = std::exchange(lastNetwork_, NetworkBaseline{totals, now_});
  if (!last)
    return false;
  const double elapsed = std::max(now_.since(last->date), shortestElapsed);
  // A counter that wrapped, or a link that went, is no traffic.
  const NetworkReading reading{std::max(0.0, totals.down - last->totals.down) / elapsed,
                               std::max(0.0, totals.up - last->totals.up) / elapsed};
  const bool isChart = widget_.kind.get<NetworkSettings>()->style == NetworkTileStyle::chart;
  const bool isMoving = remember(networkHistory_, network_, reading);
  return std::exchange(network_, reading) != reading || ((isChart || showsPanel()) && isMoving);
}

SystemWidgetModel::SystemWidgetModel(const Services& services, DockWidget widget,
                                     StopwatchRun stopwatch)
    : clock_(services.clock), runLoop_(services.runLoop), workspace_(services.workspace),
      readings_(services.host, services.power), connectedDevices_(services.devices),
      widget_(std::move(widget)), now_(clock_.now()), stopwatch_(std::move(stopwatch)),
      pet_(widget_.id), savesEnergy_(workspace_.isLowPowerMode()) {}

void SystemWidgetModel::start() {
  stop();
  isStarted_ = true;
  observations_.push_back(workspace_.observeWake([this] { timeJumped(); }));
  observations_.push_back(workspace_.observeClockChange([this] {
    // The time since the last sample is not known any more.
    lastNetwork_.reset();
    timeJumped();
  }));
  observations_.push_back(workspace_.observeDayChange([this] { timeJumped(); }));
  observations_.push_back(
      workspace_.observeLowPowerMode([this] { setSavesEnergy(workspace_.isLowPowerMode()); }));
  watchPowerSources();
  sample(clock_.now());
  updateTicker();
}

void SystemWidgetModel::watchPowerSources() {
  if (!isStarted_ || !widget_.kind.get<BatterySettings>()) {
    powerSourceWatch_.clear();
    return;
  }
  if (!powerSourceWatch_.empty())
    return;
  powerSourceWatch_.push_back(readings_.powerSources().observe([this] {
    if (sample(clock_.now()) && onChange)
      onChange();
  }));
  powerSourceWatch_.push_back(connectedDevices_.observe([this] { devicesChanged(); }));
  refreshDevices();
}

void SystemWidgetModel::refreshDevices() {
  connectedDevices_.refresh();
}

void SystemWidgetModel::devicesChanged() {
  auto devices = connectedDevices_.connected();
  if (devices == devices_)
    return;
  devices_ = std::move(devices);
  if (onDevicesChange)
    onDevicesChange();
}

void SystemWidgetModel::stop() {
  isStarted_ = false;
  powerSourceWatch_.clear();
  timer_.reset();
  observations_.clear();
}

void SystemWidgetModel::setWidget(const DockWidget& widget) {
  const auto* before = widget_.kind.get<NetworkSettings>();
  const auto* after = widget.kind.get<NetworkSettings>();
  const bool isOtherMeasure = widget.kind.index() != widget_.kind.index() ||
                              (before != nullptr && before->interface != after->interface);
  if (widget.kind != widget_.kind)
    clockReader_.reset();
  widget_ = widget;
  if (isOtherMeasure) {
    lastTicks_.reset();
    lastNetwork_.reset();
    network_ = {};
    activityHistory_.clear();
    networkHistory_.clear();
  }
  watchPowerSources();
  const auto* kind = sampling(widget_.kind);
  if (isOtherMeasure || kind == nullptr || !kind->isRate)
    sample(clock_.now());
  updateTicker();
}

ClockReading SystemWidgetModel::clock() const {
  if (!clockReader_)
    clockReader_.emplace(*widget_.kind.get<ClockSettings>(), calendar_);
  return clockReader_->at(now_);
}

void SystemWidgetModel::setStopwatch(const StopwatchRun& run) {
  stopwatch_ = run;
  updateTicker();
}

void SystemWidgetModel::toggleStopwatch() {
  const Date now = clock_.now();
  stopwatch_.toggle(now);
  stopwatchChanged(now);
}

void SystemWidgetModel::lapStopwatch() {
  const Date now = clock_.now();
  stopwatch_.lap(now);
  stopwatchChanged(now);
}

void SystemWidgetModel::resetStopwatch() {
  stopwatch_.reset();
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

double SystemWidgetModel::interval() const {
  return paced(std::visit(
      Overloaded{[](const BatterySettings&) { return 30.0; },
                 [](const ActivitySettings&) { return 2.0; },
                 [](const NetworkSettings&) { return 2.0; }, [](const PetSettings&) { return 2.0; },
                 [](const ClockSettings& clock) { return clock.showsSeconds ? 1 : glide; },
                 [](const CountdownSettings&) { return 1.0; },
                 [this](const StopwatchSettings&) {
                   return !stopwatch_.isRunning() ? minute : showsPanel() ? 0.1 : 1.0;
                 },
                 [](const auto&) { return minute; }},
      static_cast<const DockWidget::KindVariant&>(widget_.kind)));
}

double SystemWidgetModel::paced(double interval) const {
  return savesEnergy_ ? std::max(interval, energySavingInterval) : interval;
}

void SystemWidgetModel::setSavesEnergy(bool savesEnergy) {
  if (savesEnergy == savesEnergy_)
    return;
  savesEnergy_ = savesEnergy;
  if (isStarted_)
    start();
}

void SystemWidgetModel::panelChanged() {
  const auto* kind = sampling(widget_.kind);
  if (kind != nullptr && kind->isRate)
    return;
  sample(clock_.now());
  updateTicker();
}

bool SystemWidgetModel::sample(Date now) {
  const Date before = now_;
  now_ = now;
  const auto* kind = sampling(widget_.kind);
  return kind != nullptr && kind->read(*this, before);
}

void SystemWidgetModel::updateTicker() {
  timer_.reset();
  const auto* kind = sampling(widget_.kind);
  if (!isStarted_ || kind == nullptr)
    return;
  const auto next = kind->next(*this);
  if (!next)
    return;
  due_ = *next;
  // A date beyond all sense, or a clock that was set, is looked at again within a day.
  const double delay = std::min(std::max(next->since(now_), 0.001), day);
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
  clockReader_.reset();
  sample(clock_.now());
  updateTicker();
  if (onChange)
    onChange();
}

} // namespace tavrin
