#include "TavrinWidgetsUI/System/Samplers/PetModel.h"

#include "TavrinCore/Kinds/System/PetSettings.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tavrin {
namespace {

constexpr double loadInterval = 2;

} // namespace

PetModel::PetModel(const UUID& widget)
    : life_(static_cast<std::uint32_t>(std::hash<std::string>()(widget.text()))) {}

std::optional<double> PetModel::load(Date now, const PetSettings& settings,
                                     const SystemReadings& readings) {
  if (!settings.followsProcessorLoad) {
    ticks_.reset();
    ticksAt_.reset();
    load_.reset();
    return load_;
  }
  const double since = ticksAt_ ? now.since(*ticksAt_) : -1;
  if (since >= 0 && since < loadInterval)
    return load_;
  const auto ticks = readings.cpuTicks();
  // Ticks that could not be read are no baseline, and an old one tells nothing of now.
  const bool isRecent = ticks_ && since >= 0 && since < 3 * loadInterval && ticks.total > 0;
  load_ = isRecent ? ticks.usage(*ticks_) : 0;
  ticks_ = ticks.total > 0 ? std::optional(ticks) : std::nullopt;
  ticksAt_ = now;
  return load_;
}

bool PetModel::advance(Date now, const PetSettings& settings, const Calendar& calendar,
                       const SystemReadings& readings, bool isStill) {
  const auto local = calendar.components(now);
  const double hour = local.hour + local.minute / 60.0 + local.second / 3600.0;
  const bool isAsleep = settings.sleepsAtNight && PetLife::isNight(hour);
  PetSurroundings around;
  around.hour = hour;
  around.isStill = isStill;
  around.room = room_;
  if (!isStill && !isAsleep)
    around.load = load(now, settings, readings);
  const bool moved = life_.advance(now, settings, around);
  const PetSky before = std::exchange(sky_, petSky(hour));
  // A second late, so that the hour has come for certain.
  next_ = now + (nextSkyHour(hour) - hour) * 3600 + 1;
  if (const auto due = life_.next())
    next_ = std::min(next_, *due);
  return moved || sky_ != before;
}

} // namespace tavrin
