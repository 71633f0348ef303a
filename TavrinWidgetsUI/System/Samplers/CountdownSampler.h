#pragma once

#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

namespace tavrin {

/// What is left until a date. Days and hours change with the hour, hours and less with the second.
class CountdownSampler final : public SamplerOf<CountdownSettings> {
public:
  bool setSettings(const CountdownSettings& settings) override {
    settings_ = settings;
    return false;
  }

  double interval(const SampleMoment& moment) const override { return moment.paced(1); }
  std::optional<Date> next(const SampleMoment& moment) const override;
  bool read(const SampleMoment&, Date) override { return true; }

private:
  CountdownSettings settings_;
};

} // namespace tavrin
