#pragma once

#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinWidgetsUI/System/Samplers/ClockReading.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

namespace tavrin {

/// A clock's face, by one set of settings.
class ClockSampler final : public SamplerOf<ClockSettings> {
public:
  ClockReading reading(Date now, const Calendar& calendar) const;
  bool setSettings(const ClockSettings& settings) override;
  /// The zone or the locale may be another one.
  void forget() { reader_.reset(); }

  double interval(const SampleMoment& moment) const override;
  std::optional<Date> next(const SampleMoment& moment) const override;
  bool read(const SampleMoment& moment, Date before) override;

private:
  /// The pace of a clock's hands that do not show seconds.
  static constexpr double glide = 15;

  ClockSettings settings_;
  mutable std::optional<ClockReader> reader_;
};

} // namespace tavrin
