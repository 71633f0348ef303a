#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinStorage/WeatherCache.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

using namespace tavrin;

namespace {

void check(const WeatherReading& reading) {
  WeatherWords::degrees(reading.temperature, WeatherUnit::celsius);
  WeatherWords::age(reading.readAt, Date{800'000'000});
  const Calendar calendar(reading.timeZoneID.value_or(""));
  for (const auto& day : reading.days) {
    WeatherWords::dayName(day.date, calendar.isSameDay(day.date, reading.readAt), calendar);
    WeatherWords::shortDegrees(day.high);
  }
}

} // namespace

/// Whatever the service answers, what is made of it makes sense and can be kept; and what is kept
/// can be anything.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view data(reinterpret_cast<const char*>(bytes), size);
  if (const auto reading = WeatherService::reading(data, Date{800'000'000})) {
    if (reading->days.empty() || !(std::abs(reading->temperature) <= 500) ||
        decode<WeatherReading>(encode(*reading)) != *reading)
      std::abort();
    check(*reading);
  }
  try {
    const auto kept = decode<CachedWeather>(JSONValue::parse(data));
    if (kept.reading)
      check(*kept.reading);
  } catch (const JSONError&) {
  } catch (const CodingError&) {
  }
  return 0;
}
