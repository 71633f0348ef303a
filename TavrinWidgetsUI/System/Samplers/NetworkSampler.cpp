#include "TavrinWidgetsUI/System/Samplers/NetworkSampler.h"

namespace tavrin {

bool NetworkSampler::setSettings(const NetworkSettings& settings) {
  const bool isOtherLink = settings.interface != settings_.interface;
  settings_ = settings;
  if (isOtherLink)
    forget();
  return isOtherLink;
}

void NetworkSampler::forget() {
  last_.reset();
  history_.set({});
  history_.forgetPast();
}

bool NetworkSampler::read(const SampleMoment& moment, Date) {
  constexpr double shortestElapsed = 0.001;
  const auto totals = readings_.networkTotals(settings_.interface);
  const auto last = std::exchange(last_, Baseline{totals, moment.now});
  if (!last)
    return false;
  const double elapsed = std::max(moment.now.since(last->date), shortestElapsed);
  // A counter that wrapped, or a link that went, is no traffic.
  const NetworkReading reading{std::max(0.0, totals.down - last->totals.down) / elapsed,
                               std::max(0.0, totals.up - last->totals.up) / elapsed};
  const bool isMoving = history_.remember(reading);
  const bool showsPast = settings_.style == NetworkTileStyle::chart || moment.showsPanel;
  return history_.set(reading) || (showsPast && isMoving);
}

} // namespace tavrin
