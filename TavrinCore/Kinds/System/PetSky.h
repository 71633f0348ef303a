#pragma once

namespace tavrin {

/// Time of day as the sky over a pet shows it.
enum class PetSky { night, dawn, day, dusk };

/// `hour` is the local time of day, 0 to 24.
PetSky petSky(double hour);
/// The next hour after `hour`, up to 24 later, at which the sky or a pet's night changes.
double nextSkyHour(double hour);

} // namespace tavrin
