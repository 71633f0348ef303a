#include "TavrinCore/Kinds/Weather.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// Whatever the services answer, what is made of it makes sense and can be kept.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view data(reinterpret_cast<const char*>(bytes), size);
  if (const auto reading = WeatherService::reading(data, Date{800'000'000})) {
    if (reading->days.empty() || !(std::abs(reading->temperature) <= 500) ||
        decode<WeatherReading>(encode(*reading)) != *reading)
      std::abort();
    WeatherWords::degrees(reading->temperature, WeatherUnit::celsius);
  }
  for (const auto& place : WeatherService::places(data))
    if (place.name.empty() ||
        !WeatherService::forecastURL(place.latitude, place.longitude, WeatherUnit::celsius))
      std::abort();
  return 0;
}
