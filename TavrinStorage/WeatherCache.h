#pragma once

#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"

#include <filesystem>

namespace tavrin {

/// The last reading of one widget, for a start without a network.
struct CachedWeather {
  double latitude = 0;
  double longitude = 0;
  WeatherUnit unit = WeatherUnit::celsius;
  std::optional<std::string> region;
  std::optional<WeatherReading> reading;

  static constexpr auto fields() {
    using C = CachedWeather;
    return std::tuple{required("latitude", &C::latitude), required("longitude", &C::longitude),
                      required("unit", &C::unit), optional("region", &C::region),
                      optional("reading", &C::reading)};
  }
  bool operator==(const CachedWeather&) const = default;
};

/// Kept for the user alone, for it tells where they are. Nothing depends on it: what cannot be
/// read or written counts as not there.
class WeatherCache {
public:
  explicit WeatherCache(std::filesystem::path file) : file_(std::move(file)) {}

  std::optional<CachedWeather> read() const;
  void write(const CachedWeather& weather) const;

private:
  std::filesystem::path file_;
};

} // namespace tavrin
