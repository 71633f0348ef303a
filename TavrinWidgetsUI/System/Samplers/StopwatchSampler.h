#pragma once

#include "TavrinCore/Kinds/Runs/StopwatchRun.h"
#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

namespace tavrin {

/// A run, and when its display changes: by tenths where the panel shows them.
class StopwatchSampler final : public SamplerOf<StopwatchSettings> {
public:
  explicit StopwatchSampler(StopwatchRun initial) : run(std::move(initial)) {}

  double interval(const SampleMoment& moment) const override {
    return moment.paced(!run.isRunning() ? minute : moment.showsPanel ? 0.1 : 1.0);
  }
  std::optional<Date> next(const SampleMoment& moment) const override {
    if (!run.isRunning())
      return std::nullopt;
    return nextOnGrid(*run.startedAt - run.accumulated, interval(moment), moment.now);
  }
  bool read(const SampleMoment&, Date) override { return run.isRunning(); }

  StopwatchRun run;
};

} // namespace tavrin
