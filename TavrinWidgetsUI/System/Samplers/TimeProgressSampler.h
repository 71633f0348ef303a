#pragma once

#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

namespace tavrin {

/// How much of a day, month or year has passed: it moves with the minute.
class TimeProgressSampler final : public SamplerOf<TimeProgressSettings> {
public:
  double interval(const SampleMoment& moment) const override { return moment.paced(minute); }
  std::optional<Date> next(const SampleMoment& moment) const override {
    return nextOnGrid({}, interval(moment), moment.now);
  }
  bool read(const SampleMoment&, Date) override { return true; }
};

} // namespace tavrin
