#pragma once

#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinWidgetsUI/System/Samplers/PetModel.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

namespace tavrin {

/// A pet, which moves while somebody can see it, at its own pace: no faster than it is drawn. It
/// holds still to save energy.
class PetSampler final : public SamplerOf<PetSettings> {
public:
  /// `readings` outlives it.
  PetSampler(const UUID& widget, const SystemReadings& readings)
      : pet(widget), readings_(readings) {}

  bool setSettings(const PetSettings& settings) override {
    settings_ = settings;
    return false;
  }

  double interval(const SampleMoment& moment) const override { return moment.paced(2); }
  std::optional<Date> next(const SampleMoment& moment) const override {
    return moment.isInSight ? std::optional(pet.next()) : std::nullopt;
  }
  bool read(const SampleMoment& moment, Date) override {
    return pet.advance(moment.now, settings_, moment.calendar, readings_,
                       moment.savesEnergy || moment.reducesMotion);
  }

  PetModel pet;

private:
  const SystemReadings& readings_;
  PetSettings settings_;
};

} // namespace tavrin
