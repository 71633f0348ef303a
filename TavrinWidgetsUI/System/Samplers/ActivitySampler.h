#pragma once

#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinWidgetsUI/System/Samplers/ReadingHistory.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

namespace tavrin {

/// Use of the processors and of the memory.
class ActivitySampler final : public SamplerOf<ActivitySettings> {
public:
  /// `readings` outlives it.
  explicit ActivitySampler(const SystemReadings& readings) : readings_(readings) {}

  const ActivityReading& reading() const { return history_.now(); }
  const std::vector<ActivityReading>& history() const { return history_.past(); }
  /// Nobody sampled for a while.
  void forget();

  double interval(const SampleMoment& moment) const override { return moment.paced(2); }
  bool read(const SampleMoment& moment, Date before) override;
  bool isRate() const override { return true; }

private:
  const SystemReadings& readings_;
  ReadingHistory<ActivityReading> history_;
  std::optional<SystemReadings::CPUTicks> lastTicks_;
};

} // namespace tavrin
