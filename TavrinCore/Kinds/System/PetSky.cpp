#include "TavrinCore/Kinds/System/PetSky.h"

#include "TavrinCore/Kinds/System/Pet.h"

#include <algorithm>

namespace tavrin {
namespace {

struct SkyHours {
  double until;
  PetSky sky;
};

constexpr SkyHours skyHours[] = {{6, PetSky::night},
                                 {8, PetSky::dawn},
                                 {18, PetSky::day},
                                 {21, PetSky::dusk},
                                 {24, PetSky::night}};

} // namespace

PetSky petSky(double hour) {
  for (const auto& [until, sky] : skyHours)
    if (hour < until)
      return sky;
  return PetSky::night;
}

double nextSkyHour(double hour) {
  double next = 24 + skyHours[0].until;
  const auto offer = [&](double change) { next = change > hour ? std::min(next, change) : next; };
  for (const auto& each : skyHours)
    offer(each.until == 24 ? next : each.until);
  offer(PetLife::nightBegins);
  offer(PetLife::nightEnds);
  return next;
}

} // namespace tavrin
