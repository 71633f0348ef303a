#include "TavrinWidgetsUI/System/Samplers/ActivitySampler.h"

namespace tavrin {

void ActivitySampler::forget() {
  lastTicks_.reset();
  history_.forgetPast();
}

bool ActivitySampler::read(const SampleMoment& moment, Date) {
  const auto ticks = readings_.cpuTicks();
  const ActivityReading reading{lastTicks_ ? ticks.usage(*lastTicks_) : 0, readings_.memoryUsage()};
  const bool isMoving = lastTicks_ && history_.remember(reading);
  // Ticks that could not be read are no baseline.
  lastTicks_ = ticks.total > 0 ? std::optional(ticks) : std::nullopt;
  return history_.set(reading) || (isMoving && moment.showsPanel);
}

} // namespace tavrin
