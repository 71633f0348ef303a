#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/System/Pet.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinCore/Kinds/System/PetSky.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"

namespace tavrin {

/// A pet in its surroundings: the time of day, and the processors' load where it follows that.
class PetModel {
public:
  explicit PetModel(const UUID& widget);

  const PetPose& pose() const { return life_.pose(); }
  PetSky sky() const { return sky_; }
  /// When the pet wakes or falls asleep, to be read only while it does the other.
  int wakingHour() const { return static_cast<int>(PetLife::nightEnds); }

  /// Does what is due. Whether pet or sky look different.
  bool advance(Date now, const PetSettings& settings, const Calendar& calendar,
               const SystemReadings& readings, bool isStill);
  /// When `advance` is due next.
  Date next() const { return next_; }

  void stroke() { life_.stroke(); }
  /// How many pixels it can walk.
  void setRoom(int pixels) { room_ = pixels; }

private:
  std::optional<double> load(Date now, const PetSettings& settings, const SystemReadings& readings);

  PetLife life_;
  PetSky sky_ = PetSky::day;
  Date next_;
  int room_ = 0;
  std::optional<SystemReadings::CPUTicks> ticks_;
  std::optional<Date> ticksAt_;
  std::optional<double> load_;
};

} // namespace tavrin
